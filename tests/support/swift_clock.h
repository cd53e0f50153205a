// A clock that runs fast and skips what is waited for.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "seams/clock.h"

namespace kestrel {

// A clock for tests that run the real event loop: time passes faster than real time, and what is
// waited for is skipped.
class SwiftClock : public Clock {
 public:
  static constexpr int kSpeed = 8;

  [[nodiscard]] double SecondsSinceMidnight() override {
    return std::chrono::duration<double>(Monotonic()).count();
  }
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override {
    using std::chrono::system_clock;
    return startUtc_ + std::chrono::duration_cast<system_clock::duration>(Monotonic());
  }
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override {
    const std::chrono::nanoseconds real = std::chrono::steady_clock::now() - start_;
    return kSpeed * real + skipped_;
  }
  void WaitUntil(std::chrono::nanoseconds deadline) override {
    const std::chrono::nanoseconds now = Monotonic();
    if (deadline > now) skipped_ += deadline - now;
  }
  void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override {
    skipped_ += std::chrono::nanoseconds{static_cast<std::int64_t>(passes) * iterations};
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::system_clock::time_point startUtc_ = std::chrono::system_clock::now();
  std::chrono::nanoseconds skipped_{0};
};

}  // namespace kestrel
