// Following the sensor's own timer, and that whatever happens leaves a schedule consistent.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "acquisition/repeat_bench.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using testing::DoubleNear;
using testing::Optional;

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
