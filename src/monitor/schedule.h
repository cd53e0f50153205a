// When captures are due, and how many went by.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>

namespace kestrel::monitor {

// Capture n is due at the start plus n periods, and can be begun until the next one is due. What
// was not begun by then has gone by; it is counted, never caught up. Times are of a clock that goes
// on while the machine sleeps.
class Schedule {
 public:
  using Time = std::chrono::nanoseconds;
  Schedule(Time start, Time period) : start_(start), period_(period) {}

  // Captures that have gone by since this was last asked.
  [[nodiscard]] std::int64_t TakePassed(Time now) {
    const std::int64_t passed = std::max<std::int64_t>(At(now) - 1 - last_, 0);
    last_ += passed;
    return passed;
  }
  // The one that is due and was not begun; after TakePassed.
  [[nodiscard]] std::optional<std::int64_t> Due(Time now) const {
    return At(now) > last_ ? std::optional{At(now)} : std::nullopt;
  }
  // It is dealt with: begun, or counted elsewhere.
  void Take(std::int64_t number) { last_ = std::max(last_, number); }
  void TakeUpTo(Time now) { Take(At(now)); }
  [[nodiscard]] Time Next() const { return start_ + (last_ + 1) * period_; }
  [[nodiscard]] std::int64_t Last() const { return last_; }

 private:
  [[nodiscard]] std::int64_t At(Time now) const {
    return now < start_ ? -1 : (now - start_) / period_;
  }

  Time start_;
  Time period_;
  std::int64_t last_ = -1;
};

}  // namespace kestrel::monitor
