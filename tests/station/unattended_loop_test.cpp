// Timer, pauses and interrupts of the loop without windows.
// SPDX-License-Identifier: MIT
#include "station/unattended_loop.h"

#include <gtest/gtest.h>

#include "support/fake_clock.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;

class UnattendedLoopTest : public testing::Test {
 protected:
  FakeClock clock;
  bool pressed = false;
  int asked = 0;
  UnattendedLoop loop{clock, [this] {
                        ++asked;
                        return std::exchange(pressed, false);
                      }};
};

TEST_F(UnattendedLoopTest, TheTimerTicksEveryInterval) {
  int ticks = 0;
  const auto start = clock.Monotonic();
  loop.StartTimer(milliseconds{50}, [&] { ++ticks; });
  loop.YieldUntilEvent();
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(clock.Monotonic() - start, milliseconds{50});
  loop.YieldUntilEvent();
  EXPECT_EQ(ticks, 2);
  EXPECT_EQ(clock.Monotonic() - start, milliseconds{100});
}

TEST_F(UnattendedLoopTest, AStoppedTimerTicksNoMore) {
  int ticks = 0;
  loop.StartTimer(milliseconds{50}, [&] { ++ticks; });
  loop.StopTimer();
  loop.YieldUntilEvent();
  EXPECT_EQ(ticks, 0);
}

TEST_F(UnattendedLoopTest, CtrlCEndsAWaitAndActsOnce) {
  int actions = 0;
  int ticks = 0;
  loop.OnInterrupt([&] { ++actions; });
  loop.StartTimer(milliseconds{50}, [&] { ++ticks; });
  pressed = true;
  loop.YieldUntilEvent();
  EXPECT_EQ(actions, 1);
  EXPECT_EQ(ticks, 0);
  EXPECT_TRUE(loop.WasInterrupted());
  pressed = true;
  loop.Yield();
  EXPECT_EQ(actions, 1);
}

TEST_F(UnattendedLoopTest, APauseLastsAsLongAsItShouldAndLooksForCtrlCMeanwhile) {
  const auto start = clock.Monotonic();
  loop.Pause(milliseconds{1000});
  EXPECT_EQ(clock.Monotonic() - start, milliseconds{1000});
  EXPECT_GE(asked, 40);
  pressed = true;
  loop.Pause(milliseconds{1000});
  EXPECT_EQ(clock.Monotonic() - start, milliseconds{1000});
  loop.Pause(milliseconds{-5});
  EXPECT_EQ(clock.Monotonic() - start, milliseconds{1000});
}

TEST_F(UnattendedLoopTest, APauseTellsWhetherItWasWhole) {
  EXPECT_TRUE(loop.Pause(milliseconds{30}));
  pressed = true;
  EXPECT_FALSE(loop.Pause(milliseconds{30}));
  EXPECT_TRUE(loop.WasInterrupted());
  loop.Forget();
  EXPECT_FALSE(loop.WasInterrupted());
}

TEST_F(UnattendedLoopTest, WhereNobodyCanInterruptItWaitsToTheEnd) {
  UnattendedLoop alone(clock, nullptr);
  const auto start = clock.Monotonic();
  EXPECT_TRUE(alone.Pause(milliseconds{100}));
  EXPECT_EQ(clock.Monotonic() - start, milliseconds{100});
}

}  // namespace
}  // namespace kestrel
