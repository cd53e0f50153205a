// The schedule of repeated captures, over scripted time.
// SPDX-License-Identifier: MIT
#include "acquisition/repeat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_clock.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;
using testing::DoubleNear;
using testing::Optional;
using Do = RepeatStep::Do;

class Repeating : public testing::Test {
 protected:
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

TEST_F(Repeating, FollowingFetchesARecordAsTheCountMoves) {
  BeginFollowing(7);
  EXPECT_EQ(What(), Do::Wait) << "what the sensor has already is not a new record";
  EXPECT_EQ(Wait(), 5s) << "not oftener than a slow timer needs";
  clock.Advance(5s);
  EXPECT_EQ(What(), Do::LookAtCount);
  repeat->CountSeen(7);
  EXPECT_EQ(What(), Do::Wait);
  clock.Advance(5s);
  repeat->CountSeen(8);
  Fetch(8);
  EXPECT_EQ(Now().done, 1);
  EXPECT_EQ(Now().missed, 0);
  EXPECT_EQ(What(), Do::Wait);
}

TEST_F(Repeating, FollowingCountsRecordsThatWereNotFetchedInTime) {
  BeginFollowing(65534, 2);
  repeat->CountSeen(65535);
  Fetch(2);
  EXPECT_EQ(Now().done, 1);
  EXPECT_EQ(Now().missed, 3) << "65535, 0 and 1; the newest was read";
  repeat->CountSeen(3);
  Fetch(3);
  EXPECT_EQ(What(), Do::End);
}

TEST_F(Repeating, FollowingCountsARecordThatSomebodyElseRead) {
  BeginFollowing(7);
  repeat->CountFetched(8);
  repeat->CountFetched(8);
  EXPECT_EQ(Now().done, 1);
  repeat->CountSeen(8);
  EXPECT_EQ(What(), Do::Wait) << "it is not fetched again";
}

TEST_F(Repeating, FollowingTellsWhenTheNextIsExpected) {
  BeginFollowing(7, 3);
  EXPECT_EQ(Now().nextIn, std::nullopt);
  EXPECT_THAT(Now().remaining, Optional(DoubleNear(180, 1e-9)));
  repeat->CountSeen(8);
  Fetch(8);
  clock.Advance(20s);
  EXPECT_THAT(Now().nextIn, Optional(DoubleNear(40, 1e-9)));
  EXPECT_THAT(Now().remaining, Optional(DoubleNear(100, 1e-9)));
}

TEST_F(Repeating, ARecordThatCouldNotBeReadInTimeIsTriedAgainAfterTheNextLook) {
  BeginFollowing(7);
  repeat->CountSeen(8);
  repeat->CaptureBegan();
  repeat->FetchMissed("too fast");
  EXPECT_EQ(Now().reason, "too fast");
  EXPECT_EQ(What(), Do::Wait);
  clock.Advance(5s);
  EXPECT_EQ(What(), Do::LookAtCount);
  repeat->CountSeen(9);
  Fetch(9);
  EXPECT_EQ(Now().done, 1);
  EXPECT_EQ(Now().missed, 1);
  EXPECT_EQ(Now().reason, "");
}

TEST_F(Repeating, ASeriesThatEndedWithTheSensorsPowerIsBegunAnew) {
  BeginFollowing(7);
  repeat->SensorLost("unplugged");
  repeat->SensorBack();
  EXPECT_EQ(What(), Do::LookAtCount);
  repeat->CountSeen(0);
  EXPECT_EQ(What(), Do::Capture);
  repeat->CaptureBegan();
  repeat->CountFetched(1);
  repeat->CaptureDone();
  EXPECT_EQ(Now().done, 1);
  EXPECT_EQ(Now().missed, 0);
  EXPECT_EQ(What(), Do::Wait);
}

TEST_F(Repeating, ASeriesThatWentOnWithoutTheProgramIsFollowedAgain) {
  BeginFollowing(7);
  repeat->SensorLost("the port was lost");
  repeat->SensorBack();
  repeat->CountSeen(10);
  Fetch(10);
  EXPECT_EQ(Now().missed, 2);
}

TEST_F(Repeating, ASensorThatIsResetMeanwhileIsNoHostOfMissedRecords) {
  BeginFollowing(500);
  repeat->CountSeen(1);
  Fetch(1);
  EXPECT_EQ(Now().missed, 0);
  EXPECT_EQ(Now().done, 1);
}

// Whatever happens in whatever order, what it tells stays consistent.
class AnyRepeating : public Repeating, public testing::WithParamInterface<unsigned> {
 protected:
  void DoSomething(Random& random) {
    switch (random.Below(9)) {
      case 0:
        return repeat->SensorLost("lost");
      case 1:
        return repeat->SensorBack();
      case 2:
        return random.OneIn(2) ? repeat->Hold("held") : repeat->Release();
      case 3:
        return clock.Advance(std::chrono::milliseconds(random.Below(60'000)));
      case 4:
        return repeat->CountSeen(random.Below(65536));
      case 5:
        return repeat->CountFetched(random.Below(65536));
      case 6:
        return repeat->SensorSought();
      default:
        return Follow(repeat->Next(), random);
    }
  }
  void Follow(const RepeatStep& step, Random& random) {
    if (step.what == Do::Wait) {
      EXPECT_GE(step.until, clock.Monotonic() - 60s);
      clock.SetMonotonic(std::max(step.until, clock.Monotonic()));
    } else if (step.what == Do::Capture || step.what == Do::Fetch) {
      repeat->CaptureBegan();
    } else if (step.what == Do::Nothing) {
      clock.Advance(std::chrono::milliseconds(random.Below(30'000)));
      random.OneIn(6) ? repeat->FetchMissed("missed") : repeat->CaptureDone();
    } else if (step.what == Do::SeekSensor) {
      repeat->SensorSought();
    }
  }
  void Check(int doneBefore) {
    const RepeatProgress now = Now();
    EXPECT_GE(now.done, doneBefore);
    EXPECT_GE(now.missed, 0);
    EXPECT_LE(now.done, now.settings.times.value_or(now.done));
    EXPECT_GE(now.nextIn.value_or(0), 0);
    EXPECT_GE(now.remaining.value_or(0), 0);
    EXPECT_EQ(now.state == RepeatState::Ended, What() == Do::End);
    EXPECT_EQ(now.state == RepeatState::Capturing, What() == Do::Nothing);
    for (const RepeatGap& gap : now.gaps) {
      EXPECT_GE(gap.to.value_or(gap.from), gap.from);
    }
  }
};

TEST_P(AnyRepeating, StaysConsistent) {
  Random random(GetParam());
  for (const RepeatMode mode : {RepeatMode::Every, RepeatMode::AtOnce, RepeatMode::FollowTimer}) {
    Begin({.mode = mode,
           .period = std::chrono::milliseconds(100 + random.Below(20'000)),
           .times = 1 + random.Below(40)});
    for (int step = 0; step < 2000; ++step) {
      const int before = Now().done;
      DoSomething(random);
      Check(before);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnyRepeating, testing::ValuesIn(Seeds(8)));

}  // namespace
}  // namespace kestrel
