// Behaviour of peaks and levels in a quantity.
// SPDX-License-Identifier: MIT
#include "analysis/quantity_values.h"

#include <gmock/gmock.h>

#include <numbers>

#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr QuantityChoice kVelocity{Quantity::Velocity, Amplitude::Rms};
constexpr QuantityChoice kDisplacement{Quantity::Displacement, Amplitude::PeakToPeak};
constexpr QuantityChoice kDensity{Quantity::Density, Amplitude::Rms};

double VelocityRms(double peakG, double hz) {
  return 9806.65 * peakG / (2 * std::numbers::pi * hz) / std::numbers::sqrt2;
}

TEST(QuantityValues, AToneReadsItsVelocityAndDisplacementWithinTheBound) {
  for (const WindowKind window : kWindows) {
    for (const double bin : {8.3, 40.0, 101.5, 203.77}) {
      const Spectrum spectrum = SpectrumOfTones({{bin, 0.8}}, window);
      const double hz = spectrum.FrequencyOf(bin);
      const auto velocity = PeaksIn(spectrum, kVelocity);
      const auto displacement = PeaksIn(spectrum, kDisplacement);
      ASSERT_TRUE(velocity && displacement && !velocity->empty() && !displacement->empty());
      const LineValue fast = velocity->front().value;
      EXPECT_NEAR(fast.value, VelocityRms(0.8, hz), *fast.bound) << bin;
      EXPECT_LT(*fast.bound, 0.15 * fast.value) << bin;
      const double omega = 2 * std::numbers::pi * hz;
      const LineValue wide = displacement->front().value;
      EXPECT_NEAR(wide.value, 2e6 * 9.80665 * 0.8 / (omega * omega), *wide.bound) << bin;
    }
  }
}

TEST(QuantityValues, TheBoundHoldsWhatTheFrequencyMayBeWrongBy) {
  const Spectrum spectrum = SpectrumOfTones({{10, 1}}, WindowKind::Hanning);
  const Line line{.hz = 1000, .hzBound = 50, .peakG = 1, .peakBoundG = 0.01};
  const LineValue velocity = ValueOf(spectrum, kVelocity, line);
  EXPECT_DOUBLE_EQ(velocity.value, VelocityRms(1, 1000));
  EXPECT_DOUBLE_EQ(*velocity.bound, VelocityRms(1.01, 950) - velocity.value);
  const LineValue acceleration = ValueOf(spectrum, {}, line);
  EXPECT_DOUBLE_EQ(acceleration.value, 1);
  EXPECT_NEAR(*acceleration.bound, 0.01, 1e-12);
}

TEST(QuantityValues, ALineWithoutABoundOfItsOwnHasNone) {
  const Spectrum spectrum = SpectrumOfTones({{10, 1}}, WindowKind::Hanning);
  const Line line{.hz = 1000, .hzBound = 50, .peakG = 1, .unresolved = true};
  EXPECT_FALSE(ValueOf(spectrum, kVelocity, line).bound);
}

TEST(QuantityValues, PeaksAreSortedByTheQuantityBeforeTheyAreCut) {
  const Spectrum spectrum = SpectrumOfTones({{12, 0.2}, {150, 1}}, WindowKind::Hanning);
  const auto acceleration = PeaksIn(spectrum, {}, {.atMost = 1});
  const auto velocity = PeaksIn(spectrum, kVelocity, {.atMost = 1});
  ASSERT_EQ(acceleration->size(), 1U);
  ASSERT_EQ(velocity->size(), 1U);
  EXPECT_EQ(acceleration->front().peak.bin, 150U);
  EXPECT_EQ(velocity->front().peak.bin, 12U);
}

TEST(QuantityValues, BinsTooLowForTheQuantityAreNoPeaksOfIt) {
  const Spectrum spectrum = SpectrumOfTones({{2, 1}, {40, 0.5}}, WindowKind::Hanning);
  const auto acceleration = PeaksIn(spectrum, {});
  const auto velocity = PeaksIn(spectrum, kVelocity);
  EXPECT_EQ(acceleration->front().peak.bin, 2U);
  for (const QuantityPeak& peak : *velocity) EXPECT_GE(peak.peak.bin, 3U);
  EXPECT_EQ(velocity->front().peak.bin, 40U);
}

TEST(QuantityValues, TheOverallVelocityIsThatOfTheTones) {
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

TEST(QuantityValues, TheLevelOfAccelerationIsTheOneOfTheLevels) {
  const Spectrum spectrum = SpectrumOfTones({{20.4, 0.3}, {90, 1.2}}, WindowKind::FlatTop, 2);
  const auto overall = OverallIn(spectrum, {.amplitude = Amplitude::PeakToPeak});
  const auto plain = OverallLevel(spectrum);
  EXPECT_DOUBLE_EQ(overall->rms, plain->rmsG);
  EXPECT_DOUBLE_EQ(overall->fromHz, plain->fromHz);
  EXPECT_EQ(overall->rmsUnit, "g RMS");
  EXPECT_DOUBLE_EQ(overall->largest, 2 * plain->peakG);
  EXPECT_EQ(overall->largestUnit, "g peak to peak");
}

TEST(QuantityValues, ADensityHasTheRmsOfWhatItSpreadsOut) {
  const Spectrum spectrum = SpectrumOfTones({{90, 1.2}}, WindowKind::Hanning);
  const auto overall = OverallIn(spectrum, kDensity);
  EXPECT_NEAR(overall->rms, 1.2 / std::numbers::sqrt2, 1e-6);
  EXPECT_EQ(overall->rmsUnit, "g RMS");
  EXPECT_EQ(overall->largestUnit, "g\u00B2/Hz");
  EXPECT_NEAR(overall->largest, 1.2 * 1.2 / 2 / (1.5 * spectrum.binWidthHz), 1e-9);
}

TEST(QuantityValues, ABandThatReachesBelowWhatHoldsTheQuantityIsTakenInPart) {
  const Spectrum spectrum = SpectrumOfTones({{5, 1}}, WindowKind::Hanning);
  const auto band = LevelIn(spectrum, kVelocity, 0, spectrum.FrequencyOf(10));
  EXPECT_FALSE(band->whole);
  EXPECT_DOUBLE_EQ(band->fromHz, spectrum.FrequencyOf(2.5));
}

TEST(QuantityValues, ABandBelowAllOfItIsRefusedWithTheOptionThatWouldDo) {
  const Spectrum spectrum = SpectrumOfTones({{5, 1}}, WindowKind::Hanning);
  const auto band = LevelIn(spectrum, kVelocity, 100, 300);
  ASSERT_FALSE(band);
  EXPECT_EQ(band.Why().cureOption, 1);
  EXPECT_THAT(band.Why().title, testing::StartsWith("Velocity from 100 Hz to 300 Hz"));
  EXPECT_FALSE(LevelIn(spectrum, {}, 300, 100));
}

TEST(QuantityValues, WhatTheQuantityRefusesIsRefused) {
  Spectrum spectrum = SpectrumOfTones({{5, 1}}, WindowKind::Hanning);
  spectrum.window = WindowOf(WindowKind::Unknown);
  EXPECT_FALSE(PeaksIn(spectrum, kDensity));
  EXPECT_FALSE(OverallIn(spectrum, kDensity));
  EXPECT_FALSE(OverallIn(spectrum, {}));
  EXPECT_TRUE(PeaksIn(spectrum, {}));
}

TEST(QuantityValues, NothingHasNoPeakAndALevelOfZero) {
  const Spectrum spectrum = SpectrumOfSamples(std::vector<double>(512), WindowKind::Hanning);
  EXPECT_TRUE(PeaksIn(spectrum, kVelocity)->empty());
  const auto overall = OverallIn(spectrum, kVelocity);
  EXPECT_EQ(overall->rms, 0);
  EXPECT_EQ(overall->largest, 0);
  EXPECT_EQ(overall->largestHz, 0);
}

}  // namespace
}  // namespace kestrel::analysis
