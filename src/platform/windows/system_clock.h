// The clocks of Windows.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/clock.h"

namespace kestrel {

// The system's clocks. While it exists the system's timers tick every millisecond.
class SystemClock : public Clock {
 public:
  SystemClock();
  ~SystemClock() override;
  SystemClock(const SystemClock&) = delete;
  SystemClock& operator=(const SystemClock&) = delete;

  [[nodiscard]] double SecondsSinceMidnight() override;
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override;
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override;
  // Sleeps while there is time for it and watches the clock for the rest.
  void WaitUntil(std::chrono::nanoseconds deadline) override;
  void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override;
};

}  // namespace kestrel
