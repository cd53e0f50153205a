// The acceleration of an axis as an ideal sampler sees it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <unsupported/Eigen/FFT>

#include "simulator/signal/scenario.h"

namespace kestrel {

// The acceleration of an axis as a sampler with an ideal anti-alias filter sees it.
class VibrationSource {
 public:
  explicit VibrationSource(std::uint64_t noiseSeed) : random_(noiseSeed) {
    fft_.SetFlag(Eigen::FFT<double>::HalfSpectrum);
  }

  // Fills `out` with samples in g from `start` on. Tones at or above half the
  // sample rate are left out; noise has the bandwidth of half the sample rate.
  void Sample(const AxisVibration& axis, const Moment& start, double sampleRateHz,
              std::span<double> out);

 private:
  void AddShapes(const AxisVibration& axis, double sampleRateHz, std::span<double> out);

  std::mt19937_64 random_;
  std::normal_distribution<double> normal_;
  Eigen::FFT<double> fft_;
};

}  // namespace kestrel
