// Proposals by rule, and whether their claims hold in simulated worlds.
// SPDX-License-Identifier: MIT
#include "baseline/rule.h"

#include <algorithm>
#include <limits>
#include <random>

#include "analysis/baseline.h"

namespace kestrel::baseline {
namespace {

constexpr double kStep = 0.001;

CellLevels LevelsFrom(std::vector<double> good) {
  CellLevels levels{.good = good, .sortedGood = std::move(good)};
  std::ranges::sort(levels.sortedGood);
  return levels;
}

TEST(BaselineRule, MeanAndSigmaOfDecibelsWithAFaultAbove) {
  const CellLevels levels = LevelsFrom({100, 200, 400, 800});
  const auto usual = DistributionOf(levels.good, kStep);
  const Proposal proposal = ProposalFor(levels, {.k = 2}, LevelKind::BandPeak, kStep, 900, 0);
  const double limit = usual->meanDb + 2 * usual->sigmaDb;
  EXPECT_EQ(proposal.warning.proposed, std::ceil(StepsOf(limit, kStep)));
  EXPECT_EQ(proposal.fault.proposed, std::ceil(StepsOf(limit + 3, kStep)));
  EXPECT_NEAR(*proposal.warning.ChangeDb(), 20 * std::log10(*proposal.warning.proposed / 900),
              1e-12);
  EXPECT_FALSE(proposal.fault.ChangeDb());
}

TEST(BaselineRule, LevelsThatAreAllEqualGetTheLeastDistance) {
  const CellLevels levels = LevelsFrom(std::vector<double>(60, 100.0));
  const Proposal proposal = ProposalFor(levels, {}, LevelKind::BandPeak, kStep, 0, 0);
  EXPECT_EQ(proposal.warning.proposed, std::ceil(100 * std::pow(10, 1.5 / 20)));
  EXPECT_EQ(ProposalFor(levels, {.kind = RuleKind::Limit95}, LevelKind::BandPeak, kStep, 0, 0)
                .warning.proposed,
            100);
}

TEST(BaselineRule, SaysHowManyRecordsAreMissing) {
  const auto refusal = [](RuleKind kind, std::size_t count) {
    return ProposalFor(LevelsFrom(std::vector<double>(count, 10.0)), {.kind = kind},
                       LevelKind::BandPeak, kStep, 5, 6)
        .refusal;
  };
  EXPECT_EQ(refusal(RuleKind::Limit99, 132), "Needs 299 good records, 167 more than are chosen.");
  EXPECT_EQ(refusal(RuleKind::Limit95, 58), "Needs 59 good records, 1 more than are chosen.");
  EXPECT_EQ(refusal(RuleKind::Limit95, 59), "");
  EXPECT_EQ(refusal(RuleKind::MeanAndSigma, 1), "Needs 2 good records, 1 more than is chosen.");
  EXPECT_EQ(refusal(RuleKind::MeanAndSigma, 0), "Needs 2 good records, none is chosen.");
  EXPECT_EQ(refusal(RuleKind::MeanAndSigma, 2), "");
  EXPECT_FALSE(ProposalFor({}, {}, LevelKind::BandPeak, kStep, 5, 6).warning.proposed);
  EXPECT_EQ(ProposalFor({.refusal = "No."}, {}, LevelKind::BandPeak, kStep, 5, 6).refusal, "No.");
}

TEST(BaselineRule, ThresholdsBeyondTheWordsAreSaidToBeSo) {
  const CellLevels high = LevelsFrom(std::vector<double>(5, 60000.0));
  const Proposal proposal = ProposalFor(high, {}, LevelKind::BandPeak, kStep, 0, 0);
  EXPECT_TRUE(proposal.warning.isBeyond);
  EXPECT_EQ(proposal.warning.proposed, 65535);
  const Proposal near = ProposalFor(high, {.atLeastDb = 0.5}, LevelKind::BandPeak, kStep, 0, 0);
  EXPECT_FALSE(near.warning.isBeyond);
  EXPECT_TRUE(near.fault.isBeyond);
  const Proposal rms = ProposalFor(high, {}, LevelKind::BandRms, kStep, 0, 0);
  EXPECT_FALSE(rms.warning.isBeyond);
  EXPECT_NEAR(*rms.warning.proposed, 60000 * std::pow(10, 1.5 / 20), 1e-6);
  const CellLevels silent = LevelsFrom(std::vector<double>(5, 0.0));
  EXPECT_EQ(ProposalFor(silent, {}, LevelKind::BandPeak, kStep, 0, 0).warning.proposed, 1);
}

TEST(BaselineRule, NumbersThatAreNoneGiveNoLimit) {
  const CellLevels levels = LevelsFrom({100, 200});
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Rule& rule : {Rule{.k = nan}, Rule{.faultAboveDb = nan},
                           Rule{.k = std::numeric_limits<double>::infinity()}}) {
    const Proposal proposal = ProposalFor(levels, rule, LevelKind::BandPeak, kStep, 0, 0);
    EXPECT_EQ(proposal.refusal, "The rule's numbers give no limit.");
    EXPECT_FALSE(proposal.warning.proposed);
  }
  EXPECT_FALSE(
      ProposalFor(LevelsFrom({1, nan}), {}, LevelKind::BandPeak, kStep, 0, 0).warning.proposed);
}

// The smallest rank by adding up the binomial distribution.
int RankBySums(int captures, double share) {
  double atMost = 0;
  for (int k = 0; k < captures; ++k) {
    const double choose =
        std::lgamma(captures + 1.0) - std::lgamma(k + 1.0) - std::lgamma(captures - k + 1.0);
    atMost += std::exp(choose + k * std::log(share) + (captures - k) * std::log1p(-share));
    if (atMost >= 0.95) return k + 1;
  }
  return 0;
}

TEST(BaselineRule, TheLimitIsTheSmallestLevelThatCarriesTheClaim) {
  for (const double share : {0.95, 0.99}) {
    for (const int captures : {58, 59, 60, 93, 132, 298, 299, 300, 500, 1728}) {
      EXPECT_EQ(analysis::RankFor(captures, share, 0.95).value_or(0), RankBySums(captures, share))
          << captures << " of " << share;
    }
  }
}

// In each world a baseline of random levels is taken, and its limit held against the share of all
// levels that truly keeps to it.
TEST(BaselineRule, ALimitsClaimHoldsInAtLeastTheClaimedShareOfSimulatedWorlds) {
  constexpr int kWorlds = 4000;
  std::mt19937_64 random(7);
  std::normal_distribution<double> normal;
  for (const auto& [share, count] : {std::pair{0.95, 59}, {0.95, 132}, {0.99, 299}, {0.99, 700}}) {
    int held = 0;
    for (int world = 0; world < kWorlds; ++world) {
      std::vector<double> levels(static_cast<std::size_t>(count));
      for (double& level : levels) level = normal(random);
      std::ranges::sort(levels);
      const double limit = *LimitFor(levels, share, 0.95);
      held += std::erfc(-limit / std::sqrt(2.0)) / 2 >= share ? 1 : 0;
    }
    EXPECT_GE(analysis::BoundsOf(held, kWorlds).high, 0.95) << share << " of " << count;
    // Not by being needlessly high: what is left of the confidence is one rank at most.
    EXPECT_LE(analysis::BoundsOf(held, kWorlds).low, 0.985) << share << " of " << count;
  }
}

TEST(BaselineRule, TextsTellTheRule) {
  EXPECT_EQ(TextOf(Rule{}),
            "mean + 3 \u03c3 of decibels, at least 1.5 dB; fault 3 dB above the warning");
  EXPECT_EQ(TextOf(Rule{.kind = RuleKind::Limit99}),
            "limit for 99 % of records, with 95 % confidence; fault 3 dB above the warning");
}

}  // namespace
}  // namespace kestrel::baseline
