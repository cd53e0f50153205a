// The time that requests may wait for devices that do not answer.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace kestrel {

// One time limit is shared by requests that follow each other without a pause, so that a device
// that has fallen silent cannot hold the program up for a limit a request. It comes back with the
// time that passes between requests: whoever tries again later waits as long as at first.
class WaitBudget {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Milliseconds = std::chrono::milliseconds;

  explicit WaitBudget(Milliseconds limit) : limit_(limit), left_(limit) {}

  // How long a request that begins now may wait; enough for a device that answers at once.
  [[nodiscard]] Milliseconds Left(Time now) {
    if (ended_) {
      left_ = std::min(limit_, left_ + std::chrono::floor<Milliseconds>(now - *ended_));
      ended_ = now;
    }
    return std::max(left_, std::min(limit_, kShortest));
  }

  // A request that began at `start` was given up at `end`.
  void GivenUp(Time start, Time end) {
    left_ = std::max(Milliseconds{0}, left_ - std::chrono::ceil<Milliseconds>(end - start));
    ended_ = end;
  }

 private:
  static constexpr Milliseconds kShortest{25};

  Milliseconds limit_;
  Milliseconds left_;
  std::optional<Time> ended_;  // when the time last began to come back
};

}  // namespace kestrel
