// Behaviour of cursors with members: harmonics, sidebands, and their tables.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <limits>

#include "analysis/cursors.h"
#include "numeric/number_texts.h"
#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

Spectrum Harmonic(double f0Bins, int count, WindowKind window = WindowKind::Hanning) {
  std::vector<Tone> tones;
  for (int n = 1; n <= count; ++n) tones.push_back({n * f0Bins, 1.0 / n, 0.7 * n});
  return SpectrumOfTones(tones, window);
}

TEST(CursorMembers, TheFundamentalIsRefinedOverItsHarmonics) {
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

TEST(CursorMembers, HarmonicsEndWithTheAxisAndAFundamentalThatIsNoneHasNone) {
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

TEST(CursorMembers, SidebandsKeepTheCentreAndRefineTheSpacing) {
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

TEST(CursorMembers, TablesCopyToASpreadsheet) {
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

TEST(CursorMembers, TheTableOfSidebandsNamesTheCentre) {
  const Spectrum spectrum = SpectrumOfTones({{116.2, 0.6, 0}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const TextTable table =
      TableOf(ReadSidebands(spectrum, FindPeaks(spectrum), 116 * width, 5 * width, 1));
  ASSERT_EQ(table.rows.size(), 3U);
  EXPECT_EQ(table.rows[0][0], "\u22121");
  EXPECT_EQ(table.rows[1][0], "centre");
  EXPECT_EQ(table.rows[2][0], "+1");
}

TEST(CursorMembers, AFundamentalThatIsNotSeenIsFoundFromItsHarmonicsAndRelatesNone) {
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

TEST(CursorMembers, HarmonicsOfNoCountAreNone) {
  const Spectrum spectrum = Harmonic(22.137, 2);
  for (const int count : {0, -4}) {
    const HarmonicReading reading =
        ReadHarmonics(spectrum, FindPeaks(spectrum), 22 * spectrum.binWidthHz, count);
    EXPECT_TRUE(reading.members.empty());
    EXPECT_EQ(reading.f0, 22 * spectrum.binWidthHz);
    EXPECT_EQ(reading.used, 0);
  }
}

TEST(CursorMembers, ASpectrumWithoutAWidthHasNoHarmonics) {
  Spectrum spectrum = Harmonic(22.137, 2);
  spectrum.binWidthHz = 0;
  EXPECT_TRUE(ReadHarmonics(spectrum, {}, 0, 5).members.empty());
}

TEST(CursorMembers, SidebandsAboutAPlaceWithoutALineKeepThePlace) {
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

TEST(CursorMembers, ALineWithoutSidebandsKeepsTheSpacing) {
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

TEST(CursorMembers, SidebandsBeyondEitherEndOfTheAxisAreLeftOut) {
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

TEST(CursorMembers, SidebandsOfACentreOrASpacingThatIsNoneAreNone) {
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

TEST(CursorMembers, AMemberThatIsNotFoundTellsTheLargestBinAboutItsPlace) {
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

TEST(CursorMembers, ALineThatIsNotResolvedSaysSoInTheTable) {
  const Spectrum spectrum =
      SpectrumOfTones({{80.2, 1.0, 0.3}, {82.2, 0.8, 1.9}}, WindowKind::Hanning);
  const TextTable table =
      TableOf(ReadHarmonics(spectrum, FindPeaks(spectrum), 80 * spectrum.binWidthHz, 1));
  ASSERT_EQ(table.rows.size(), 1U);
  EXPECT_THAT(table.rows[0][2], testing::EndsWith(", unresolved"));
  EXPECT_EQ(table.rows[0][6], "0.0");
}

TEST(CursorMembers, AMemberAtTheEndOfTheAxisLooksAtNoBinBeyond) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.peakG.assign(300, 9.0);  // what is cut off stays in memory
  std::fill_n(spectrum.peakG.begin(), 256, 0.001);
  spectrum.peakG.resize(256);
  const Member last = ReadHarmonics(spectrum, {}, 255.49 * spectrum.binWidthHz, 1).members.at(0);
  EXPECT_EQ(last.belowG, 0.001);
  EXPECT_EQ(last.ownG, 0.001);
}

TEST(CursorMembers, AMemberThatIsNotFoundIsExpectedWhereTheReadingHasIt) {
  const TextTable table =
      TableOf(HarmonicReading{.members = {{.number = 2, .expectedHz = 123.456, .belowG = 0.5}}});
  EXPECT_THAT(table.rows.at(0), testing::ElementsAre("2×", WithBound(123.456, 0).value, "not found",
                                                     "", "", "below 0.500", ""));
}

TEST(CursorMembers, MembersTakePeaksWithinTheirReachAlone) {
  const Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const auto isFound = [&](double f0Bins, double awayBins) {
    Peak peak;
    peak.line = {.hz = (f0Bins + awayBins) * width, .hzBound = 1, .peakG = 1};
    return ReadHarmonics(spectrum, {peak}, f0Bins * width, 1).used == 1;
  };
  EXPECT_TRUE(isFound(1, 0.45)) << "half a bin where they stand close";
  EXPECT_FALSE(isFound(1, 0.55));
  EXPECT_TRUE(isFound(2, 0.6)) << "a third of their distance";
  EXPECT_FALSE(isFound(2, 0.75));
  EXPECT_TRUE(isFound(100, -0.95)) << "a bin";
  EXPECT_FALSE(isFound(100, 1.1));
  EXPECT_TRUE(isFound(240, 1.15)) << "half a percent of their frequency";
  EXPECT_FALSE(isFound(240, 1.25));
}

}  // namespace
}  // namespace kestrel::analysis
