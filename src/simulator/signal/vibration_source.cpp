// Sines by rotating phasors, and noise, sample by sample.
// SPDX-License-Identifier: MIT
#include "simulator/signal/vibration_source.h"

#include <cmath>
#include <numbers>

namespace kestrel {
namespace {

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
  if (axis.noiseDensityG <= 0.0) return;
  const double sigma = axis.noiseDensityG * std::sqrt(sampleRateHz / 2);
  for (double& sample : out) sample += sigma * normal_(random_);
}

}  // namespace kestrel
