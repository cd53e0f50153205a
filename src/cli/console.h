// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>

#include "seams/clock.h"
#include "seams/event_loop.h"
#include "seams/messages.h"
#include "seams/mouse_pointer.h"

namespace kestrel {

// An event loop without windows: one timer, and Ctrl-C in the place of the user's actions.
class ConsoleLoop : public EventLoop {
 public:
  // `interrupted` tells whether Ctrl-C was pressed since it was last asked.
  ConsoleLoop(Clock& clock, std::function<bool()> interrupted)
      : clock_(clock), interrupted_(std::move(interrupted)) {}

  // What Ctrl-C does: runs inside Yield and YieldUntilEvent, once.
  void OnInterrupt(std::function<void()> action) { action_ = std::move(action); }
  [[nodiscard]] bool WasInterrupted() const { return wasInterrupted_; }

  void Yield() override { LookForInterrupt(); }
  void YieldUntilEvent() override;
  void YieldToPaint() override {}
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void StopTimer() override { tick_ = nullptr; }

  // Waits without a timer of the program's; ends early on Ctrl-C.
  void Pause(std::chrono::nanoseconds duration);

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

// Message boxes become lines on the error stream; nobody has to dismiss them.
class StreamMessages : public Messages {
 public:
  explicit StreamMessages(std::ostream& stream) : stream_(stream) {}

  using Messages::Show;
  void Show(const std::string& text, const std::string& title) override;

  [[nodiscard]] int Count() const { return count_; }

 private:
  std::ostream& stream_;
  int count_ = 0;
};

class NoPointer : public MousePointer {
 public:
  void ShowHourglass() override {}  // GCOVR_EXCL_LINE
  void ShowDefault() override {}    // GCOVR_EXCL_LINE
};

}  // namespace kestrel
