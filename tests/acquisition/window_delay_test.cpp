// Waits of the windows: rounding, nesting, closing.
// SPDX-License-Identifier: MIT
#include "acquisition/window_delay.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "numeric/runtime_error.h"
#include "support/fake_clock.h"
#include "support/reset_program.h"
#include "support/scripted_loop.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Intervals = std::vector<std::chrono::milliseconds>;

class Waiting : public testing::Test {
 protected:
  Waiting() { ResetProgram(); }
  ~Waiting() override { ResetProgram(); }

  FakeClock clock;
  ScriptedLoop loop{clock};
  WindowDelay delay{loop};
};

TEST_F(Waiting, EndsAtTheTickAndLeavesTheTimerOff) {
  delay.DelayA(50);
  EXPECT_EQ(clock.Monotonic(), 50ms);
  EXPECT_EQ(loop.Intervals(), Intervals{50ms});
  EXPECT_FALSE(loop.TimerRuns());
  EXPECT_EQ(DelayActive, 0);
}

TEST_F(Waiting, RoundsHalfToEven) {
  for (const double ms : {0.6, 1.5, 2.5, 2.51}) delay.DelayA(ms);
  EXPECT_EQ(loop.Intervals(), (Intervals{1ms, 2ms, 2ms, 3ms}));
}

TEST_F(Waiting, NoTimeYieldsOnceWithoutTheTimer) {
  for (const double ms : {0.0, 0.5, -3.0}) delay.DelayA(ms);
  EXPECT_EQ(loop.Intervals(), Intervals{});
  EXPECT_EQ(loop.Yields(), 3);
  EXPECT_EQ(clock.Monotonic(), 0ms);
}

TEST_F(Waiting, IsActiveForHandlersThatRunMeanwhile) {
  std::int16_t seen = -1;
  loop.At(20ms, [&] { seen = DelayActive; });
  delay.DelayA(50);
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(clock.Monotonic(), 50ms);
}

// There is one timer: the inner wait starts it anew and its tick ends both.
TEST_F(Waiting, AWaitInsideAWaitEndsTheOuterOneAtTheSameTick) {
  std::chrono::nanoseconds innerEnd{};
  loop.At(100ms, [&] {
    delay.DelayA(50);
    innerEnd = clock.Monotonic();
  });
  delay.DelayA(360);
  EXPECT_EQ(innerEnd, 150ms);
  EXPECT_EQ(clock.Monotonic(), 150ms);
  EXPECT_EQ(loop.Intervals(), (Intervals{360ms, 50ms}));
  EXPECT_FALSE(loop.TimerRuns());
}

TEST_F(Waiting, ClosingEndsTheWaitAtHandAndAllLaterOnes) {
  loop.At(20ms, [&] { delay.Close(); });
  delay.DelayA(50);
  EXPECT_EQ(clock.Monotonic(), 20ms);
  EXPECT_FALSE(loop.TimerRuns());
  const int yields = loop.Yields();
  delay.DelayA(1000);
  EXPECT_EQ(clock.Monotonic(), 20ms);
  EXPECT_EQ(loop.Yields(), yields);
}

TEST_F(Waiting, TooLongATimeOverflowsBeforeAnythingStarts) {
  EXPECT_THROW(delay.DelayA(3e9), RuntimeError);
  EXPECT_EQ(loop.Intervals(), Intervals{});
  EXPECT_EQ(DelayActive, 0);
}

}  // namespace
}  // namespace kestrel
