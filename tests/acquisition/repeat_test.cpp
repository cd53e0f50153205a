// The schedule of repeated captures, over scripted time.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "acquisition/repeat_bench.h"

namespace kestrel {
namespace {

using testing::DoubleNear;
using testing::Optional;

TEST_F(Repeating, AtAFixedRateBeginsAtOnceAndThenAtEachPeriod) {
  BeginEvery(10s);
  Capture(2s);
  EXPECT_EQ(Wait(), 8s);
  clock.Advance(7999ms);
  EXPECT_EQ(What(), Do::Wait);
  clock.Advance(1ms);
  Capture(3s);
  EXPECT_EQ(Wait(), 7s);
  EXPECT_EQ(Now().done, 2);
  EXPECT_EQ(Now().missed, 0);
}

// What begins late does not shift what comes after it.
TEST_F(Repeating, AtAFixedRateKeepsToTheTimesOfTheStart) {
  BeginEvery(10s);
  Capture(1s);
  clock.Advance(9s + 700ms);
  Capture(1s);
  EXPECT_EQ(Wait(), 8300ms);
}

TEST_F(Repeating, ACaptureLongerThanItsPeriodIsFollowedAtOnceAndMissedOnesAreCounted) {
  BeginEvery(10s);
  Capture(35s);
  EXPECT_EQ(Now().missed, 0) << "not before it is known which one is next";
  Capture(1s);
  EXPECT_EQ(Now().missed, 2) << "those of 10 and 20 s";
  EXPECT_EQ(Wait(), 4s) << "none is queued";
  EXPECT_EQ(Now().done, 2);
}

TEST_F(Repeating, EndsAfterTheLastCapture) {
  BeginEvery(10s, 2);
  Capture(1s);
  clock.Advance(9s);
  Capture(1s);
  EXPECT_EQ(What(), Do::End);
  EXPECT_EQ(Now().state, RepeatState::Ended);
  EXPECT_EQ(Now().done, 2);
  EXPECT_EQ(Now().reason, "");
  EXPECT_EQ(Now().remaining, std::nullopt);
}

TEST_F(Repeating, AtOnceBeginsTheNextAsSoonAsOneIsDone) {
  BeginAtOnce(3);
  for (int i = 0; i < 3; ++i) Capture(400ms);
  EXPECT_EQ(What(), Do::End);
  EXPECT_EQ(Now().done, 3);
}

TEST_F(Repeating, BeginsNothingWhileACaptureRuns) {
  BeginEvery(10s);
  repeat->CaptureBegan();
  clock.Advance(60s);
  EXPECT_EQ(What(), Do::Nothing);
  EXPECT_EQ(Now().state, RepeatState::Capturing);
}

TEST_F(Repeating, TellsTheTimeToTheNextAndToTheEnd) {
  BeginEvery(10s, 4);
  EXPECT_THAT(Now().nextIn, Optional(0.0));
  Capture(2s);
  EXPECT_THAT(Now().nextIn, Optional(DoubleNear(8, 1e-9)));
  EXPECT_THAT(Now().remaining, Optional(DoubleNear(8 + 2 * 10 + 2, 1e-9)));
  clock.Advance(8s);
  repeat->CaptureBegan();
  clock.Advance(1s);
  EXPECT_EQ(Now().nextIn, std::nullopt);
  EXPECT_THAT(Now().remaining, Optional(DoubleNear(2 * 10 + 2 - 1, 1e-9)));
}

TEST_F(Repeating, AtOnceTheTimeToTheEndIsKnownFromTheFirstCapture) {
  BeginAtOnce(5);
  EXPECT_EQ(Now().remaining, std::nullopt);
  Capture(3s);
  EXPECT_THAT(Now().remaining, Optional(DoubleNear(12, 1e-9)));
}

TEST_F(Repeating, UntilStoppedHasNoTimeRemaining) {
  BeginEvery(10s);
  Capture(1s);
  EXPECT_EQ(Now().remaining, std::nullopt);
}

TEST_F(Repeating, TheLongestScheduleHasATimeRemaining) {
  BeginEvery(kLongestRepeat, kMostRepeats);
  Capture(1s);
  EXPECT_THAT(Now().remaining, Optional(DoubleNear(604800.0 * 999'999, 10)));
}

TEST_F(Repeating, AClockThatGoesBackBeginsNothingTwice) {
  BeginEvery(10s);
  Capture(1s);
  clock.SetMonotonic(500s);
  EXPECT_EQ(What(), Do::Wait);
  EXPECT_THAT(Now().nextIn, Optional(DoubleNear(9, 1e-9)));
  clock.SetMonotonic(1010s);
  Capture(1s);
  EXPECT_EQ(Now().done, 2);
}

TEST_F(Repeating, AClockThatLeapsForwardMissesWhatWasDueAndTellsIt) {
  BeginEvery(10s);
  Capture(1s);
  clock.Advance(24h);
  Capture(1s);
  EXPECT_EQ(Now().missed, 8640 - 1);
  EXPECT_EQ(Now().done, 2);
}

TEST_F(Repeating, ALostSensorPausesUntilItIsBackAndTheGapIsTold) {
  BeginEvery(10s, 5);
  Capture(1s);
  clock.Advance(9s);
  repeat->CaptureBegan();
  clock.Advance(1s);
  const auto from = clock.UtcNow();
  repeat->SensorLost("Error Reading SPI");
  EXPECT_EQ(Now().state, RepeatState::Paused);
  EXPECT_EQ(Now().reason, "Error Reading SPI");
  EXPECT_EQ(Now().remaining, std::nullopt);
  EXPECT_EQ(Now().gaps, (std::vector<RepeatGap>{{from, std::nullopt, "Error Reading SPI"}}));
  EXPECT_EQ(Wait(), 1s);
  clock.Advance(1s);
  EXPECT_EQ(What(), Do::SeekSensor);
  repeat->SensorSought();
  EXPECT_EQ(Wait(), 1s);
  clock.Advance(23s);
  repeat->SensorBack();
  EXPECT_EQ(Now().gaps, (std::vector<RepeatGap>{{from, from + 24s, "Error Reading SPI"}}));
  Capture(1s);
  EXPECT_EQ(Now().missed, 1 + 1) << "the one that was lost, and that of 20 s";
  EXPECT_EQ(Now().done, 2);
  EXPECT_EQ(Now().state, RepeatState::Waiting);
}

TEST_F(Repeating, ALossIsOneGapHoweverOftenItIsTold) {
  BeginAtOnce();
  repeat->SensorLost("unplugged");
  repeat->SensorLost("unplugged");
  repeat->SensorBack();
  repeat->SensorBack();
  EXPECT_EQ(Now().gaps.size(), 1U);
}

TEST_F(Repeating, OfVeryManyGapsTheNewestAreKept) {
  BeginAtOnce();
  for (std::size_t i = 0; i <= kMostGaps; ++i) {
    repeat->SensorLost(std::to_string(i));
    repeat->SensorBack();
  }
  EXPECT_EQ(Now().gaps.size(), kMostGaps);
  EXPECT_EQ(Now().gaps.front().reason, "1");
}

TEST_F(Repeating, IsHeldForAReasonThatIsNotTheSensor) {
  BeginEvery(10s);
  repeat->Hold("A message is open.");
  EXPECT_EQ(What(), Do::Wait);
  EXPECT_EQ(Now().state, RepeatState::Paused);
  EXPECT_EQ(Now().reason, "A message is open.");
  repeat->Release();
  EXPECT_EQ(What(), Do::Capture);
  EXPECT_TRUE(Now().gaps.empty());
}

TEST_F(Repeating, StoppedBetweenCapturesEndsAtOnce) {
  BeginEvery(10s, 3);
  Capture(1s);
  repeat->UserStopped();
  EXPECT_EQ(What(), Do::End);
  EXPECT_EQ(Now().reason, "stopped");
  EXPECT_EQ(Now().done, 1);
}

TEST_F(Repeating, StoppedDuringACaptureCompletesItAndEnds) {
  BeginEvery(10s, 3);
  repeat->CaptureBegan();
  repeat->UserStopped();
  EXPECT_TRUE(Now().ending);
  EXPECT_EQ(Now().state, RepeatState::Capturing);
  repeat->CaptureDone();
  EXPECT_EQ(What(), Do::End);
  EXPECT_EQ(Now().done, 1);
  EXPECT_EQ(Now().reason, "stopped");
}

TEST_F(Repeating, ACaptureThatTheUserStopsIsNotCountedAndIsTheEnd) {
  BeginEvery(10s, 3);
  repeat->CaptureBegan();
  repeat->CaptureStopped();
  EXPECT_EQ(What(), Do::End);
  EXPECT_EQ(Now().done, 0);
}

TEST_F(Repeating, AFailureThatIsNotTheSensorsIsTheEnd) {
  BeginAtOnce(3);
  repeat->CaptureBegan();
  repeat->CaptureFailed("The disk is full.");
  EXPECT_EQ(What(), Do::End);
  EXPECT_EQ(Now().reason, "The disk is full.");
  EXPECT_EQ(Now().done, 0);
}

TEST_F(Repeating, StoppedWhileTheSensorIsLostEnds) {
  BeginEvery(10s);
  repeat->SensorLost("unplugged");
  repeat->UserStopped();
  EXPECT_EQ(What(), Do::End);
  repeat->SensorBack();
  EXPECT_EQ(What(), Do::End);
}

}  // namespace
}  // namespace kestrel
