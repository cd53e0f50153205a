// Sampling, clipping, averaging and coding of a record.
// SPDX-License-Identifier: MIT
#include "simulator/signal/capture_engine.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>

namespace kestrel {
namespace {

// The input saturates where the time record's code does.
void ClipToRange(const CaptureSettings& settings, std::span<double> samples) {
  const double limitG = 32768.0 * settings.SampleLsbG();
  for (double& sample : samples) sample = std::clamp(sample, -limitG, limitG);
}

std::vector<std::uint16_t> CodeSamples(std::span<const double> samples, double lsbG) {
  std::vector<std::uint16_t> words;
  words.reserve(samples.size());
  for (const double sample : samples) {
    const double code = std::clamp(std::round(sample / lsbG), -32768.0, 32767.0);
    words.push_back(static_cast<std::uint16_t>(static_cast<std::int16_t>(code)));
  }
  return words;
}

std::vector<std::uint16_t> CodeMagnitudes(std::span<const double> magnitudes, double lsbG) {
  std::vector<std::uint16_t> words;
  words.reserve(magnitudes.size());
  for (const double magnitude : magnitudes) {
    words.push_back(static_cast<std::uint16_t>(std::min(std::round(magnitude / lsbG), 65535.0)));
  }
  return words;
}

}  // namespace

SpectrumPeak FindPeak(const std::vector<std::uint16_t>& magnitudes) {
  const auto peak = std::max_element(magnitudes.begin() + 1, magnitudes.end());
  return {.code = *peak, .bin = static_cast<std::uint16_t>(peak - magnitudes.begin())};
}

CapturedRecord CaptureEngine::Take(const Scenario& scenario, const CaptureSettings& settings,
                                   const Moment& start, const PerAxis& correctionG) {
  CapturedRecord record{.settings = settings, .words = {}};
  const double blockPeriod =
      std::chrono::duration<double>(settings.Duration()).count() / settings.Blocks();
  std::array<double, kFftLength> samples;
  SpectrumAverager spectrum(settings.window);
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    spectrum.Clear();
    for (unsigned block = 0; block < settings.Blocks(); ++block) {
      const Moment moment{start.seconds + block * blockPeriod, start.captures};
      source_.Sample(scenario.axes[axis], moment, settings.SampleRateHz(), samples);
      ClipToRange(settings, samples);
      for (double& sample : samples) sample += correctionG[axis];
      if (!settings.timeRecord) spectrum.Add(samples);
    }
    record.words[axis] = settings.timeRecord
                             ? CodeSamples(samples, settings.SampleLsbG())
                             : CodeMagnitudes(spectrum.Mean(), settings.MagnitudeLsbG());
  }
  return record;
}

CaptureEngine::PerAxis CaptureEngine::MeasureMean(const Scenario& scenario, unsigned range,
                                                  const Moment& start) {
  const CaptureSettings settings{.range = range};
  std::vector<double> samples(32 * kFftLength);
  PerAxis mean{};
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    source_.Sample(scenario.axes[axis], start, settings.SampleRateHz(), samples);
    ClipToRange(settings, samples);
    double weights = 0.0;
    double sum = 0.0;
    for (std::size_t n = 0; n < samples.size(); ++n) {
      // Tapered, so that a slow tone cut off in mid period does not pull the mean.
      const double position = (static_cast<double>(n) + 0.5) / static_cast<double>(samples.size());
      const double weight = 1.0 - std::cos(2.0 * std::numbers::pi * position);
      weights += weight;
      sum += weight * samples[n];
    }
    mean[axis] = sum / weights;
  }
  return mean;
}

}  // namespace kestrel
