// Behaviour of the peak table.
// SPDX-License-Identifier: MIT
#include "analysis/peaks.h"

#include <gmock/gmock.h>

#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

std::vector<std::size_t> BinsOf(const std::vector<Peak>& peaks) {
  std::vector<std::size_t> bins;
  for (const Peak& peak : peaks) bins.push_back(peak.bin);
  return bins;
}

TEST(Peaks, AreSortedByAmplitudeWhateverTheirPlace) {
  const Spectrum spectrum =
      SpectrumOfTones({{30.1, 0.2, 0}, {70.4, 0.9, 1}, {150.0, 0.5, 2}}, WindowKind::Hanning);
  EXPECT_THAT(BinsOf(FindPeaks(spectrum)), testing::ElementsAre(70, 150, 30));
}

TEST(Peaks, ALineMidwayBetweenTwoBinsIsFoundOnce) {
  Spectrum spectrum = SpectrumOfTones({{70.5, 0.9, 1}}, WindowKind::Hanning);
  spectrum.peakG[71] = spectrum.peakG[70];
  const std::vector<Peak> peaks = FindPeaks(spectrum);
  ASSERT_THAT(BinsOf(peaks), testing::ElementsAre(70));
  EXPECT_NEAR(peaks[0].line.hz, spectrum.FrequencyOf(70.5), 1e-6);
  EXPECT_NEAR(peaks[0].line.peakG, 0.9, 0.001);
}

TEST(Peaks, OffsetIsNoPeakInAnyWindow) {
  for (const WindowKind window : kWindows) {
    const Spectrum spectrum = SpectrumOfSamples(SamplesOf({{90, 0.1, 0}}, 5.0), window);
    EXPECT_THAT(BinsOf(FindPeaks(spectrum)), testing::ElementsAre(90));
  }
}

TEST(Peaks, TheFloorAndTheNumberAreTheUsers) {
  const Spectrum spectrum =
      SpectrumOfTones({{30.1, 0.2, 0}, {70.4, 0.9, 1}, {150.0, 0.5, 2}}, WindowKind::Hanning);
  EXPECT_THAT(BinsOf(FindPeaks(spectrum, {.floorG = 0.3})), testing::ElementsAre(70, 150));
  EXPECT_THAT(BinsOf(FindPeaks(spectrum, {.atMost = 1})), testing::ElementsAre(70));
  EXPECT_TRUE(FindPeaks(spectrum, {.floorG = std::numeric_limits<double>::quiet_NaN()}).empty());
}

TEST(Peaks, NoiseAloneHardlyMakesPeaks) {
  std::mt19937_64 random(11);
  std::size_t found = 0;
  for (int round = 0; round < 100; ++round) {
    std::vector<double> samples(512);
    AddNoise(samples, 0.1, random);
    found += FindPeaks(SpectrumOfSamples(samples, WindowKind::Hanning)).size();
  }
  EXPECT_LT(found, 10U);  // of 25,600 bins
}

TEST(Peaks, AWordOfOneStepIsNone) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.stepG = 0.001;
  spectrum.peakG[50] = 0.001;
  EXPECT_TRUE(FindPeaks(spectrum).empty());
  spectrum.peakG[50] = 0.002;
  EXPECT_EQ(FindPeaks(spectrum).size(), 1U);
}

TEST(Peaks, SilenceFullScaleAndNoBinsHaveNone) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  EXPECT_TRUE(FindPeaks(spectrum).empty());
  spectrum.peakG.assign(256, 70);
  EXPECT_TRUE(FindPeaks(spectrum).empty());
  EXPECT_TRUE(FindPeaks(Spectrum{}).empty());
  spectrum.peakG.resize(1);
  EXPECT_TRUE(FindPeaks(spectrum).empty());
}

TEST(Peaks, TheNearestIsNamedOnlyWithinReach) {
  const Spectrum spectrum = SpectrumOfTones({{70.4, 0.9, 1}, {150.0, 0.5, 2}}, WindowKind::Hanning);
  const std::vector<Peak> peaks = FindPeaks(spectrum);
  const double width = spectrum.binWidthHz;
  EXPECT_EQ(NearestPeak(peaks, 72 * width, 2 * width)->bin, 70U);
  EXPECT_FALSE(NearestPeak(peaks, 72 * width, width));
  EXPECT_FALSE(NearestPeak(peaks, std::numeric_limits<double>::quiet_NaN(), 10 * width));
}

TEST(Peaks, ATopThatGoesOnToTheEndOfTheAxisIsNone) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.peakG.assign(256, 0.001);
  std::fill(spectrum.peakG.begin() + 200, spectrum.peakG.end(), 0.5);
  EXPECT_TRUE(FindPeaks(spectrum).empty());
  spectrum.peakG[255] = 0.001;
  EXPECT_THAT(BinsOf(FindPeaks(spectrum, {.prominenceDb = 0})), testing::ElementsAre(200));
}

TEST(Peaks, BetweenTwoFrequenciesThoseWhoseLineLiesThereAreFound) {
  const Spectrum spectrum =
      SpectrumOfTones({{30.1, 0.2, 0}, {70.4, 0.9, 1}, {150.0, 0.5, 2}}, WindowKind::Hanning);
  const auto between = [&](double fromBin, double toBin, std::size_t atMost = 50) {
    return BinsOf(FindPeaksBetween(spectrum, spectrum.FrequencyOf(fromBin),
                                   spectrum.FrequencyOf(toBin), {.atMost = atMost}));
  };
  EXPECT_THAT(between(0, 256), testing::ElementsAre(70, 150, 30));
  EXPECT_THAT(between(-900, 9000), testing::ElementsAre(70, 150, 30));
  EXPECT_THAT(between(0, 256, 2), testing::ElementsAre(70, 150));
  EXPECT_THAT(between(20, 100), testing::ElementsAre(70, 30));
  EXPECT_THAT(between(70.3, 70.5), testing::ElementsAre(70));
  EXPECT_THAT(between(69.5, 70.3), testing::IsEmpty()) << "its bin lies there, the line does not";
  EXPECT_THAT(between(70.45, 80), testing::IsEmpty());
  EXPECT_THAT(between(149.9, 150.1), testing::ElementsAre(150));
}

TEST(Peaks, BandsThatAreNoneHoldNoPeaks) {
  const Spectrum spectrum = SpectrumOfTones({{70.4, 0.9, 1}}, WindowKind::Hanning);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(FindPeaksBetween(spectrum, 20000, 10000).empty());
  EXPECT_TRUE(FindPeaksBetween(spectrum, -20, -10).empty());
  EXPECT_TRUE(FindPeaksBetween(spectrum, nan, 20000).empty());
  EXPECT_TRUE(FindPeaksBetween(spectrum, 0, nan).empty());
  EXPECT_TRUE(FindPeaksBetween(spectrum, 60000, 70000).empty());
  EXPECT_TRUE(FindPeaksBetween(Spectrum{}, 0, 70000).empty());
}

}  // namespace
}  // namespace kestrel::analysis
