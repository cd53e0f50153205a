// How long a capture is waited for, and what ends it early.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "seams/clock.h"

namespace kestrel::monitor {

// Handed to a station as its interrupt: a capture that lasts too long, or that is under way for
// longer than the grace after an end was asked for, is broken off.
class Patience {
 public:
  using Time = std::chrono::nanoseconds;
  static constexpr std::chrono::seconds kGrace{10};

  Patience(Clock& clock, std::function<bool()> ending)
      : clock_(clock), ending_(std::move(ending)) {}

  // A step begins that may take so long.
  void Begin(Time longest) {
    until_ = clock_.Monotonic() + longest;
    hasEnd_ = true;
    endsAt_ = Time::max();
    wasOver_ = false;
  }
  void End() { hasEnd_ = false; }
  [[nodiscard]] bool WasOver() const { return wasOver_; }
  [[nodiscard]] bool IsEnding() const { return ending_(); }

  // For Watch::interrupted.
  [[nodiscard]] bool IsOver() {
    if (!hasEnd_) return false;
    const Time now = clock_.Monotonic();
    if (ending_() && endsAt_ == Time::max()) endsAt_ = now + kGrace;
    if (now < until_ && now < endsAt_) return false;
    hasEnd_ = false;
    return wasOver_ = true;
  }

 private:
  Clock& clock_;
  std::function<bool()> ending_;
  bool hasEnd_ = false;
  bool wasOver_ = false;
  Time until_{0};
  Time endsAt_ = Time::max();
};

}  // namespace kestrel::monitor
