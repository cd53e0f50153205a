// Behaviour of cursors.
// SPDX-License-Identifier: MIT
#include "analysis/cursors.h"

#include <gmock/gmock.h>

#include <limits>

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
  EXPECT_FALSE(SidebandDragged(1000, 0, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, 900));
  EXPECT_FALSE(SidebandDragged(kNan, 2, 900));
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

}  // namespace
}  // namespace kestrel::analysis
