// Behaviour of peaks in a quantity.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numbers>

#include "analysis/peaks.h"
#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr QuantityChoice kVelocity{Quantity::Velocity, Amplitude::Rms};
constexpr QuantityChoice kDisplacement{Quantity::Displacement, Amplitude::PeakToPeak};

double VelocityRms(double peakG, double hz) {
  return 9806.65 * peakG / (2 * std::numbers::pi * hz) / std::numbers::sqrt2;
}

TEST(PeaksInAQuantity, AToneReadsItsVelocityAndDisplacementWithinTheBound) {
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

TEST(PeaksInAQuantity, TheBoundHoldsWhatTheFrequencyMayBeWrongBy) {
  const Spectrum spectrum = SpectrumOfTones({{10, 1}}, WindowKind::Hanning);
  const Line line{.hz = 1000, .hzBound = 50, .peakG = 1, .peakBoundG = 0.01};
  const LineValue velocity = ValueOf(spectrum, kVelocity, line);
  EXPECT_DOUBLE_EQ(velocity.value, VelocityRms(1, 1000));
  EXPECT_DOUBLE_EQ(*velocity.bound, VelocityRms(1.01, 950) - velocity.value);
  const LineValue acceleration = ValueOf(spectrum, {}, line);
  EXPECT_DOUBLE_EQ(acceleration.value, 1);
  EXPECT_NEAR(*acceleration.bound, 0.01, 1e-12);
}

TEST(PeaksInAQuantity, ALineWithoutABoundOfItsOwnHasNone) {
  const Spectrum spectrum = SpectrumOfTones({{10, 1}}, WindowKind::Hanning);
  const Line line{.hz = 1000, .hzBound = 50, .peakG = 1, .unresolved = true};
  EXPECT_FALSE(ValueOf(spectrum, kVelocity, line).bound);
}

TEST(PeaksInAQuantity, PeaksAreSortedByTheQuantityBeforeTheyAreCut) {
  const Spectrum spectrum = SpectrumOfTones({{12, 0.2}, {150, 1}}, WindowKind::Hanning);
  const auto acceleration = PeaksIn(spectrum, {}, {.atMost = 1});
  const auto velocity = PeaksIn(spectrum, kVelocity, {.atMost = 1});
  ASSERT_EQ(acceleration->size(), 1U);
  ASSERT_EQ(velocity->size(), 1U);
  EXPECT_EQ(acceleration->front().peak.bin, 150U);
  EXPECT_EQ(velocity->front().peak.bin, 12U);
}

TEST(PeaksInAQuantity, BinsTooLowForTheQuantityAreNoPeaksOfIt) {
  const Spectrum spectrum = SpectrumOfTones({{2, 1}, {40, 0.5}}, WindowKind::Hanning);
  const auto acceleration = PeaksIn(spectrum, {});
  const auto velocity = PeaksIn(spectrum, kVelocity);
  EXPECT_EQ(acceleration->front().peak.bin, 2U);
  for (const QuantityPeak& peak : *velocity) EXPECT_GE(peak.peak.bin, 3U);
  EXPECT_EQ(velocity->front().peak.bin, 40U);
}

}  // namespace
}  // namespace kestrel::analysis
