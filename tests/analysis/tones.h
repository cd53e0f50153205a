// Samples and spectra of known tones and noise.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "analysis/spectrum.h"
#include "record/frequency.h"

namespace kestrel::analysis {

struct Tone {
  double bin = 0;  // between bins too
  double peakG = 1;
  double phase = 0;
};

inline std::vector<double> SamplesOf(const std::vector<Tone>& tones, double meanG = 0) {
  std::vector<double> samples(kTransformLength, meanG);
  for (const Tone& tone : tones) {
    for (std::size_t n = 0; n < samples.size(); ++n) {
      const double turn = tone.bin * static_cast<double>(n) / double{kTransformLength};
      samples[n] += tone.peakG * std::cos(2 * std::numbers::pi * turn + tone.phase);
    }
  }
  return samples;
}

inline void AddNoise(std::vector<double>& samples, double rmsG, std::mt19937_64& random) {
  std::normal_distribution<double> normal(0, rmsG);
  for (double& sample : samples) sample += normal(random);
}

// As the sensor would deliver it, words hardly rounded.
inline Spectrum SpectrumOfSamples(const std::vector<double>& samples, WindowKind window,
                                  int option = 0) {
  Spectrum spectrum{.binWidthHz = BinWidth(option), .window = WindowOf(window), .option = option};
  spectrum.peakG = Transform(samples, spectrum.window);
  spectrum.peakG.resize(kSpectrumBins);
  spectrum.stepG = 1e-9;  // nothing to speak of, but above what rounding in the transform leaves
  return spectrum;
}

inline Spectrum SpectrumOfTones(const std::vector<Tone>& tones, WindowKind window, int option = 0) {
  return SpectrumOfSamples(SamplesOf(tones), window, option);
}

inline constexpr std::array<WindowKind, 3> kWindows{WindowKind::Rectangular, WindowKind::Hanning,
                                                    WindowKind::FlatTop};

}  // namespace kestrel::analysis
