// The toolkit's event loop with its passes counted and its waits shortened.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaObject>
#include <QObject>
#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "support/swift_clock.h"
#include "ui/parts/qt_event_loop.h"

namespace kestrel {

// The toolkit's event loop, which counts the passes in which the user's handlers run, and whose
// waits can be shortened or skipped.
class PassLoop : public QtEventLoop {
 public:
  explicit PassLoop(SwiftClock& clock) : clock_(clock) {}

  // Asked before each pass for what is to be done in it; nothing for most.
  void AtPass(std::function<std::function<void()>()> asked) { asked_ = std::move(asked); }

  // Waits as fast as the swift clock goes, instead of in real time.
  void Hurry() { hurries_ = true; }
  // Waits in no time at all: the clock is put on. More than `mostPasses` from now on count as a
  // hang, which `onHang` has to end.
  void SkipWaits(int mostPasses, std::function<void()> onHang) {
    skips_ = true;
    left_ = mostPasses;
    onHang_ = std::move(onHang);
  }

  void Yield() override {
    Pass();
    QtEventLoop::Yield();
  }
  void YieldUntilEvent() override {
    Pass();
    QtEventLoop::YieldUntilEvent();
  }
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override {
    if (skips_) {
      clock_.WaitUntil(clock_.Monotonic() + interval);
      interval = std::chrono::milliseconds{0};
    } else if (hurries_) {
      interval = std::max(interval / SwiftClock::kSpeed, std::chrono::milliseconds{1});
    }
    QtEventLoop::StartTimer(interval, std::move(tick));
  }

  [[nodiscard]] int Passes() const { return passes_; }

 private:
  void Pass() {
    ++passes_;
    if (skips_ && left_-- == 0 && onHang_) onHang_();
    if (!asked_) return;
    if (auto deed = asked_()) QMetaObject::invokeMethod(&context_, deed, Qt::QueuedConnection);
  }

  SwiftClock& clock_;
  std::function<std::function<void()>()> asked_;
  QObject context_;
  bool hurries_ = false;
  bool skips_ = false;
  int left_ = 0;
  std::function<void()> onHang_;
  int passes_ = 0;
};

}  // namespace kestrel
