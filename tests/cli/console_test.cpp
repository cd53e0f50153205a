// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/console.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/fake_clock.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;

class ConsoleLoopTest : public testing::Test {
 protected:
  FakeClock clock;
  bool pressed = false;
  int asked = 0;
  ConsoleLoop loop{clock, [this] {
                     ++asked;
                     return std::exchange(pressed, false);
                   }};
};

TEST_F(ConsoleLoopTest, TheTimerTicksEveryInterval) {
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

TEST_F(ConsoleLoopTest, AStoppedTimerTicksNoMore) {
  int ticks = 0;
  loop.StartTimer(milliseconds{50}, [&] { ++ticks; });
  loop.StopTimer();
  loop.YieldUntilEvent();
  EXPECT_EQ(ticks, 0);
}

TEST_F(ConsoleLoopTest, CtrlCEndsAWaitAndActsOnce) {
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

TEST_F(ConsoleLoopTest, APauseLastsAsLongAsItShouldAndLooksForCtrlCMeanwhile) {
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

TEST(StreamMessagesTest, AMessageIsALineOfItsOwn) {
  std::ostringstream stream;
  StreamMessages messages(stream);
  messages.Show("Error Writing SPI");
  messages.Show("\r\n\r\nREADING\r\nFile = x", "Error");
  EXPECT_EQ(stream.str(), "Error Writing SPI\nError: \n\nREADING\nFile = x\n");
  EXPECT_EQ(messages.Count(), 2);
}

}  // namespace
}  // namespace kestrel
