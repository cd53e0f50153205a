// Known sines come back with their amplitude, in every range and window.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <tuple>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

// Window, range, option, bin.
using Setting = std::tuple<unsigned, unsigned, unsigned, unsigned>;

class SineAccuracy : public ::testing::TestWithParam<Setting> {};

TEST_P(SineAccuracy, SineOnABinReadsItsAmplitude) {
  const auto [window, range, option, bin] = GetParam();
  const double fullScaleG = 65535 * kMagnitudeLsbG[range];
  for (const double amplitudeG : {0.001 * fullScaleG, 0.3 * fullScaleG, 0.995 * fullScaleG}) {
    Bench bench(SingleTone(BinHz(bin, option), amplitudeG));
    bench.Write(reg::kRecCtrl, RecCtrl(0, range, option, window));
    bench.Write(reg::kFftAvg, 2);
    bench.clock.Advance(1234567890ns);
    bench.Capture();
    for (unsigned axis = 0; axis < 3; ++axis) {
      const double readG = bench.Spectrum(axis)[bin] * kMagnitudeLsbG[range];
      EXPECT_NEAR(readG, amplitudeG, std::max(kMagnitudeLsbG[range], 0.001 * amplitudeG))
          << "axis " << axis;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllSettings, SineAccuracy,
                         ::testing::Combine(::testing::Values(0U, 1U, 2U, 3U),
                                            ::testing::Values(0U, 1U, 2U, 3U),
                                            ::testing::Values(0U, 1U, 2U, 3U),
                                            ::testing::Values(10U, 100U, 200U)));

class PerRange : public ::testing::TestWithParam<unsigned> {};

TEST_P(PerRange, TimeRecordIsTheSampledSine) {
  const double amplitudeG = 20000 * kSampleLsbG[GetParam()];
  Bench bench(SingleTone(BinHz(3, 0), amplitudeG));
  bench.Write(reg::kRecCtrl, RecCtrl(2, GetParam(), 0, 0));
  bench.Capture();  // begins at power-up, so at phase 0
  const auto samples = bench.Samples(1);
  for (unsigned n = 0; n < 512; ++n) {
    const double expected = 20000 * std::sin(2 * std::numbers::pi * 3 * n / 512);
    ASSERT_NEAR(samples[n], expected, 0.51) << n;
  }
}

TEST_P(PerRange, TimeRecordClipsAtFullScale) {
  Bench bench(SingleTone(BinHz(3, 0), 3 * 32768 * kSampleLsbG[GetParam()]));
  bench.Write(reg::kRecCtrl, RecCtrl(2, GetParam(), 0, 0));
  bench.Capture();
  const auto samples = bench.Samples(0);
  EXPECT_EQ(*std::max_element(samples.begin(), samples.end()), 32767);
  EXPECT_EQ(*std::min_element(samples.begin(), samples.end()), -32768);
  EXPECT_GT(std::count(samples.begin(), samples.end(), 32767), 100);
}

TEST_P(PerRange, OverrangeShowsInTheSpectrumAsOddHarmonics) {
  const double limitG = 32768 * kSampleLsbG[GetParam()];
  Bench bench(SingleTone(BinHz(8, 0), 1.5 * limitG));
  bench.Write(reg::kRecCtrl, RecCtrl(0, GetParam(), 0, 0));
  bench.Write(reg::kFftAvg, 1);
  bench.Capture();
  const auto spectrum = bench.Spectrum(0);
  // A sine of amplitude a clipped at 1: its fundamental and its third harmonic.
  const double a = 1.5;
  const double t = std::asin(1 / a);
  const double first = 2 / std::numbers::pi * (a * t + std::cos(t));
  const double third = 4 / std::numbers::pi *
                       (a / 2 * (std::sin(2 * t) / 2 - std::sin(4 * t) / 4) + std::cos(3 * t) / 3);
  EXPECT_EQ(spectrum[8], std::min(std::lround(first * 65536), 65535L));
  EXPECT_NEAR(spectrum[24], std::abs(third) * 65536, 0.02 * 65536);
  EXPECT_LT(spectrum[16], 3);
}

INSTANTIATE_TEST_SUITE_P(Ranges, PerRange, ::testing::Values(0U, 1U, 2U, 3U));

TEST(Accuracy, ToneAtOrAboveHalfTheSampleRateIsLeftOut) {
  for (const double bin : {256.0, 300.0}) {
    Bench bench(SingleTone(BinHz(bin, 1), 1.0));
    bench.Write(reg::kRecCtrl, RecCtrl(2, 3, 1, 0));
    bench.Capture();
    EXPECT_EQ(bench.Samples(0), std::vector<std::int16_t>(512, 0)) << bin;
  }
}

TEST(Accuracy, OffsetReadsAsItselfInBinZero) {
  for (const unsigned window : {0U, 1U, 2U}) {
    Scenario scenario = SingleTone(0.0, 0.0);
    scenario.axes[2].offsetG = -0.5;
    Bench bench(scenario);
    bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, window));
    bench.Capture();
    EXPECT_EQ(bench.Spectrum(2)[0], std::lround(0.5 / kMagnitudeLsbG[0])) << window;
  }
}

// Rectangular: 2/pi between bins; Hanning 8/(3 pi); Flat Top: no loss.
TEST(Accuracy, EachWindowHasItsOwnLossBetweenTwoBins) {
  const double expected[] = {0.6366, 0.8488, 0.9988};
  for (const unsigned window : {0U, 1U, 2U}) {
    Bench bench(SingleTone(BinHz(100.5, 0), 1.0));
    bench.Write(reg::kRecCtrl, RecCtrl(0, 1, 0, window));
    bench.Capture();
    EXPECT_NEAR(bench.Spectrum(0)[100] * kMagnitudeLsbG[1], expected[window], 0.004) << window;
  }
}

// What a sine on a bin leaves in the bins beside it, relative to its own: half the ratio of the
// window's cosine terms to its constant.
TEST(Accuracy, EachWindowSpreadsALineInItsOwnShape) {
  constexpr double kShape[][6] = {{1, 0, 0, 0, 0, 0},
                                  {1, 0.5, 0, 0, 0, 0},
                                  {1, 0.966309, 0.643066, 0.193848, 0.016113, 0},
                                  {1, 0, 0, 0, 0, 0}};
  for (const unsigned window : {0U, 1U, 2U, 3U}) {
    Bench bench(SingleTone(BinHz(100, 0), 0.9));
    bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, window));
    bench.Capture();
    const auto spectrum = bench.Spectrum(0);
    for (unsigned distance = 0; distance < 6; ++distance) {
      const double expected = 0.9 * kShape[window][distance] / kMagnitudeLsbG[0];
      EXPECT_NEAR(spectrum[100 - distance], expected, 1.0) << window << ", -" << distance;
      EXPECT_NEAR(spectrum[100 + distance], expected, 1.0) << window << ", +" << distance;
    }
  }
}

Scenario Noise() {
  Scenario scenario = SingleTone(BinHz(50, 0), 0.2);
  for (AxisVibration& axis : scenario.axes) axis.noiseDensityG = 0.0005;
  return scenario;
}

TEST(Accuracy, SpectrumHoldsTheEnergyOfTheTimeRecord) {
  Bench time(Noise());
  time.Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 0));
  time.Capture();
  Bench fft(Noise());  // the same noise, from the same moment on
  fft.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 0));
  fft.Write(reg::kFftAvg, 1);
  fft.Capture();
  for (unsigned axis = 0; axis < 3; ++axis) {
    double meanSquare = 0.0;
    double nyquist = 0.0;  // bin 256, which the record does not hold
    double sign = 1.0;
    for (const double sample : time.Samples(axis)) {
      meanSquare += std::pow(sample * kSampleLsbG[0], 2) / 512;
      nyquist += sign * sample * kSampleLsbG[0] / 512;
      sign = -sign;
    }
    double fromSpectrum = nyquist * nyquist;
    const auto spectrum = fft.Spectrum(axis);
    for (unsigned k = 0; k < 256; ++k) {
      fromSpectrum += std::pow(spectrum[k] * kMagnitudeLsbG[0], 2) / (k == 0 ? 1 : 2);
    }
    EXPECT_NEAR(fromSpectrum, meanSquare, 1e-4 * meanSquare) << axis;
  }
}

// Standard deviation over mean of the noise bins.
double RelativeSpread(std::uint16_t averages) {
  Bench bench(Noise());
  bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 0));
  bench.Write(reg::kFftAvg, averages);
  bench.Capture();
  const auto spectrum = bench.Spectrum(0);
  double sum = 0.0;
  double squares = 0.0;
  for (unsigned k = 60; k < 256; ++k) {
    sum += spectrum[k];
    squares += static_cast<double>(spectrum[k]) * spectrum[k];
  }
  const double mean = sum / 196;
  return std::sqrt(squares / 196 - mean * mean) / mean;
}

// A single noise bin spreads by sqrt(4/pi - 1) of its mean, averaging divides by the root.
TEST(Accuracy, AveragingLowersTheSpreadOfTheNoise) {
  EXPECT_NEAR(RelativeSpread(1), 0.5227, 0.08);
  EXPECT_NEAR(RelativeSpread(16), 0.5227 / 4, 0.02);
  EXPECT_NEAR(RelativeSpread(255), 0.5227 / 16, 0.005);
}

TEST(Accuracy, NoiseGrowsWithTheRootOfTheBandwidth) {
  for (const unsigned option : {0U, 1U, 2U}) {
    Scenario scenario = Noise();
    scenario.axes[0].tones.clear();
    Bench bench(scenario);
    bench.Write(reg::kRecCtrl, RecCtrl(2, 0, option, 0));
    bench.Capture();
    double meanSquare = 0.0;
    for (const double sample : bench.Samples(0)) {
      meanSquare += std::pow(sample * kSampleLsbG[0], 2) / 512;
    }
    const double expected = 0.0005 * std::sqrt(BinHz(256, option));
    EXPECT_NEAR(std::sqrt(meanSquare), expected, 0.1 * expected) << option;
  }
}

TEST(Accuracy, SameSeedGivesTheSameRecordAnotherSeedAnother) {
  const auto record = [](std::uint64_t seed) {
    Scenario scenario = Noise();
    scenario.noiseSeed = seed;
    Bench bench(scenario);
    bench.Capture();
    return bench.Spectrum(0);
  };
  EXPECT_EQ(record(5), record(5));
  EXPECT_NE(record(5), record(6));
}

TEST(Accuracy, PhaseGoesOnBetweenRecords) {
  Bench bench(SingleTone(100.0, 1.0));
  bench.Write(reg::kRecCtrl, RecCtrl(2, 1, 0, 0));
  const auto firstSample = [&] {
    bench.StartStop();
    bench.clock.Advance(12500us);  // 1.25 periods
    return bench.Samples(0)[0] * kSampleLsbG[1];
  };
  for (const double expected : {0.0, 1.0, 0.0, -1.0, 0.0}) {
    EXPECT_NEAR(firstSample(), expected, 1e-3);
  }
}

}  // namespace
}  // namespace kestrel
