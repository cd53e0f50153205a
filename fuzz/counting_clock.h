// A clock that counts how often it is asked.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>

#include "seams/clock.h"

namespace kestrel {

// A clock that moves only when told or waited for, and counts how often it is asked.
class CountingClock : public Clock {
 public:
  [[nodiscard]] double SecondsSinceMidnight() override {
    return std::chrono::duration<double>(now_).count();
  }
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override {
    using std::chrono::system_clock;
    return system_clock::time_point{std::chrono::duration_cast<system_clock::duration>(now_)};
  }
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override {
    ++asked_;
    return now_;
  }
  void WaitUntil(std::chrono::nanoseconds deadline) override { now_ = std::max(now_, deadline); }
  void RunEmptyLoop(std::int32_t /*passes*/, std::int32_t /*iterations*/) override {}

  void Advance(std::chrono::nanoseconds time) { now_ += time; }
  [[nodiscard]] long Asked() const { return asked_; }

 private:
  std::chrono::nanoseconds now_{0};
  long asked_ = 0;
};

}  // namespace kestrel
