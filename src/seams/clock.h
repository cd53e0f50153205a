// The seam to the computer's clocks: time of day, moment, monotonic time, waits.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

namespace kestrel {

// The computer's timers and the empty loop that is measured against them.
class Clock {
 public:
  virtual ~Clock() = default;

  // Local seconds since midnight; falls back to 0 at midnight.
  [[nodiscard]] virtual double SecondsSinceMidnight() = 0;

  // The moment, in UTC.
  [[nodiscard]] virtual std::chrono::system_clock::time_point UtcNow() = 0;

  // Time since an arbitrary moment; never goes back.
  [[nodiscard]] virtual std::chrono::nanoseconds Monotonic() = 0;

  // Returns once Monotonic() has reached `deadline`, within microseconds of it.
  virtual void WaitUntil(std::chrono::nanoseconds deadline) = 0;

  // Counts `passes` times from 1 to `iterations`, doing nothing else.
  virtual void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) = 0;
};

}  // namespace kestrel
