// False alarms and misses against counting by hand, and m of n against a naive reference.
// SPDX-License-Identifier: MIT
#include "baseline/replay.h"

#include <algorithm>
#include <random>

namespace kestrel::baseline {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Member> OneRun(std::size_t count, int run = 0) {
  return std::vector<Member>(count, Member{.run = run});
}

struct World {
  CellLevels levels;
  Sets sets;
};

World MadeWorld(unsigned seed, int good, int bad) {
  std::mt19937 random(seed);
  std::lognormal_distribution<double> usual(5, 0.2);
  std::lognormal_distribution<double> worse(5.5, 0.3);
  World world;
  for (int i = 0; i < good; ++i) {
    world.levels.good.push_back(std::round(usual(random)));
    world.sets.good.push_back({.run = i / 40});
  }
  for (int i = 0; i < bad; ++i) {
    world.levels.bad.push_back(std::round(worse(random)));
    world.sets.bad.push_back({.run = 9 + i / 25});
  }
  world.levels.sortedGood = world.levels.good;
  world.levels.sortedBad = world.levels.bad;
  std::ranges::sort(world.levels.sortedGood);
  std::ranges::sort(world.levels.sortedBad);
  return world;
}

// Looks at the last n records anew for every record.
std::vector<std::uint8_t> Naive(const std::vector<double>& steps,
                                const std::vector<Member>& members, double threshold,
                                const Judgement& judgement) {
  const double release = threshold * std::pow(10, -judgement.hysteresisDb / 20);
  std::vector<std::uint8_t> alarms;
  for (std::size_t end = 0; end < steps.size(); ++end) {
    int above = 0;
    int below = 0;
    for (std::size_t back = 0; back < static_cast<std::size_t>(judgement.n) && back <= end;
         ++back) {
      if (members[end - back].run != members[end].run) break;
      above += steps[end - back] > threshold ? 1 : 0;
      below += steps[end - back] < release ? 1 : 0;
    }
    const bool stood = end > 0 && members[end - 1].run == members[end].run && alarms.back() == 1;
    alarms.push_back((stood ? below < judgement.m : above >= judgement.m) ? 1 : 0);
  }
  return alarms;
}

TEST(BaselineReplay, SingleRecordsAlarmWhereTheyAreAboveTheThreshold) {
  EXPECT_THAT(AlarmsOver(std::vector{4.0, 5.0, 6.0, 5.0}, OneRun(4), 5, {}),
              ElementsAre(0, 0, 1, 0));
  EXPECT_THAT(AlarmsOver(std::vector{4.0, 65535.0}, OneRun(2), 0, {}), Each(0));
  EXPECT_THAT(AlarmsOver({}, {}, 5, {.m = 2, .n = 3}), IsEmpty());
}

TEST(BaselineReplay, MOfNWithHysteresisIsWhatANaiveReferenceHas) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    const World world = MadeWorld(seed, 120, 50);
    std::mt19937 random(seed);
    Judgement judgement{.n = 2 + static_cast<int>(random() % 8)};
    judgement.m = 1 + static_cast<int>(random() % static_cast<unsigned>(judgement.n));
    judgement.hysteresisDb = static_cast<double>(random() % 40) / 10;
    const auto threshold = static_cast<double>(120 + random() % 200);
    EXPECT_EQ(AlarmsOver(world.levels.good, world.sets.good, threshold, judgement),
              Naive(world.levels.good, world.sets.good, threshold, judgement));
    EXPECT_EQ(AlarmsOver(world.levels.bad, world.sets.bad, threshold, judgement),
              Naive(world.levels.bad, world.sets.bad, threshold, judgement));
  }
}

TEST(BaselineReplay, AJudgementNeverReachesOverFromOneRunToTheNext) {
  std::vector<Member> members = OneRun(2, 0);
  for (const Member& member : OneRun(2, 1)) members.push_back(member);
  EXPECT_THAT(AlarmsOver(std::vector{1.0, 9.0, 9.0, 9.0}, members, 5, {.m = 2, .n = 2}),
              ElementsAre(0, 0, 0, 1));
}

TEST(BaselineReplay, CountsAreThoseOfTheAlarmsWhateverTheJudgement) {
  const World world = MadeWorld(3, 132, 24);
  for (const Judgement& judgement : {Judgement{}, Judgement{.m = 2, .n = 3}}) {
    for (const double threshold : {0.0, 100.0, 181.0, 200.0, 400.0, 70000.0}) {
      const Counts counts = CountsAt(world.levels, world.sets, threshold, judgement);
      const auto good = AlarmsOver(world.levels.good, world.sets.good, threshold, judgement);
      const auto bad = AlarmsOver(world.levels.bad, world.sets.bad, threshold, judgement);
      EXPECT_EQ(counts.falseAlarms.counted, std::ranges::count(good, 1));
      EXPECT_EQ(counts.caught.counted, std::ranges::count(bad, 1));
      EXPECT_EQ(counts.falseAlarms.of, 132);
      EXPECT_EQ(counts.Misses().counted + counts.caught.counted, 24);
    }
  }
}

TEST(BaselineReplay, CurvesFollowTheCountsWithTheirBounds) {
  const World world = MadeWorld(4, 132, 24);
  const auto curve = CurvesOf(world.levels, world.sets, 0.001, {}, -30, 0, 301);
  ASSERT_EQ(curve.size(), 301U);
  EXPECT_DOUBLE_EQ(curve.back().thresholdDb, 0);
  EXPECT_EQ(curve.front().counts.falseAlarms.counted, 132);
  EXPECT_EQ(curve.back().counts.Misses().counted, 24);
  for (const CurvePoint& point : curve) {
    EXPECT_EQ(point.counts,
              CountsAt(world.levels, world.sets, StepsOf(point.thresholdDb, 0.001), {}));
    EXPECT_EQ(point.falseAlarmBounds.low, point.counts.falseAlarms.Bounds().low);
    EXPECT_EQ(point.missBounds.high, point.counts.Misses().Bounds().high);
  }
  EXPECT_THAT(CurvesOf(world.levels, world.sets, 0.001, {}, 0, 0, 10), IsEmpty());
  EXPECT_THAT(CurvesOf(world.levels, world.sets, 0.001, {}, 0, 1, 1), IsEmpty());
  EXPECT_THAT(CurvesOf({.refusal = "No."}, world.sets, 0.001, {}, 0, 1, 10), IsEmpty());
}

// A threshold of mean + 3 σ on levels whose decibels are normal: the share of false alarms that is
// known lies within the bounds of what a replay counts in at least 95 % of the worlds.
TEST(BaselineReplay, BoundsHoldTheTrueShareInTheSimulatedWorlds) {
  constexpr int kWorlds = 1000;
  std::mt19937_64 random(21);
  std::normal_distribution<double> decibels(-20, 1);
  const double threshold = StepsOf(-18, 0.0001);
  const double known = std::erfc(2 / std::sqrt(2.0)) / 2;
  int held = 0;
  for (int world = 0; world < kWorlds; ++world) {
    CellLevels levels;
    for (int i = 0; i < 132; ++i) {
      levels.sortedGood.push_back(StepsOf(decibels(random), 0.0001));
    }
    std::ranges::sort(levels.sortedGood);
    const auto bounds = CountsAt(levels, {}, threshold, {}).falseAlarms.Bounds();
    held += bounds.low <= known && known <= bounds.high ? 1 : 0;
  }
  EXPECT_GE(held, 950 - 3 * 7);  // three standard deviations of a count with 95 %
}

TEST(BaselineReplay, TextsTellWhoJudges) {
  EXPECT_EQ(TextOf(Judgement{}), "single records, as the sensor judges them");
  EXPECT_EQ(TextOf(Judgement{.m = 3, .n = 5}),
            "3 of 5 records, hysteresis 1 dB, as this program judges them");
}

}  // namespace
}  // namespace kestrel::baseline
