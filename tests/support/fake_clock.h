// A clock that moves only when told.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <vector>

#include "seams/clock.h"

namespace kestrel {

// A clock that moves only when told: by Advance, by waiting, or by running the empty loop.
class FakeClock : public Clock {
 public:
  [[nodiscard]] double SecondsSinceMidnight() override {
    const std::chrono::duration<double> passed = now_ - midnightSetAt_;
    return std::fmod(midnightSeconds_ + passed.count(), 86400.0);
  }

  // Moves with the monotonic time from the 14th of March 2024, 8:26:53 UTC.
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override {
    using namespace std::chrono;
    return system_clock::time_point{seconds{1710404813}} +
           duration_cast<system_clock::duration>(now_);
  }

  [[nodiscard]] std::chrono::nanoseconds Monotonic() override { return now_; }

  void WaitUntil(std::chrono::nanoseconds deadline) override {
    waits_.push_back(std::max(deadline - now_, std::chrono::nanoseconds{0}));
    now_ = std::max(now_, deadline);
  }

  void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override {
    AdvanceSeconds(static_cast<double>(passes) * iterations * secondsPerIteration_);
  }

  void Advance(std::chrono::nanoseconds time) { now_ += time; }
  void AdvanceSeconds(double seconds) {
    now_ += std::chrono::nanoseconds{std::llround(seconds * 1e9)};
  }

  // The time of day from now on; it moves with the monotonic time and wraps at midnight.
  void SetSecondsSinceMidnight(double seconds) {
    midnightSeconds_ = seconds;
    midnightSetAt_ = now_;
  }
  void SetMonotonic(std::chrono::nanoseconds now) { now_ = now; }
  void SetSecondsPerIteration(double seconds) { secondsPerIteration_ = seconds; }

  // How long each WaitUntil waited, in order; 0 for a deadline that had passed already.
  [[nodiscard]] const std::vector<std::chrono::nanoseconds>& Waits() const { return waits_; }
  void ClearWaits() { waits_.clear(); }

 private:
  std::chrono::nanoseconds now_{0};
  std::chrono::nanoseconds midnightSetAt_{0};
  double midnightSeconds_ = 0.0;
  double secondsPerIteration_ = 1e-9;
  std::vector<std::chrono::nanoseconds> waits_;
};

}  // namespace kestrel
