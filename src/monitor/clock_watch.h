// Whether the time of day was set, or the machine slept.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "seams/clock.h"

namespace kestrel::monitor {

// One moment on two clocks.
struct Now {
  std::chrono::system_clock::time_point wall{};  // UTC; may be set by anybody
  std::chrono::nanoseconds boot{0};              // goes on while the machine sleeps; never set
};

// Time since an arbitrary moment that goes on while the machine sleeps.
using SinceBoot = std::function<std::chrono::nanoseconds()>;

struct ClockStep {
  std::chrono::system_clock::time_point before{};  // what the time of day would be
  std::chrono::system_clock::time_point after{};   // what it is
};
struct Sleep {
  std::chrono::system_clock::time_point from{};
  std::chrono::nanoseconds lasted{0};
};
struct ClockNews {
  std::optional<ClockStep> step{};
  std::optional<Sleep> sleep{};
};

// Compares three clocks from look to look: one that stops while the machine sleeps, one that goes
// on, and the time of day. Slow corrections of the time of day are no steps.
class ClockWatch {
 public:
  static constexpr std::chrono::seconds kLeast{2};  // smaller steps and sleeps are none

  ClockWatch(Clock& clock, SinceBoot sinceBoot);

  [[nodiscard]] Now Read() const;
  // What has happened since the last look.
  [[nodiscard]] ClockNews Look();

 private:
  Clock& clock_;
  SinceBoot sinceBoot_;
  Now last_;
  std::chrono::nanoseconds lastMonotonic_;
};

}  // namespace kestrel::monitor
