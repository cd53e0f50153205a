// What the sensor is doing: nothing, one command or one capture; or it sleeps.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <utility>

#include "seams/clock.h"

namespace kestrel::sensor {

// At most one work at a time, to be finished once its time has passed on the clock.
class Work {
 public:
  using Time = std::chrono::nanoseconds;
  enum class Kind { None, Command, Capture };

  explicit Work(Clock& clock) : clock_(clock) {}

  [[nodiscard]] Time Now() const { return clock_.Monotonic(); }

  [[nodiscard]] bool IsIdle() const { return kind_ == Kind::None; }
  [[nodiscard]] bool IsCommand() const { return kind_ == Kind::Command; }
  [[nodiscard]] bool IsCapture() const { return kind_ == Kind::Capture; }

  // Of this work or, when idle, of the last one; after PowerUp its moment.
  [[nodiscard]] Time Begun() const { return begun_; }
  [[nodiscard]] Time Due() const { return due_; }

  void Begin(Kind kind, Time start, Time duration) {
    kind_ = kind;
    begun_ = start;
    due_ = start + duration;
  }

  // Done or given up; returns what it was.
  Kind End() { return std::exchange(kind_, Kind::None); }

  // A frame wakes the sensor.
  [[nodiscard]] bool IsAsleep() const { return asleep_; }
  void FallAsleep() { asleep_ = true; }
  void Wake() { asleep_ = false; }

  void PowerUp(Time moment) {
    Begin(Kind::None, moment, Time{0});
    Wake();
  }

 private:
  Clock& clock_;
  Kind kind_ = Kind::None;
  bool asleep_ = false;
  Time begun_{0};
  Time due_{0};
};

}  // namespace kestrel::sensor
