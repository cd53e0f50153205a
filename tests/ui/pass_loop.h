// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaObject>
#include <QObject>
#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "support/swift_clock.h"
#include "ui/qt_event_loop.h"

namespace kestrel {

// The toolkit's event loop, with somebody who may do something in each pass in which the user's
// handlers run.
class PassLoop : public QtEventLoop {
 public:
  // Asked before each pass for what is to be done in it; nothing for most.
  void AtPass(std::function<std::function<void()>()> asked) { asked_ = std::move(asked); }

  void Yield() override {
    Ask();
    QtEventLoop::Yield();
  }
  void YieldUntilEvent() override {
    Ask();
    QtEventLoop::YieldUntilEvent();
  }

  // Waits as fast as the swift clock goes, instead of in real time.
  void Hurry() { hurries_ = true; }
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override {
    if (hurries_) interval = std::max(interval / SwiftClock::kSpeed, std::chrono::milliseconds{1});
    QtEventLoop::StartTimer(interval, std::move(tick));
  }

  [[nodiscard]] int Passes() const { return passes_; }

 private:
  void Ask() {
    ++passes_;
    if (!asked_) return;
    if (auto deed = asked_()) QMetaObject::invokeMethod(&context_, deed, Qt::QueuedConnection);
  }

  std::function<std::function<void()>()> asked_;
  QObject context_;
  bool hurries_ = false;
  int passes_ = 0;
};

}  // namespace kestrel
