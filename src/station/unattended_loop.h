// An event loop where there are no windows: one timer, and an end that may be asked for meanwhile.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "seams/clock.h"
#include "seams/event_loop.h"

namespace kestrel {

class UnattendedLoop : public EventLoop {
 public:
  // `interrupted` tells whether an end was asked for since it was last called (Ctrl-C, a button of
  // some program); it is called at least every 20 ms of a wait. None: nobody ever asks.
  UnattendedLoop(Clock& clock, std::function<bool()> interrupted)
      : clock_(clock), interrupted_(std::move(interrupted)) {}

  // What an interrupt does: runs inside Yield and YieldUntilEvent, once.
  void OnInterrupt(std::function<void()> action) { action_ = std::move(action); }
  [[nodiscard]] bool WasInterrupted() const { return wasInterrupted_; }
  // A new step begins, to which an earlier interrupt means nothing.
  void Forget();

  void Yield() override { LookForInterrupt(); }
  void YieldUntilEvent() override;
  void YieldToPaint() override {}
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void StopTimer() override { tick_ = nullptr; }

  // Waits without a timer of the program's. False when an interrupt ended it early.
  bool Pause(std::chrono::nanoseconds duration);

 private:
  bool LookForInterrupt();

  Clock& clock_;
  std::function<bool()> interrupted_;
  std::function<void()> action_;
  bool wasInterrupted_ = false;
  std::chrono::nanoseconds interval_{0};
  std::chrono::nanoseconds due_{0};
  std::function<void()> tick_;
};

}  // namespace kestrel
