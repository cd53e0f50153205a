// The tests' own clock moves only when told.
// SPDX-License-Identifier: MIT
#include "support/fake_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrel {
namespace {

using namespace std::chrono_literals;

TEST(FakeClock, MovesOnlyWhenTold) {
  FakeClock clock;
  EXPECT_EQ(clock.Monotonic(), 0ns);
  clock.Advance(3ms);
  EXPECT_EQ(clock.Monotonic(), 3ms);
}

TEST(FakeClock, WaitingGoesToTheDeadlineAndIsRecorded) {
  FakeClock clock;
  clock.Advance(10ms);
  clock.WaitUntil(25ms);
  clock.WaitUntil(5ms);
  EXPECT_EQ(clock.Monotonic(), 25ms);
  EXPECT_THAT(clock.Waits(), ::testing::ElementsAre(15ms, 0ms));
}

TEST(FakeClock, EmptyLoopTakesItsTime) {
  FakeClock clock;
  clock.SetSecondsPerIteration(1e-6);
  clock.RunEmptyLoop(4, 500);
  EXPECT_EQ(clock.Monotonic(), 2ms);
}

TEST(FakeClock, TimeOfDayWrapsAtMidnight) {
  FakeClock clock;
  clock.SetSecondsSinceMidnight(86399.5);
  clock.Advance(1s);
  EXPECT_DOUBLE_EQ(clock.SecondsSinceMidnight(), 0.5);
}

}  // namespace
}  // namespace kestrel
