// A schedule of repeated captures over scripted time, and what tests do with it.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "acquisition/repeat.h"
#include "support/fake_clock.h"

namespace kestrel {

using namespace std::chrono_literals;

class Repeating : public testing::Test {
 protected:
  using Do = RepeatStep::Do;
  using nanoseconds = std::chrono::nanoseconds;

  Repeating() { clock.SetMonotonic(1000s); }

  void Begin(const RepeatSettings& settings) { repeat.emplace(clock, settings); }
  void BeginEvery(nanoseconds period, std::optional<int> times = {}) {
    Begin({.mode = RepeatMode::Every, .period = period, .times = times});
  }
  void BeginAtOnce(std::optional<int> times = {}) {
    Begin({.mode = RepeatMode::AtOnce, .period = 10s, .times = times});
  }
  // In timer mode, with `count` records taken before.
  void BeginFollowing(std::int32_t count, std::optional<int> times = {}) {
    Begin({.mode = RepeatMode::FollowTimer, .period = 10s, .times = times});
    repeat->SensorPeriod(60s);
    repeat->CountSeen(count);
  }
  Do What() { return repeat->Next().what; }
  // Begins the capture that is due and completes it.
  void Capture(nanoseconds lasting) {
    ASSERT_EQ(What(), Do::Capture);
    repeat->CaptureBegan();
    clock.Advance(lasting);
    repeat->CaptureDone();
  }
  void Fetch(std::int32_t count) {
    ASSERT_EQ(What(), Do::Fetch);
    repeat->CaptureBegan();
    repeat->CountFetched(count);
    repeat->CaptureDone();
  }
  // How long is to be waited; 0 when it is not.
  nanoseconds Wait() {
    const RepeatStep step = repeat->Next();
    return step.what == Do::Wait ? step.until - clock.Monotonic() : 0ns;
  }
  RepeatProgress Now() { return repeat->Progress(); }

  FakeClock clock;
  std::optional<Repeat> repeat;
};

}  // namespace kestrel
