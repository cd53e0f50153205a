// How long before a deadline a sleeper is to be back, learnt from how late it came back so far.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>

namespace kestrel {

// What is slept does not count against a thread, what is watched does: on a busy computer a thread
// that watches much of its waits loses its turn in the middle of them. So no more is watched than
// the computer needs to wake somebody up: longer at once where it took longer, shorter bit by bit.
class WatchMargin {
 public:
  // To be watched of the next wait.
  [[nodiscard]] std::chrono::nanoseconds Watched() const { return watched_; }

  // A sleeper came back this much after it was to. One that others kept from its turn says nothing
  // about waking up.
  void Note(std::chrono::nanoseconds late) {
    if (late > kKeptOut) return;
    watched_ =
        std::clamp(std::max(late + kReserve, watched_ - watched_ / kSlowness), kLeast, kMost);
  }

 private:
  static constexpr std::chrono::nanoseconds kLeast{10'000};
  static constexpr std::chrono::nanoseconds kMost{80'000};  // of an idle computer
  static constexpr std::chrono::nanoseconds kReserve{5'000};
  static constexpr std::chrono::nanoseconds kKeptOut{500'000};
  static constexpr int kSlowness = 16;

  std::chrono::nanoseconds watched_ = kMost;
};

}  // namespace kestrel
