// Behaviour of levels in a quantity.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numbers>

#include "analysis/levels.h"
#include "analysis/peaks.h"
#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr QuantityChoice kVelocity{Quantity::Velocity, Amplitude::Rms};
constexpr QuantityChoice kDisplacement{Quantity::Displacement, Amplitude::PeakToPeak};
constexpr QuantityChoice kDensity{Quantity::Density, Amplitude::Rms};

double VelocityRms(double peakG, double hz) {
  return 9806.65 * peakG / (2 * std::numbers::pi * hz) / std::numbers::sqrt2;
}

TEST(LevelsInAQuantity, TheOverallVelocityIsThatOfTheTones) {
  const Spectrum spectrum = SpectrumOfTones({{20, 0.3}, {90, 1.2}}, WindowKind::Hanning);
  const auto overall = OverallIn(spectrum, kVelocity);
  ASSERT_TRUE(overall);
  const double wanted = std::hypot(VelocityRms(0.3, spectrum.FrequencyOf(20)),
                                   VelocityRms(1.2, spectrum.FrequencyOf(90)));
  // A line's bins are weighted by their own frequencies.
  EXPECT_NEAR(overall->rms, wanted, 0.005 * wanted);
  EXPECT_EQ(overall->rmsUnit, "mm/s RMS");
  EXPECT_DOUBLE_EQ(overall->fromHz, spectrum.FrequencyOf(2.5));
  EXPECT_TRUE(overall->whole);
  EXPECT_DOUBLE_EQ(overall->largestHz, spectrum.FrequencyOf(20));
  EXPECT_NEAR(overall->largest, VelocityRms(0.3, overall->largestHz), 1e-6);
}

TEST(LevelsInAQuantity, TheLevelOfAccelerationIsTheOneOfTheLevels) {
  const Spectrum spectrum = SpectrumOfTones({{20.4, 0.3}, {90, 1.2}}, WindowKind::FlatTop, 2);
  const auto overall = OverallIn(spectrum, {.amplitude = Amplitude::PeakToPeak});
  const auto plain = OverallLevel(spectrum);
  EXPECT_DOUBLE_EQ(overall->rms, plain->rmsG);
  EXPECT_DOUBLE_EQ(overall->fromHz, plain->fromHz);
  EXPECT_EQ(overall->rmsUnit, "g RMS");
  EXPECT_DOUBLE_EQ(overall->largest, 2 * plain->peakG);
  EXPECT_EQ(overall->largestUnit, "g peak to peak");
}

TEST(LevelsInAQuantity, ADensityHasTheRmsOfWhatItSpreadsOut) {
  const Spectrum spectrum = SpectrumOfTones({{90, 1.2}}, WindowKind::Hanning);
  const auto overall = OverallIn(spectrum, kDensity);
  EXPECT_NEAR(overall->rms, 1.2 / std::numbers::sqrt2, 1e-6);
  EXPECT_EQ(overall->rmsUnit, "g RMS");
  EXPECT_EQ(overall->largestUnit, "g\u00B2/Hz");
  EXPECT_NEAR(overall->largest, 1.2 * 1.2 / 2 / (1.5 * spectrum.binWidthHz), 1e-9);
}

TEST(LevelsInAQuantity, ABandThatReachesBelowWhatHoldsTheQuantityIsTakenInPart) {
  const Spectrum spectrum = SpectrumOfTones({{5, 1}}, WindowKind::Hanning);
  const auto band = LevelIn(spectrum, kVelocity, 0, spectrum.FrequencyOf(10));
  EXPECT_FALSE(band->whole);
  EXPECT_DOUBLE_EQ(band->fromHz, spectrum.FrequencyOf(2.5));
}

TEST(LevelsInAQuantity, ABandBelowAllOfItIsRefusedWithTheOptionThatWouldDo) {
  const Spectrum spectrum = SpectrumOfTones({{5, 1}}, WindowKind::Hanning);
  const auto band = LevelIn(spectrum, kVelocity, 100, 300);
  ASSERT_FALSE(band);
  EXPECT_EQ(band.Why().cureOption, 1);
  EXPECT_THAT(band.Why().title, testing::StartsWith("Velocity from 100 Hz to 300 Hz"));
  EXPECT_FALSE(LevelIn(spectrum, {}, 300, 100));
}

TEST(LevelsInAQuantity, WhatTheQuantityRefusesIsRefused) {
  Spectrum spectrum = SpectrumOfTones({{5, 1}}, WindowKind::Hanning);
  spectrum.window = WindowOf(WindowKind::Unknown);
  EXPECT_FALSE(PeaksIn(spectrum, kDensity));
  EXPECT_FALSE(OverallIn(spectrum, kDensity));
  EXPECT_FALSE(OverallIn(spectrum, {}));
  EXPECT_TRUE(PeaksIn(spectrum, {}));
}

TEST(LevelsInAQuantity, NothingHasNoPeakAndALevelOfZero) {
  const Spectrum spectrum = SpectrumOfSamples(std::vector<double>(512), WindowKind::Hanning);
  EXPECT_TRUE(PeaksIn(spectrum, kVelocity)->empty());
  const auto overall = OverallIn(spectrum, kVelocity);
  EXPECT_EQ(overall->rms, 0);
  EXPECT_EQ(overall->largest, 0);
  EXPECT_EQ(overall->largestHz, 0);
}

TEST(LevelsInAQuantity, ALineBelowThatReachesInIsToldAsOneAtTheEdge) {
  for (const WindowKind window : {WindowKind::Hanning, WindowKind::FlatTop}) {
    const Spectrum alone = SpectrumOfTones({{40, 0.5}}, window);
    const Spectrum beside = SpectrumOfTones({{1.7, 1}, {40, 0.5}}, window);
    const auto clean = OverallIn(alone, kDisplacement);
    const auto reached = OverallIn(beside, kDisplacement);
    EXPECT_LT(clean->edgeShare, 1e-6);
    ASSERT_GT(reached->edgeShare, 0.3);
    // Without it the level is that of the line above.
    EXPECT_NEAR(reached->rms * std::sqrt(1 - reached->edgeShare), clean->rms, 0.05 * clean->rms);
    const double high = beside.FrequencyOf(30);
    EXPECT_LT(LevelIn(beside, kDisplacement, high, beside.TopHz())->edgeShare, 1e-6);
  }
}

TEST(LevelsInAQuantity, ALineThatIsCutOffIsToldAsOneAtTheEdge) {
  for (const WindowKind window : {WindowKind::Hanning, WindowKind::FlatTop}) {
    const auto first = static_cast<double>(FirstIntegrableBin(WindowOf(window)));
    const auto lobe = static_cast<double>(WindowOf(window).lobe);
    const Spectrum cut = SpectrumOfTones({{first + 0.3, 1}}, window);
    const auto low = OverallIn(cut, kVelocity);
    EXPECT_LT(low->rms, 0.99 * VelocityRms(1, cut.FrequencyOf(first + 0.3)));
    EXPECT_GT(low->edgeShare, 0.9);
    const Spectrum whole = SpectrumOfTones({{first + lobe, 1}}, window);
    const auto told = OverallIn(whole, kVelocity);
    EXPECT_LT(told->edgeShare, 1e-6);
    EXPECT_GT(told->rms, 0.97 * VelocityRms(1, whole.FrequencyOf(first + lobe)));
  }
}

TEST(LevelsInAQuantity, AnOffsetAloneIsNoLineAtTheEdge) {
  const Spectrum offset = SpectrumOfSamples(SamplesOf({{40, 0.5}}, 0.3), WindowKind::Hanning);
  EXPECT_LT(OverallIn(offset, kDisplacement)->edgeShare, 1e-6);
  EXPECT_LT(OverallIn(offset, {})->edgeShare, 1e-6);
}

TEST(LevelsInAQuantity, ALevelInDecibelsIsThatOfTheRms) {
  const Spectrum spectrum = SpectrumOfTones({{90, 2 * std::numbers::sqrt2}}, WindowKind::Hanning);
  const auto overall = OverallIn(spectrum, {.quantity = Quantity::Level});
  ASSERT_TRUE(overall);
  EXPECT_NEAR(overall->rms, 20 * std::log10(2.0), 1e-3);
  EXPECT_EQ(overall->rmsUnit, "dB re 1 g RMS");
}

TEST(LevelsInAQuantity, ABandBetweenTwoBinsHasAnRmsAndNoLargestBin) {
  const Spectrum spectrum = SpectrumOfTones({{90, 1.2}}, WindowKind::Hanning);
  const auto band = LevelIn(spectrum, {}, spectrum.FrequencyOf(90.1), spectrum.FrequencyOf(90.3));
  ASSERT_TRUE(band);
  EXPECT_NEAR(band->rms, 1.2 / std::numbers::sqrt2 * std::sqrt(0.2 / 1.5), 1e-3);
  EXPECT_EQ(band->largest, 0);
  EXPECT_EQ(band->largestHz, 0);
}

TEST(LevelsInAQuantity, ABandOfWhatTheQuantityRefusesIsRefused) {
  Spectrum spectrum = SpectrumOfTones({{90, 1.2}}, WindowKind::Hanning);
  spectrum.source = SpectrumSource::MinimumHold;
  const auto band = LevelIn(spectrum, kDensity, 1000, 20000);
  ASSERT_FALSE(band);
  EXPECT_EQ(band.Why().cure, "Take an average instead");
}

TEST(LevelsInAQuantity, ALineInTheLastBinsIsOneAtTheEdgeOfWhatBeginsThere) {
  const Spectrum spectrum = SpectrumOfTones({{255, 1}, {90, 0.001}}, WindowKind::Hanning);
  QuantityChoice high = kVelocity;
  high.lowestHz = spectrum.FrequencyOf(254);
  const auto overall = OverallIn(spectrum, high);
  ASSERT_TRUE(overall);
  EXPECT_DOUBLE_EQ(overall->fromHz, spectrum.FrequencyOf(253.5));
  EXPECT_DOUBLE_EQ(overall->largestHz, spectrum.FrequencyOf(255));
  EXPECT_NEAR(overall->edgeShare, 1, 1e-9);
}

}  // namespace
}  // namespace kestrel::analysis
