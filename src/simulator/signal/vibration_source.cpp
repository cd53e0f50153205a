// Sines by rotating phasors, and noise, sample by sample.
// SPDX-License-Identifier: MIT
#include "simulator/signal/vibration_source.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace kestrel {
namespace {

constexpr std::size_t kShapedLength = 4096;

// Adds a sine by rotating a phasor, which costs four multiplications a sample. The rotation starts
// afresh at every call, so rounding does not add up over a record.
void AddTone(const Tone& tone, const Moment& start, double sampleRateHz, std::span<double> out) {
  constexpr double kTurn = 2.0 * std::numbers::pi;
  const double turns = tone.frequencyHz * start.seconds;
  const double phase = kTurn * (turns - std::floor(turns)) + tone.phaseRad;
  const double step = kTurn * tone.frequencyHz / sampleRateHz;
  const double stepCos = std::cos(step);
  const double stepSin = std::sin(step);
  const double amplitudeG = tone.AmplitudeAt(start.captures);
  double re = amplitudeG * std::cos(phase);
  double im = amplitudeG * std::sin(phase);
  for (double& sample : out) {
    sample += im;
    const double nextRe = re * stepCos - im * stepSin;
    im = re * stepSin + im * stepCos;
    re = nextRe;
  }
}

}  // namespace

void VibrationSource::Sample(const AxisVibration& axis, const Moment& start, double sampleRateHz,
                             std::span<double> out) {
  for (double& sample : out) sample = axis.offsetG;
  for (const Tone& tone : axis.tones) {
    if (tone.frequencyHz < sampleRateHz / 2) AddTone(tone, start, sampleRateHz, out);
  }
  if (axis.noiseDensityG > 0.0) {
    const double sigma = axis.noiseDensityG * std::sqrt(sampleRateHz / 2);
    for (double& sample : out) sample += sigma * normal_(random_);
  }
  if (!axis.shapes.empty()) AddShapes(axis, sampleRateHz, out);
  if (axis.growthDb == 0.0) return;
  const double gain = axis.GainAt(start.captures);
  for (double& sample : out) sample = axis.offsetG + gain * (sample - axis.offsetG);
}

// Lines of random phase and amplitude, an eighth of a bin of the sensor's apart, so that a block of
// samples sees no more than the density that they stand for.
void VibrationSource::AddShapes(const AxisVibration& axis, double sampleRateHz,
                                std::span<double> out) {
  constexpr std::size_t kLines = kShapedLength / 2;
  std::vector<std::complex<double>> lines(kLines + 1);
  std::vector<double> block(kShapedLength);
  const double stepHz = sampleRateHz / kShapedLength;
  for (std::size_t from = 0; from < out.size(); from += kShapedLength) {
    for (std::size_t k = 1; k < kLines; ++k) {
      double power = 0.0;
      for (const ShapedNoise& shape : axis.shapes) {
        power += shape.PowerAt(static_cast<double>(k) * stepHz);
      }
      const double sigma = std::sqrt(power * sampleRateHz * kShapedLength / 4);
      lines[k] = {sigma * normal_(random_), sigma * normal_(random_)};
    }
    fft_.inv(block.data(), lines.data(), static_cast<int>(kShapedLength));
    const std::size_t count = std::min<std::size_t>(kShapedLength, out.size() - from);
    for (std::size_t n = 0; n < count; ++n) out[from + n] += block[n];
  }
}

}  // namespace kestrel
