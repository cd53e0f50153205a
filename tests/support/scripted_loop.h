// An event loop in scripted time.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "seams/event_loop.h"
#include "support/fake_clock.h"

namespace kestrel {

// An event loop in scripted time. Waiting advances the clock to the window timer's next tick or to
// the next handler of the script, whichever comes first; Yield handles what is due and no more.
// Handlers run inside Yield and YieldUntilEvent, nested ones too, each once.
class ScriptedLoop : public EventLoop {
 public:
  using Handler = std::function<void()>;
  using Time = std::chrono::nanoseconds;

  explicit ScriptedLoop(FakeClock& clock) : clock_(clock) {}

  // The script: the user does something at a time of the monotonic clock, or in the n-th yield
  // (YieldToPaint does not count), the first being 1.
  void At(Time time, Handler handler) { byTime_.emplace(time, std::move(handler)); }
  void AtYield(int number, Handler handler) { byYield_.emplace(number, std::move(handler)); }

  // What has not happened by now does not happen any more.
  void ForgetScript() {
    byTime_.clear();
    byYield_.clear();
  }

  void Yield() override {
    CountYield();
    while (RunByYield() || RunDue()) {
    }
  }

  void YieldUntilEvent() override {
    CountYield();
    if (RunByYield() || RunDue()) return;
    const std::optional<Time> next = NextTime();
    if (!next) Refuse("waits for an event that never comes");
    clock_.Advance(*next - clock_.Monotonic());
    RunDue();
  }

  void YieldToPaint() override { ++paints_; }

  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override {
    intervals_.push_back(interval);
    timer_ = Timer{interval, clock_.Monotonic() + interval, std::move(tick)};
  }
  void StopTimer() override { timer_.reset(); }

  [[nodiscard]] int Yields() const { return yields_; }
  [[nodiscard]] int Paints() const { return paints_; }
  [[nodiscard]] bool TimerRuns() const { return timer_.has_value(); }
  [[nodiscard]] bool ScriptDone() const { return byTime_.empty() && byYield_.empty(); }

  // Every interval the timer was started with, in order.
  [[nodiscard]] const std::vector<std::chrono::milliseconds>& Intervals() const {
    return intervals_;
  }

  // More yields than this count as a hang.
  void SetMostYields(int most) { mostYields_ = most; }

 private:
  struct Timer {
    std::chrono::milliseconds interval;
    Time due;
    std::function<void()> tick;
  };

  [[noreturn]] static void Refuse(const char* reason) {
    ADD_FAILURE() << "the program " << reason;
    throw std::logic_error(reason);
  }

  void CountYield() {
    if (++yields_ > mostYields_) Refuse("yields without end");
  }

  bool RunByYield() {
    const auto found = byYield_.find(yields_);
    if (found == byYield_.end()) return false;
    const Handler handler = std::move(found->second);
    byYield_.erase(found);
    handler();
    return true;
  }

  // Runs the earliest event that is due; at the same time the script comes before the timer.
  bool RunDue() {
    const std::optional<Time> next = NextTime();
    if (!next || *next > clock_.Monotonic()) return false;
    if (!byTime_.empty() && byTime_.begin()->first <= *next) {
      const Handler handler = std::move(byTime_.begin()->second);
      byTime_.erase(byTime_.begin());
      handler();
    } else {
      timer_->due = clock_.Monotonic() + timer_->interval;
      const auto tick = timer_->tick;
      tick();
    }
    return true;
  }

  [[nodiscard]] std::optional<Time> NextTime() const {
    std::optional<Time> next;
    if (timer_) next = timer_->due;
    if (!byTime_.empty()) next = std::min(next.value_or(Time::max()), byTime_.begin()->first);
    return next;
  }

  FakeClock& clock_;
  std::multimap<Time, Handler> byTime_;
  std::multimap<int, Handler> byYield_;
  std::optional<Timer> timer_;
  std::vector<std::chrono::milliseconds> intervals_;
  int yields_ = 0;
  int paints_ = 0;
  int mostYields_ = 20000;
};

}  // namespace kestrel
