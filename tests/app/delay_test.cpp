// Short waits: resolution, rounding, and which clock they follow.
// SPDX-License-Identifier: MIT
#include "app/delay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "numeric/runtime_error.h"
#include "support/fake_clock.h"
#include "support/given.h"
#include "support/recording_pointer.h"

namespace kestrel {
namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class DelayTest : public testing::Test {
 protected:
  DelayTest() {
    ResetDelayState();
    Given(DelayCalibrated) = true;
    Given(LoopsPer10us) = 1;
  }
  ~DelayTest() override { ResetDelayState(); }

  FakeClock clock_;
  RecordingPointer pointer_;
  SoftwareDelay delay_{clock_, pointer_};
};

TEST_F(DelayTest, ZeroIsNoWaitAtAll) {
  Given(DelayCalibrated) = false;
  float ms = 0;
  delay_.Delay(ms);
  delay_.Delay(-0.0F);
  EXPECT_THAT(clock_.Waits(), IsEmpty());
  EXPECT_FALSE(DelayCalibrated);
  EXPECT_EQ(ms, 0.0F);
}

TEST_F(DelayTest, ShorterThanTheResolutionBecomesTheResolution) {
  for (const float asked : {0.004F, 0.0099F, 1e-30F, -0.01F, -5.0F}) {
    clock_.ClearWaits();
    float ms = asked;
    delay_.Delay(ms);
    EXPECT_EQ(ms, 0.01F) << asked;
    EXPECT_THAT(clock_.Waits(), ElementsAre(microseconds{10})) << asked;
  }
}

TEST_F(DelayTest, WaitsAreRoundedToTheResolution) {
  struct Row {
    float ms;
    microseconds expected;
  };
  const Row rows[] = {
      {0.01F, microseconds{10}},  {0.014F, microseconds{10}},     {0.016F, microseconds{20}},
      {0.1F, microseconds{100}},  {0.125F, microseconds{120}},    {0.375F, microseconds{380}},
      {1.0F, microseconds{1000}}, {500.0F, microseconds{500000}}, {3000.0F, microseconds{3000000}}};
  for (const Row& row : rows) {
    clock_.ClearWaits();
    float ms = row.ms;
    delay_.Delay(ms);
    EXPECT_THAT(clock_.Waits(), ElementsAre(row.expected)) << row.ms;
    EXPECT_EQ(ms, row.ms);
  }
}

TEST_F(DelayTest, TooLongAWaitIsAnOverflow) {
  try {
    delay_.Delay(3e7F);
    FAIL() << "was accepted";
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(), "Overflow");
  }
  EXPECT_THAT(clock_.Waits(), IsEmpty());
}

TEST_F(DelayTest, FirstWaitCalibrates) {
  ResetDelayState();
  clock_.SetSecondsPerIteration(1e-8);
  delay_.Delay(0.1F);
  EXPECT_TRUE(DelayCalibrated);
  EXPECT_EQ(LoopsPer10us, 1000);
  EXPECT_THAT(clock_.Waits(), ElementsAre(microseconds{100}));
  EXPECT_THAT(pointer_.Shown(), ElementsAre("hourglass", "default"));
  delay_.Delay(0.1F);
  EXPECT_EQ(pointer_.Shown().size(), 2U);
}

TEST_F(DelayTest, ResetRestoresEveryName) {
  Given(LoopsPer10us) = 5;
  Given(MinimumDelay) = 1;
  Given(MinimumDelayCount) = 2;
  Given(DelayReport) = "text";
  ResetDelayState();
  EXPECT_EQ(LoopsPer10us, 0);
  EXPECT_FALSE(DelayCalibrated);
  EXPECT_EQ(MinimumDelay, 0.0F);
  EXPECT_EQ(MinimumDelayCount, 0);
  EXPECT_EQ(DelayReport, "");
}

TEST_F(DelayTest, SkippedCalibrationSaysSo) {
  ResetDelayState();
  delay_.SkipCalibration();
  EXPECT_TRUE(DelayCalibrated);
  EXPECT_EQ(LoopsPer10us, 1000);
  EXPECT_EQ(DelayReport, "Delay calibration was skipped.\r\n");
  EXPECT_THAT(pointer_.Shown(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
