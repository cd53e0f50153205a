// Behaviour of cursors.
// SPDX-License-Identifier: MIT
#include "analysis/cursors.h"

#include <gmock/gmock.h>

#include <limits>

#include "numeric/number_texts.h"
#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Cursors, AReadingLiesOnTheLineThatIsDrawn) {
  const std::vector<double> values{9, 9, 2, 4, 8};
  const TraceView trace{.values = &values, .x0 = 0, .step = 10, .firstValid = 2};
  EXPECT_EQ(ReadAt(trace, 20), 2);
  EXPECT_EQ(ReadAt(trace, 35), 6);
  EXPECT_EQ(ReadAt(trace, 40), 8);
  for (const double outside : {10.0, 19.0, 41.0, kNan}) EXPECT_FALSE(ReadAt(trace, outside));
  EXPECT_FALSE(ReadAt(TraceView{}, 1));
}

TEST(Cursors, StepsStayWithinWhatCanBeTold) {
  const std::vector<double> values(256, 1.0);
  const TraceView trace{.values = &values, .x0 = 0, .step = 10, .firstValid = 2};
  EXPECT_EQ(Moved(trace, 100, CursorStep::Bin, 1), 110);
  EXPECT_EQ(Moved(trace, 100, CursorStep::TenBins, -1), 20);
  EXPECT_EQ(Moved(trace, 1000, CursorStep::TenBins, 2), 1200);
  EXPECT_EQ(Moved(trace, 2500, CursorStep::TenBins, 1), 2550);
  EXPECT_DOUBLE_EQ(Moved(trace, 100, CursorStep::TenthOfBin, 3), 103);
  EXPECT_EQ(Moved(trace, 103, CursorStep::Bin, 1), 110);
  EXPECT_EQ(OnPoint(trace, -1e12), 20);
  EXPECT_EQ(OnPoint(trace, kNan), 0);
}

TEST(Cursors, DeltaTellsDifferenceRatioAndReciprocal) {
  const std::vector<double> values{0, 1, 2, 10};
  const std::vector<double> levels{0, -6, -3, 4};
  const std::vector<TraceView> traces{{&values, 0, 5, 0}, {&levels, 0, 5, 0, true}};
  const DeltaReading reading = ReadDelta(traces, 5, 15);
  EXPECT_EQ(reading.dx, 10);
  EXPECT_DOUBLE_EQ(*reading.reciprocal, 0.1);
  EXPECT_EQ(reading.rows[0].difference, 9);
  EXPECT_DOUBLE_EQ(*reading.rows[0].ratioDb, 20);
  EXPECT_EQ(reading.rows[1].ratioDb, 10);
}

TEST(Cursors, DeltaOfNothingHasNoRatioAndOfOnePlaceNoReciprocal) {
  const std::vector<double> values{0, 1, 2, 10};
  const DeltaReading reading = ReadDelta({{&values, 0, 5, 0}}, 0, 5);
  EXPECT_EQ(reading.rows[0].difference, 1);
  EXPECT_FALSE(reading.rows[0].ratioDb);
  EXPECT_FALSE(ReadDelta({}, 5, 5).reciprocal);
  EXPECT_TRUE(ReadDelta({{&values, 0, 5, 0}}, kNan, 5).rows.empty());
}

Spectrum Harmonic(double f0Bins, int count, WindowKind window = WindowKind::Hanning) {
  std::vector<Tone> tones;
  for (int n = 1; n <= count; ++n) tones.push_back({n * f0Bins, 1.0 / n, 0.7 * n});
  return SpectrumOfTones(tones, window);
}

TEST(Cursors, TheFundamentalIsRefinedOverItsHarmonics) {
  const Spectrum spectrum = Harmonic(22.137, 5);
  const double truth = 22.137 * spectrum.binWidthHz;
  const HarmonicReading reading =
      ReadHarmonics(spectrum, FindPeaks(spectrum), 22 * spectrum.binWidthHz, 8);
  EXPECT_EQ(reading.used, 5);
  EXPECT_NEAR(reading.f0, truth, reading.f0Bound);
  EXPECT_LT(reading.f0Bound, 0.001 * spectrum.binWidthHz);
  ASSERT_EQ(reading.members.size(), 8U);
  EXPECT_NEAR(*reading.members[1].relativeDb, -6.02, 0.01);
  EXPECT_FALSE(reading.members[5].found);
  EXPECT_LT(reading.members[5].belowG, 0.001);
}

TEST(Cursors, HarmonicsEndWithTheAxisAndAFundamentalThatIsNoneHasNone) {
  const Spectrum spectrum = Harmonic(60, 3);
  const std::vector<Peak> peaks = FindPeaks(spectrum);
  EXPECT_EQ(ReadHarmonics(spectrum, peaks, 60 * spectrum.binWidthHz, 50).members.size(), 4U);
  for (const double none : {0.0, -5.0, kNan, spectrum.binWidthHz / 2, 1e9}) {
    const HarmonicReading reading = ReadHarmonics(spectrum, peaks, none, 50);
    EXPECT_TRUE(reading.members.empty()) << none;
    EXPECT_TRUE(std::isfinite(reading.f0));
  }
  EXPECT_TRUE(ReadHarmonics(Spectrum{}, {}, 100, 5).members.empty());
}

TEST(Cursors, SidebandsKeepTheCentreAndRefineTheSpacing) {
  const Spectrum spectrum =
      SpectrumOfTones({{116.2, 0.6, 0}, {111.1, 0.09, 1}, {121.3, 0.07, 2}, {126.4, 0.024, 3}},
                      WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const SidebandReading reading =
      ReadSidebands(spectrum, FindPeaks(spectrum), 116 * width, 5 * width, 3);
  EXPECT_EQ(reading.used, 3);
  EXPECT_NEAR(reading.centreHz, 116.2 * width, 0.01 * width);
  EXPECT_NEAR(reading.spacingHz, 5.1 * width, reading.spacingBound);
  EXPECT_LT(reading.spacingBound, 0.05 * width);
  EXPECT_EQ(reading.members.size(), 7U);
  EXPECT_EQ(reading.members[3].number, 0);
  EXPECT_NEAR(*reading.sidebandsDb,
              10 * std::log10((0.09 * 0.09 + 0.07 * 0.07 + 0.024 * 0.024) / 0.36), 0.3);
}

TEST(Cursors, DraggingAMemberMovesTheOthers) {
  EXPECT_EQ(HarmonicDragged(4, 1000), 250);
  EXPECT_EQ(SidebandDragged(1000, -2, 900), 50);
  EXPECT_FALSE(HarmonicDragged(0, 1000));
  EXPECT_FALSE(HarmonicDragged(2, -1));
  EXPECT_FALSE(HarmonicDragged(2, kNan));
  EXPECT_FALSE(SidebandDragged(1000, 0, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, 1000));
  EXPECT_FALSE(SidebandDragged(kNan, 2, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, kNan));
}

TEST(Cursors, SnapGoesToTheInterpolatedPeakWithinReach) {
  const Spectrum spectrum = SpectrumOfTones({{70.4, 0.9, 1}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const std::vector<Peak> peaks = FindPeaks(spectrum);
  EXPECT_NEAR(Snapped(peaks, 71 * width, width), 70.4 * width, 0.001 * width);
  EXPECT_EQ(Snapped(peaks, 75 * width, width), 75 * width);
}

TEST(Cursors, TablesCopyToASpreadsheet) {
  const Spectrum spectrum = Harmonic(22.137, 2);
  const TextTable table =
      TableOf(ReadHarmonics(spectrum, FindPeaks(spectrum), 22.137 * spectrum.binWidthHz, 3));
  ASSERT_EQ(table.rows.size(), 3U);
  EXPECT_EQ(table.rows[0][0], "1×");
  EXPECT_EQ(table.rows[2][2], "not found");
  for (const auto& row : table.rows) EXPECT_EQ(row.size(), table.heads.size());
  EXPECT_THAT(
      table.WithTabs(),
      testing::StartsWith("n\tExpected, Hz\tFound, Hz\t±\tOff by, Hz\tg peak\tre 1×, dB\n"));
}

TEST(Cursors, TheTableOfSidebandsNamesTheCentre) {
  const Spectrum spectrum = SpectrumOfTones({{116.2, 0.6, 0}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const TextTable table =
      TableOf(ReadSidebands(spectrum, FindPeaks(spectrum), 116 * width, 5 * width, 1));
  ASSERT_EQ(table.rows.size(), 3U);
  EXPECT_EQ(table.rows[0][0], "\u22121");
  EXPECT_EQ(table.rows[1][0], "centre");
  EXPECT_EQ(table.rows[2][0], "+1");
}

TEST(Cursors, ATraceThatCannotBeReadLeavesTheCursorAtItsBeginning) {
  const std::vector<double> values{1, 2};
  for (const TraceView& trace :
       {TraceView{.x0 = 7}, TraceView{.values = &values, .x0 = 7, .step = 0},
        TraceView{.values = &values, .x0 = 7, .firstValid = 2}}) {
    EXPECT_FALSE(ReadAt(trace, 7));
    EXPECT_EQ(Moved(trace, 9, CursorStep::Bin, 1), 7);
    EXPECT_EQ(OnPoint(trace, 9), 7);
  }
  EXPECT_EQ(Moved({.values = &values, .x0 = 7}, kNan, CursorStep::Bin, 1), 7);
}

TEST(Cursors, WhatIsBeyondTheLastPointByRoundingAloneIsThatPoint) {
  const std::vector<double> values{9, 2, 4};
  const TraceView trace{.values = &values, .x0 = 0, .step = 10, .firstValid = 1};
  EXPECT_EQ(ReadAt(trace, 20 + 1e-9), 4);
  EXPECT_EQ(ReadAt(trace, 10 - 1e-9), 2);
  EXPECT_FALSE(ReadAt(trace, 20 + 1e-7));
}

TEST(Cursors, ARatioOfPowersIsTenTimesTheLogarithmAndOneToNothingIsNone) {
  const std::vector<double> values{0, 1, 100};
  const TraceView power{.values = &values, .step = 5, .power = true};
  const TraceView amplitude{.values = &values, .step = 5};
  const DeltaReading reading = ReadDelta({power, amplitude}, 5, 10);
  EXPECT_DOUBLE_EQ(*reading.rows[0].ratioDb, 20);
  EXPECT_DOUBLE_EQ(*reading.rows[1].ratioDb, 40);
  const DeltaReading falling = ReadDelta({power}, 5, 0);
  EXPECT_EQ(falling.rows[0].difference, -1);
  EXPECT_FALSE(falling.rows[0].ratioDb);
  EXPECT_DOUBLE_EQ(*falling.reciprocal, 0.2);
}

TEST(Cursors, DeltaToWhereTheTraceHasEndedTellsTheOneEndAndNoDifference) {
  const std::vector<double> values{1, 2, 4};
  const TraceView trace{.values = &values, .step = 5};
  const DeltaReading beyond = ReadDelta({trace}, 5, 50);
  EXPECT_EQ(beyond.rows[0].from, 2);
  EXPECT_FALSE(beyond.rows[0].to);
  EXPECT_FALSE(beyond.rows[0].difference);
  EXPECT_FALSE(ReadDelta({trace}, 50, 5).rows[0].difference);
}

TEST(Cursors, AFundamentalThatIsNotSeenIsFoundFromItsHarmonicsAndRelatesNone) {
  const Spectrum spectrum =
      SpectrumOfTones({{44.274, 0.5, 0.3}, {66.411, 0.3, 1}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const HarmonicReading reading = ReadHarmonics(spectrum, FindPeaks(spectrum), 22.1 * width, 3);
  ASSERT_EQ(reading.members.size(), 3U);
  EXPECT_FALSE(reading.members[0].found);
  EXPECT_EQ(reading.used, 2);
  EXPECT_NEAR(reading.f0, 22.137 * width, reading.f0Bound);
  for (const Member& member : reading.members) EXPECT_FALSE(member.relativeDb) << member.number;
  const TextTable table = TableOf(reading);
  EXPECT_EQ(table.rows[1][6], "") << "there is nothing to relate to";
  EXPECT_NE(table.rows[1][5], "");
}

TEST(Cursors, HarmonicsOfNoCountAreNone) {
  const Spectrum spectrum = Harmonic(22.137, 2);
  for (const int count : {0, -4}) {
    const HarmonicReading reading =
        ReadHarmonics(spectrum, FindPeaks(spectrum), 22 * spectrum.binWidthHz, count);
    EXPECT_TRUE(reading.members.empty());
    EXPECT_EQ(reading.f0, 22 * spectrum.binWidthHz);
    EXPECT_EQ(reading.used, 0);
  }
}

TEST(Cursors, ASpectrumWithoutAWidthHasNoHarmonics) {
  Spectrum spectrum = Harmonic(22.137, 2);
  spectrum.binWidthHz = 0;
  EXPECT_TRUE(ReadHarmonics(spectrum, {}, 0, 5).members.empty());
}

TEST(Cursors, SidebandsAboutAPlaceWithoutALineKeepThePlace) {
  const Spectrum spectrum =
      SpectrumOfTones({{111, 0.09, 1}, {121.4, 0.07, 2}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const SidebandReading reading =
      ReadSidebands(spectrum, FindPeaks(spectrum), 116.1 * width, 5 * width, 1);
  EXPECT_EQ(reading.centreHz, 116.1 * width);
  EXPECT_EQ(reading.used, 2);
  EXPECT_FALSE(reading.sidebandsDb);
  for (const Member& member : reading.members) EXPECT_FALSE(member.relativeDb);
}

TEST(Cursors, ALineWithoutSidebandsKeepsTheSpacing) {
  const Spectrum spectrum = SpectrumOfTones({{116.2, 0.6, 0}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const SidebandReading reading =
      ReadSidebands(spectrum, FindPeaks(spectrum), 116 * width, 5 * width, 2);
  EXPECT_NEAR(reading.centreHz, 116.2 * width, 0.01 * width);
  EXPECT_EQ(reading.spacingHz, 5 * width);
  EXPECT_EQ(reading.spacingBound, 0);
  EXPECT_EQ(reading.used, 0);
  EXPECT_FALSE(reading.sidebandsDb);
  EXPECT_EQ(reading.members[2].relativeDb, 0);
}

TEST(Cursors, SidebandsBeyondEitherEndOfTheAxisAreLeftOut) {
  const Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const auto numbers = [&](double centreBins) {
    std::vector<int> found;
    for (const Member& member :
         ReadSidebands(spectrum, {}, centreBins * width, 10 * width, 2).members) {
      found.push_back(member.number);
    }
    return found;
  };
  EXPECT_THAT(numbers(15), testing::ElementsAre(-1, 0, 1, 2));
  EXPECT_THAT(numbers(245), testing::ElementsAre(-2, -1, 0, 1));
  EXPECT_THAT(numbers(100), testing::ElementsAre(-2, -1, 0, 1, 2));
}

TEST(Cursors, SidebandsOfACentreOrASpacingThatIsNoneAreNone) {
  const Spectrum spectrum = SpectrumOfTones({{116.2, 0.6, 0}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const std::vector<Peak> peaks = FindPeaks(spectrum);
  struct Wish {
    double centre;
    double spacing;
  };
  for (const Wish wish : {Wish{kNan, 5 * width}, Wish{-1, 5 * width}, Wish{300 * width, 5 * width},
                          Wish{116 * width, kNan}, Wish{116 * width, width / 2}}) {
    const SidebandReading reading = ReadSidebands(spectrum, peaks, wish.centre, wish.spacing, 2);
    EXPECT_TRUE(reading.members.empty());
    EXPECT_EQ(reading.centreHz, std::isfinite(wish.centre) ? wish.centre : 0);
    EXPECT_EQ(reading.spacingHz, std::isfinite(wish.spacing) ? wish.spacing : 0);
  }
}

TEST(Cursors, AMemberThatIsNotFoundTellsTheLargestBinAboutItsPlace) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.peakG.assign(256, 0.001);
  spectrum.peakG[51] = 0.004;
  spectrum.peakG[53] = 0.9;
  spectrum.peakG[255] = 0.007;
  const double width = spectrum.binWidthHz;
  const auto only = [&](double bin) {
    return ReadHarmonics(spectrum, {}, bin * width, 1).members.at(0);
  };
  EXPECT_EQ(only(50).belowG, 0.004);
  EXPECT_EQ(only(50).ownG, 0.001);
  EXPECT_EQ(only(50.6).ownG, 0.004) << "the nearest bin is the one above";
  EXPECT_EQ(only(255.4).belowG, 0.007) << "the last bin is the largest there is";
  EXPECT_EQ(only(255.4).ownG, 0.007);
}

TEST(Cursors, ALineThatIsNotResolvedSaysSoInTheTable) {
  const Spectrum spectrum =
      SpectrumOfTones({{80.2, 1.0, 0.3}, {82.2, 0.8, 1.9}}, WindowKind::Hanning);
  const TextTable table =
      TableOf(ReadHarmonics(spectrum, FindPeaks(spectrum), 80 * spectrum.binWidthHz, 1));
  ASSERT_EQ(table.rows.size(), 1U);
  EXPECT_THAT(table.rows[0][2], testing::EndsWith(", unresolved"));
  EXPECT_EQ(table.rows[0][6], "0.0");
}

TEST(Cursors, AMemberAtTheEndOfTheAxisLooksAtNoBinBeyond) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.peakG.assign(300, 9.0);  // what is cut off stays in memory
  std::fill_n(spectrum.peakG.begin(), 256, 0.001);
  spectrum.peakG.resize(256);
  const Member last = ReadHarmonics(spectrum, {}, 255.49 * spectrum.binWidthHz, 1).members.at(0);
  EXPECT_EQ(last.belowG, 0.001);
  EXPECT_EQ(last.ownG, 0.001);
}

TEST(Cursors, AMemberThatIsNotFoundIsExpectedWhereTheReadingHasIt) {
  const TextTable table =
      TableOf(HarmonicReading{.members = {{.number = 2, .expectedHz = 123.456, .belowG = 0.5}}});
  EXPECT_THAT(table.rows.at(0), testing::ElementsAre("2×", WithBound(123.456, 0).value, "not found",
                                                     "", "", "below 0.500", ""));
}

}  // namespace
}  // namespace kestrel::analysis
