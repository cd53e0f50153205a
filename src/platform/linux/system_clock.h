// The clocks of Linux.
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/watch_margin.h"
#include "seams/clock.h"

namespace kestrel {

// The system's clocks. Make it on the thread that waits: it sharpens that thread's timers.
class SystemClock : public Clock {
 public:
  SystemClock();

  [[nodiscard]] double SecondsSinceMidnight() override;
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override;
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override;

  // Sleeps until shortly before the deadline and watches the clock for the rest, so that a long
  // wait costs next to no processor time and a short one ends within microseconds, beside busy
  // programs too; see bench/bench_delay.cpp.
  void WaitUntil(std::chrono::nanoseconds deadline) override;

  void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override;

 private:
  WatchMargin margin_;
};

}  // namespace kestrel
