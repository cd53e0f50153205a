// Behaviour of lines between bins: the stated bounds hold.
// SPDX-License-Identifier: MIT
#include "analysis/interpolation.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "tones.h"

namespace kestrel::analysis {
namespace {

std::size_t LargestBin(const Spectrum& spectrum) {
  return static_cast<std::size_t>(std::ranges::max_element(spectrum.peakG) -
                                  spectrum.peakG.begin());
}

struct Errors {
  double bins = 0;
  double decibel = 0;
};

// The largest errors without noise over tones whose largest bin is `bin`.
Errors WorstAt(std::size_t bin, WindowKind window) {
  Errors worst;
  for (double offset = -0.48; offset < 0.49; offset += 0.04) {
    for (double phase = 0; phase < 6.2; phase += 0.4) {
      const double place = static_cast<double>(bin) + offset;
      const Spectrum spectrum = SpectrumOfTones({{place, 1.0, phase}}, window);
      if (LargestBin(spectrum) != bin) continue;
      const Line line = LineAt(spectrum, bin);
      EXPECT_TRUE(line.interpolated) << place;
      const double away = std::fabs(line.hz / spectrum.binWidthHz - place);
      EXPECT_LE(away * spectrum.binWidthHz, line.hzBound) << place << " " << phase;
      EXPECT_LE(std::fabs(line.peakG - 1), *line.peakBoundG) << place << " " << phase;
      worst.bins = std::max(worst.bins, away);
      worst.decibel = std::max(worst.decibel, std::fabs(20 * std::log10(line.peakG)));
    }
  }
  return worst;
}

TEST(Interpolation, WithoutNoiseHanningIsRightToAFractionOfAPercentOfABin) {
  EXPECT_LT(WorstAt(4, WindowKind::Hanning).bins, 0.004);
  EXPECT_LT(WorstAt(4, WindowKind::Hanning).decibel, 0.005);
  for (const std::size_t bin : {6U, 10U, 100U, 200U, 250U}) {
    const Errors worst = WorstAt(bin, WindowKind::Hanning);
    EXPECT_LT(worst.bins, 0.0006) << bin;
    EXPECT_LT(worst.decibel, 0.001) << bin;
  }
}

TEST(Interpolation, WithoutNoiseTheFlatTopIsRightInAmplitudeAndFrequency) {
  for (const std::size_t bin : {5U, 9U, 128U, 249U}) {
    const Errors worst = WorstAt(bin, WindowKind::FlatTop);
    EXPECT_LT(worst.bins, 1.2e-4) << bin;
    EXPECT_LT(worst.decibel, 0.0101) << bin;
  }
}

TEST(Interpolation, WithoutNoiseTheRectangularWindowStaysWithinItsWideBound) {
  for (const std::size_t bin : {3U, 4U, 10U, 20U, 128U, 240U, 252U}) {
    (void)WorstAt(bin, WindowKind::Rectangular);
  }
  EXPECT_LT(WorstAt(20, WindowKind::Rectangular).decibel, 0.03);
}

// Shares of lines in noise that are within their bounds, and how many were told at all.
struct Coverage {
  double frequency = 0;
  double amplitude = 0;
  int told = 0;
};

Coverage InNoise(WindowKind window, double overNoiseDb, double stepG, unsigned seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> place(20, 230);
  std::uniform_real_distribution<double> phase(0, 2 * std::numbers::pi);
  const double noise = std::pow(10, -overNoiseDb / 20);  // RMS of the bins' magnitudes
  const double rms = noise / std::sqrt(4 * WindowOf(window).noiseBandwidth / 512);
  Coverage coverage;
  for (int round = 0; round < 400; ++round) {
    const Tone tone{place(random), 1.0, phase(random)};
    std::vector<double> samples = SamplesOf({tone});
    AddNoise(samples, rms, random);
    Spectrum spectrum = SpectrumOfSamples(samples, window);
    spectrum.stepG = stepG;
    for (double& value : spectrum.peakG) {
      if (stepG > 0) value = std::round(value / stepG) * stepG;
    }
    const Line line = LineAt(spectrum, LargestBin(spectrum));
    if (!line.interpolated) continue;
    ++coverage.told;
    const double hz = tone.bin * spectrum.binWidthHz;
    coverage.frequency += std::fabs(line.hz - hz) <= line.hzBound ? 1 : 0;
    coverage.amplitude += std::fabs(line.peakG - 1) <= *line.peakBoundG ? 1 : 0;
  }
  coverage.frequency /= coverage.told;
  coverage.amplitude /= coverage.told;
  return coverage;
}

TEST(Interpolation, InNoiseNineteenOfTwentyLinesAreWithinTheirBounds) {
  for (const WindowKind window : kWindows) {
    for (const double overNoiseDb : {20.0, 30.0, 40.0, 60.0}) {
      for (const double stepG : {0.0, 0.002}) {
        const Coverage coverage = InNoise(window, overNoiseDb, stepG, 7);
        const std::string_view name = WindowOf(window).name;
        EXPECT_GT(coverage.told, 340) << name << " " << overNoiseDb << " " << stepG;
        EXPECT_GT(coverage.frequency, 0.94) << name << " " << overNoiseDb << " " << stepG;
        EXPECT_GT(coverage.amplitude, 0.94) << name << " " << overNoiseDb << " " << stepG;
      }
    }
  }
}

TEST(Interpolation, TheBoundInNoiseIsNoWiderThanTwiceTheScatter) {
  std::mt19937_64 random(3);
  std::vector<double> samples = SamplesOf({{100.3, 1.0, 0.4}});
  AddNoise(samples, 0.01 / std::sqrt(4 * 1.5 / 512), random);  // 40 dB below
  const Spectrum spectrum = SpectrumOfSamples(samples, WindowKind::Hanning);
  const Line line = LineAt(spectrum, 100);
  EXPECT_LT(line.hzBound, 2.5 * 0.006 * spectrum.binWidthHz);
  EXPECT_LT(*line.peakBoundG, 0.02);
}

TEST(Interpolation, TwoLinesWithinTheLobesAreUnresolvedAndShowTheBinsOwnValue) {
  for (const double apart : {1.4, 2.0, 2.5, 3.0}) {
    const Spectrum spectrum =
        SpectrumOfTones({{80.2, 1.0, 0.3}, {80.2 + apart, 0.8, 1.9}}, WindowKind::Hanning);
    const std::size_t bin = LargestBin(spectrum);
    const Line line = LineAt(spectrum, bin);
    EXPECT_TRUE(line.unresolved) << apart;
    EXPECT_DOUBLE_EQ(line.peakG, spectrum.peakG[bin]);
    EXPECT_DOUBLE_EQ(line.hz, spectrum.FrequencyOf(static_cast<double>(bin)));
    EXPECT_FALSE(line.peakBoundG);
  }
}

TEST(Interpolation, LinesBeyondTheLobesAreResolved) {
  const Spectrum spectrum =
      SpectrumOfTones({{80.2, 1.0, 0.3}, {90.4, 0.8, 1.9}}, WindowKind::Hanning);
  EXPECT_TRUE(LineAt(spectrum, 80).interpolated);
  EXPECT_TRUE(LineAt(spectrum, 90).interpolated);
}

TEST(Interpolation, WhereTheNeighboursCannotBeUsedTheBinStandsForItself) {
  Spectrum spectrum = SpectrumOfTones({{2.0, 1.0, 0}}, WindowKind::Hanning);
  Line line = LineAt(spectrum, 2);
  EXPECT_FALSE(line.interpolated);
  EXPECT_FALSE(line.unresolved);
  EXPECT_DOUBLE_EQ(line.hzBound, spectrum.binWidthHz / 2);
  EXPECT_NEAR(*line.peakBoundG, 0.178, 0.001);
  spectrum.window = WindowOfCode(3);
  line = LineAt(spectrum, 50);
  EXPECT_FALSE(line.interpolated);
  EXPECT_FALSE(line.peakBoundG);
  EXPECT_FALSE(LineAt(spectrum, 255).interpolated);
  EXPECT_EQ(LineAt(spectrum, 256).hz, 0);
  EXPECT_EQ(LineAt(Spectrum{}, 0).hz, 0);
}

TEST(Interpolation, SilenceAndFullScaleGiveNumbers) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::FlatTop);
  EXPECT_EQ(LineAt(spectrum, 40).peakG, 0);
  spectrum.peakG.assign(256, 70.0);
  for (std::size_t bin = 0; bin < 256; ++bin) {
    EXPECT_TRUE(std::isfinite(LineAt(spectrum, bin).hzBound));
  }
}

TEST(Interpolation, ASpectrumWithoutSurroundingsHasNoNoise) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.peakG = {0, 0, 0.1, 0.5, 0.1};
  EXPECT_EQ(LocalNoise(spectrum, 3), 0);
  EXPECT_TRUE(std::isfinite(LineAt(spectrum, 3).hzBound));
}

TEST(Interpolation, AFlatTopWithoutBothNeighboursStandsForItself) {
  Spectrum spectrum = SpectrumOfTones({{100.2, 1.0, 0.4}}, WindowKind::FlatTop);
  EXPECT_TRUE(LineAt(spectrum, 100).interpolated);
  spectrum.peakG[102] = 0;
  EXPECT_FALSE(LineAt(spectrum, 100).interpolated);
}

TEST(Interpolation, AveragingNarrowsTheBoundsAndHoldingDoesNot) {
  std::mt19937_64 random(3);
  std::vector<double> samples = SamplesOf({{100.3, 1.0, 0.4}});
  AddNoise(samples, 0.1, random);
  const auto bound = [&](SpectrumSource source, int averages, int captures) {
    Spectrum spectrum = SpectrumOfSamples(samples, WindowKind::Hanning);
    spectrum.source = source;
    spectrum.averages = averages;
    spectrum.captures = captures;
    return LineAt(spectrum, 100).hzBound;
  };
  const double one = bound(SpectrumSource::Sensor, 1, 1);
  EXPECT_LT(bound(SpectrumSource::Sensor, 16, 1), 0.5 * one);
  EXPECT_EQ(bound(SpectrumSource::Average, 1, 16), bound(SpectrumSource::Sensor, 16, 1));
  EXPECT_EQ(bound(SpectrumSource::Average, 4, 4), bound(SpectrumSource::Sensor, 16, 1));
  EXPECT_EQ(bound(SpectrumSource::MaximumHold, 16, 16), one);
  EXPECT_EQ(bound(SpectrumSource::MinimumHold, 16, 16), one);
}

}  // namespace
}  // namespace kestrel::analysis
