// Behaviour of one spectrum over several rate options.
// SPDX-License-Identifier: MIT
#include "analysis/joined.h"

#include <gmock/gmock.h>

#include "tones.h"

namespace kestrel::analysis {
namespace {

Spectrum Capture(int option, const std::vector<std::pair<double, double>>& tonesHz,
                 WindowKind window = WindowKind::Hanning) {
  std::vector<Tone> tones;
  for (const auto& [hz, peakG] : tonesHz) {
    if (hz / BinWidth(option) < 256) tones.push_back({hz / BinWidth(option), peakG, 0.3});
  }
  return SpectrumOfTones(tones, window, option);
}

std::vector<Spectrum> All(const std::vector<std::pair<double, double>>& tonesHz) {
  std::vector<Spectrum> captures;
  for (int option = 0; option < 4; ++option) captures.push_back(Capture(option, tonesHz));
  return captures;
}

TEST(Joined, EachOptionIsUsedFromItsThirdBinToWhereTheNextBecomesValid) {
  const Told<Joined> joined = Join(All({}));
  ASSERT_TRUE(joined);
  ASSERT_EQ(joined->segments.size(), 4U);
  EXPECT_EQ(joined->segments[0].option, 3);
  EXPECT_NEAR(joined->segments[0].usedFromHz, 1.1466, 0.001);
  EXPECT_NEAR(joined->segments[0].usedToHz, 9.173, 0.001);
  EXPECT_NEAR(joined->segments[1].usedToHz, 73.38, 0.01);
  EXPECT_NEAR(joined->segments[2].usedToHz, 587.05, 0.01);
  EXPECT_NEAR(joined->segments[3].usedToHz, 49899.3, 0.1);
}

TEST(Joined, FlatTopStartsAtTheFifthBin) {
  const Told<Joined> joined =
      Join({Capture(0, {}, WindowKind::FlatTop), Capture(1, {}, WindowKind::FlatTop)});
  EXPECT_NEAR(joined->segments[0].usedToHz, 978.4, 0.1);
}

TEST(Joined, PointsRiseAndCarryDensityOfTheirOption) {
  const Told<Joined> joined = Join(All({{50, 0.1}}));
  double before = 0;
  for (const JoinedPoint& point : joined->points) {
    EXPECT_GT(point.hz, before);
    before = point.hz;
    EXPECT_NEAR(point.density, point.peakG * point.peakG / 2 / (1.5 * BinWidth(point.option)),
                1e-12);
  }
  EXPECT_EQ(joined->points.front().option, 3);
  EXPECT_EQ(joined->points.back().option, 0);
}

TEST(Joined, ASteadyMachineAgreesInTheOverlaps) {
  const Told<Joined> joined = Join(All({{50, 0.1}, {400, 0.2}, {3000, 0.5}}));
  ASSERT_EQ(joined->overlaps.size(), 3U);
  for (const Overlap& overlap : joined->overlaps) {
    EXPECT_NEAR(overlap.differenceDb, 0, 0.2) << overlap.fineOption;
  }
  EXPECT_TRUE(joined->Steady());
  EXPECT_NEAR(std::sqrt(PowerBetween(*joined, 30, 70)), 0.1 / std::sqrt(2.0), 1e-4);
}

TEST(Joined, ALineBelowTheOverlapThatLeaksIntoItDoesNotMakeTheMachineUnsteady) {
  for (double hz = 12; hz < 73; hz += 0.7) {
    EXPECT_TRUE(Join(All({{hz, 0.3}}))->Steady()) << hz;
  }
}

TEST(Joined, ALineOnTheEdgeOfTheOverlapThatGrewMakesItUnsteady) {
  for (const double hz : {80.0, 95.0, 120.0, 700.0}) {
    std::vector<Spectrum> captures = All({{hz, 0.3}});
    captures[1] = Capture(1, {{hz, 0.6}});
    EXPECT_FALSE(Join(captures)->Steady()) << hz;
  }
}

TEST(Joined, AMachineThatIsNotSteadyIsSaidToBeSo) {
  std::vector<Spectrum> captures = All({{3000, 0.5}});
  captures[0] = Capture(0, {{3000, 0.8}});
  const Told<Joined> joined = Join(captures);
  EXPECT_NEAR(joined->overlaps[2].differenceDb, 4.08, 0.05);
  EXPECT_TRUE(joined->overlaps[2].unsteady);
  EXPECT_FALSE(joined->overlaps[1].unsteady);
  EXPECT_FALSE(joined->Steady());
  EXPECT_TRUE(Join(captures, 5)->Steady());
}

TEST(Joined, ALineIsListedOnceByTheFinestCaptureThatIsUsedThere) {
  const Told<Joined> joined = Join(All({{50, 0.1}, {400, 0.2}, {3000, 0.5}}));
  const std::vector<JoinedLine> lines = LinesOf(*joined);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].option, 0);
  EXPECT_NEAR(lines[0].peak.line.hz, 3000, 1);
  EXPECT_EQ(lines[1].option, 1);
  EXPECT_EQ(lines[2].option, 2);
  EXPECT_NEAR(lines[2].peak.line.hz, 50, 0.05);
}

TEST(Joined, ALineAtTheBorderOfTwoCapturesIsListedOnce) {
  for (double hz = 560; hz < 620; hz += 1.3) {
    const Told<Joined> joined = Join(All({{hz, 0.3}}));
    EXPECT_EQ(LinesOf(*joined).size(), 1U) << hz;
  }
}

TEST(Joined, MissingOptionsLeaveAGapThatIsNotUsed) {
  const Told<Joined> joined = Join({Capture(0, {}), Capture(3, {})});
  ASSERT_EQ(joined->segments.size(), 2U);
  EXPECT_NEAR(joined->segments[0].usedToHz, 97.46, 0.01);
  EXPECT_NEAR(joined->segments[1].usedFromHz, 587.05, 0.01);
  EXPECT_TRUE(joined->overlaps.empty());
}

TEST(Joined, SilenceEverywhereIsSteady) {
  std::vector<Spectrum> captures = All({});
  for (Spectrum& capture : captures) capture.peakG.assign(256, 0.0);
  const Told<Joined> joined = Join(captures);
  EXPECT_TRUE(joined->Steady());
  EXPECT_TRUE(LinesOf(*joined).empty());
}

TEST(Joined, WhatDoesNotBelongTogetherIsRefused) {
  EXPECT_FALSE(Join({}));
  EXPECT_FALSE(Join({Capture(1, {}), Capture(1, {})}));
  Spectrum other = Capture(2, {});
  other.axis = Axis::Z;
  EXPECT_FALSE(Join({Capture(1, {}), other}));
  other = Capture(2, {});
  other.window = WindowOfCode(3);
  EXPECT_FALSE(Join({Capture(1, {}), other}));
  other = Capture(2, {});
  other.source = SpectrumSource::MaximumHold;
  EXPECT_FALSE(Join({Capture(1, {}), other}));
  other = Capture(2, {});
  other.peakG.resize(1);
  EXPECT_FALSE(Join({Capture(1, {}), other}));
  other = Capture(2, {});
  other.binWidthHz = 0;
  EXPECT_FALSE(Join({Capture(1, {}), other}));
}

TEST(Joined, NoMoreLinesAreListedThanAskedForAndTheLargestStay) {
  const Told<Joined> joined = Join(All({{50, 0.1}, {400, 0.2}, {3000, 0.5}}));
  const std::vector<JoinedLine> lines = LinesOf(*joined, {.atMost = 2});
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NEAR(lines[0].peak.line.hz, 3000, 1);
  EXPECT_NEAR(lines[1].peak.line.hz, 400, 1);
}

TEST(Joined, LinesThatAreNotResolvedHaveNoBoundToWiden) {
  const double width = BinWidth(1);
  const Told<Joined> joined =
      Join({Capture(0, {}), Capture(1, {{10.2 * width, 1.0}, {12.2 * width, 0.8}})});
  const std::vector<JoinedLine> lines = LinesOf(*joined);
  ASSERT_FALSE(lines.empty());
  EXPECT_TRUE(lines[0].peak.line.unresolved);
  EXPECT_FALSE(lines[0].peak.line.peakBoundG);
}

TEST(Joined, AveragedMagnitudesWidenTheBoundsOfALine) {
  std::vector<double> samples = SamplesOf({{100.3, 1.0, 0.4}});
  std::mt19937_64 random(3);
  AddNoise(samples, 0.1, random);
  const auto line = [&](int averages) {
    Spectrum capture = SpectrumOfSamples(samples, WindowKind::Hanning);
    capture.averages = averages;
    return std::pair(LinesOf(*Join({capture})).at(0).peak.line, LineAt(capture, 100));
  };
  const auto [one, own] = line(1);
  EXPECT_EQ(one.hzBound, own.hzBound);
  EXPECT_EQ(one.peakBoundG, own.peakBoundG);
  const auto [averaged, plain] = line(64);
  EXPECT_GT(averaged.hzBound, plain.hzBound);
  EXPECT_GT(*averaged.peakBoundG, *plain.peakBoundG);
}

}  // namespace
}  // namespace kestrel::analysis
