// Shaped noise has the density that its closed form tells, at every sample rate; growth goes by
// captures. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "simulator/signal/spectrum.h"
#include "simulator/signal/vibration_source.h"

namespace kestrel {
namespace {

class ShapedNoiseAt : public ::testing::TestWithParam<int> {};  // sample-rate option

TEST_P(ShapedNoiseAt, HasTheDensityOfItsClosedForm) {
  AxisVibration axis;
  axis.shapes = {{0.002, 20.0, 3.0}, {0.0005, 1500.0, 5.0}, {0.0001, 20000.0, 2.0}};
  axis.noiseDensityG = 0.00005;
  const double rateHz = 100189.9 / std::pow(8.0, GetParam());
  const double binHz = rateHz / kFftLength;
  VibrationSource source(5);
  SpectrumAverager spectrum(WindowShape::Hanning);
  constexpr unsigned kBlocks = 1000;
  for (unsigned block = 0; block < kBlocks; ++block) {
    std::array<double, kFftLength> samples;
    source.Sample(axis, {}, rateHz, samples);
    spectrum.Add(samples);
  }
  const auto magnitudes = spectrum.Mean();
  for (std::size_t k = 4; k < 252; ++k) {
    // The mean of Rayleigh magnitudes against their mean square; 1.5 bins of noise in each.
    const double power = magnitudes[k] * magnitudes[k] * 4 / std::numbers::pi / 2 / (1.5 * binHz);
    double truth = 0.0;
    for (const double away : {-1.0, -0.5, 0.0, 0.5, 1.0}) {
      truth += axis.NoisePowerAt((static_cast<double>(k) + away) * binHz) / 5;
    }
    ASSERT_NEAR(10 * std::log10(power / truth), 0.0, 0.9)
        << static_cast<double>(k) * binHz << " Hz";
  }
}

INSTANTIATE_TEST_SUITE_P(Options, ShapedNoiseAt, ::testing::Values(0, 1, 2, 3));

TEST(ShapedNoise, IsItsDensityBelowItsResonanceAndQTimesAsMuchOnIt) {
  const ShapedNoise shape{0.01, 100.0, 4.0};
  EXPECT_NEAR(std::sqrt(shape.PowerAt(0.01)), 0.01, 1e-6);
  EXPECT_NEAR(std::sqrt(shape.PowerAt(100.0)), 0.04, 1e-9);
  EXPECT_NEAR(shape.PowerAt(20000.0) / shape.PowerAt(10000.0), 1.0 / 16, 1e-3);
}

TEST(Growth, OfAnAxisGoesInDecibelsAndHasAnEnd) {
  AxisVibration axis;
  axis.tones = {{1000.0, 0.1, std::numbers::pi / 2}};
  axis.offsetG = 0.03;
  axis.growthDb = 6.0;
  axis.mostDb = 15.0;
  VibrationSource source(1);
  const auto first = [&](std::uint64_t captures) {
    std::array<double, 4> samples;
    source.Sample(axis, {0.0, captures}, 100189.9, samples);
    return samples[0];
  };
  EXPECT_NEAR(first(0), 0.13, 1e-12);
  EXPECT_NEAR(first(1), 0.03 + 0.1 * std::pow(10.0, 0.3), 1e-12) << "the offset does not grow";
  EXPECT_NEAR(first(2), 0.03 + 0.1 * std::pow(10.0, 0.6), 1e-12);
  EXPECT_NEAR(first(9), 0.03 + 0.1 * std::pow(10.0, 0.75), 1e-12);
}

}  // namespace
}  // namespace kestrel
