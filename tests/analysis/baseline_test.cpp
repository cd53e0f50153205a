// Behaviour of baselines.
// SPDX-License-Identifier: MIT
#include "analysis/baseline.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Baseline, IsMeanAndScatterOfDecibels) {
  const std::vector<double> levels{-40, -42, -38, -40};
  const std::optional<Usual> usual = UsualOf(levels);
  EXPECT_EQ(usual->captures, 4U);
  EXPECT_DOUBLE_EQ(usual->meanDb, -40);
  EXPECT_DOUBLE_EQ(usual->sigmaDb, std::sqrt(8.0 / 3));
  EXPECT_DOUBLE_EQ(LimitOf(*usual, 3), -40 + 3 * std::sqrt(8.0 / 3));
  EXPECT_EQ(UsualOf(std::vector{5.0})->sigmaDb, 0);
  EXPECT_FALSE(UsualOf({}));
  EXPECT_FALSE(UsualOf(std::vector{5.0, kNan}));
}

TEST(Baseline, APercentileIsALevelThatOccurred) {
  std::vector<double> levels;
  for (int i = 100; i >= 1; --i) levels.push_back(i);
  EXPECT_EQ(PercentileOf(levels, 0.95), 95);
  EXPECT_EQ(PercentileOf(levels, 1), 100);
  EXPECT_EQ(PercentileOf(levels, 0), 1);
  EXPECT_EQ(PercentileOf(levels, 0.001), 1);
  EXPECT_FALSE(PercentileOf(levels, 1.1));
  EXPECT_FALSE(PercentileOf(levels, kNan));
  EXPECT_FALSE(PercentileOf({}, 0.5));
  EXPECT_FALSE(PercentileOf(std::vector{1.0, kNan}, 0.5));
}

TEST(Baseline, FiftyNineCapturesClaimNinetyFivePercentAndThreeHundredNinetyNine) {
  EXPECT_EQ(CapturesNeeded(0.95, 0.95), 59);
  EXPECT_EQ(CapturesNeeded(0.99, 0.95), 299);
  EXPECT_EQ(CapturesNeeded(0.5, 0.5), 1);
  EXPECT_FALSE(CapturesNeeded(1 - 1e-12, 0.95)) << "more than anybody could take";
  for (const double none : {0.0, 1.0, -0.1, kNan}) {
    EXPECT_FALSE(CapturesNeeded(none, 0.95));
    EXPECT_FALSE(CapturesNeeded(0.95, none));
  }
}

TEST(Baseline, EighteenComparisonsAtThreeSigmaAlarmForNothingInTwoPointFourPercent) {
  EXPECT_NEAR(FalseAlarmRate(18, 3), 0.024, 0.0005);
  EXPECT_NEAR(FalseAlarmRate(1, 0), 0.5, 1e-12);
  EXPECT_EQ(FalseAlarmRate(0, 3), 0);
  EXPECT_EQ(FalseAlarmRate(18, kNan), 0);
}

TEST(Baseline, SimulatedFalseAlarmsComeAsOftenAsSaid) {
  std::mt19937_64 random(3);
  std::normal_distribution<double> normal;
  int alarms = 0;
  for (int capture = 0; capture < 20000; ++capture) {
    bool alarm = false;
    for (int band = 0; band < 18; ++band) alarm = normal(random) > 3 || alarm;
    alarms += alarm ? 1 : 0;
  }
  const ShareBounds bounds = BoundsOf(alarms, 20000);
  EXPECT_LE(bounds.low, FalseAlarmRate(18, 3));
  EXPECT_GE(bounds.high, FalseAlarmRate(18, 3));
}

TEST(Baseline, ACountedShareHasItsBounds) {
  const ShareBounds bounds = BoundsOf(5, 132);
  EXPECT_NEAR(bounds.low, 0.0124, 0.0001);
  EXPECT_NEAR(bounds.high, 0.0862, 0.0001);
  EXPECT_EQ(BoundsOf(0, 10).low, 0);
  EXPECT_NEAR(BoundsOf(0, 10).high, 0.3085, 0.0001);
  EXPECT_EQ(BoundsOf(10, 10).high, 1);
  for (const ShareBounds& none : {BoundsOf(0, 0), BoundsOf(-1, 5), BoundsOf(6, 5)}) {
    EXPECT_EQ(none.low, 0);
    EXPECT_EQ(none.high, 1);
  }
}

TEST(Baseline, MOfTheLastNRaiseAnAlarmAndHysteresisHoldsIt) {
  const std::vector<double> levels{0, 5, 0, 5, 5, 2.5, 2.5, 0, 0, 0};
  const std::vector<bool> alarms = Replay(levels, 3, {2, 3, 1});
  EXPECT_THAT(alarms, testing::ElementsAre(false, false, false, true, true, true, true, true, false,
                                           false));
}

// By counting: of so many captures the rank-th smallest is below no more than the claimed share
// with the claimed confidence, and no smaller rank is.
TEST(Baseline, TheRankIsTheSmallestThatCarriesTheClaim) {
  EXPECT_EQ(RankFor(58, 0.95, 0.95), std::nullopt) << "one too few";
  EXPECT_EQ(RankFor(59, 0.95, 0.95), 59);
  EXPECT_EQ(RankFor(59, 1.5, 0.95), std::nullopt) << "no share";
  for (const int captures : {93, 124, 500}) {
    const int rank = RankFor(captures, 0.95, 0.95).value();
    EXPECT_LT(rank, captures);
    const auto chance = [&](int most) {  // that at least so many are below the quantile
      double sum = 0;
      for (int below = most; below <= captures; ++below) {
        sum += std::exp(std::lgamma(captures + 1) - std::lgamma(below + 1) -
                        std::lgamma(captures - below + 1) + below * std::log(0.95) +
                        (captures - below) * std::log(0.05));
      }
      return sum;
    };
    EXPECT_LE(chance(rank), 0.05 + 1e-9) << captures;
    EXPECT_GT(chance(rank - 1), 0.05) << captures;
  }
}

TEST(Baseline, ARestartedAlarmKnowsNothingOfBefore) {
  StandingAlarm alarm(-10, -12, {.m = 2, .n = 3});
  EXPECT_FALSE(alarm.Next(-5));
  EXPECT_TRUE(alarm.Next(-5));
  alarm.Restart();
  EXPECT_FALSE(alarm.Next(-11)) << "between the two limits nothing stands any more";
  EXPECT_FALSE(alarm.Next(-5));
  EXPECT_TRUE(alarm.Next(-5));
}

TEST(Baseline, ASingleOutlierDoesNotAlarmByTwoOfThree) {
  EXPECT_THAT(Replay(std::vector{0.0, 9.0, 0.0, 0.0}, 3, {2, 3, 1}), testing::Each(false));
  EXPECT_THAT(Replay(std::vector{0.0, 9.0, 0.0}, 3, {1, 1, 1}),
              testing::ElementsAre(false, true, false));
}

TEST(Baseline, RulesThatAreNoneAreTheNearestThatIs) {
  EXPECT_THAT(Replay(std::vector{9.0}, 3, {0, 0, -5}), testing::ElementsAre(true));
  EXPECT_THAT(Replay(std::vector{9.0, 9.0}, 3, {7, 2, 1}), testing::ElementsAre(false, true));
  EXPECT_THAT(Replay(std::vector{kNan, kNan}, 3, {1, 1, 1}), testing::Each(false));
  EXPECT_TRUE(Replay({}, 3, {}).empty());
}

TEST(Baseline, AProposedThresholdIsTheNextWord) {
  EXPECT_EQ(ThresholdWord(0, 0.001), 1000);
  EXPECT_EQ(ThresholdWord(0.001, 0.001), 1001);
  EXPECT_EQ(ThresholdWord(-400, 0.001), 1);
  EXPECT_EQ(ThresholdWord(400, 0.001), 65535);
  EXPECT_EQ(ThresholdWord(kNan, 0.001), 65535);
  EXPECT_EQ(ThresholdWord(0, 0), 65535);
}

}  // namespace
}  // namespace kestrel::analysis
