// Window, transform and mean of magnitudes.
// SPDX-License-Identifier: MIT
#include "simulator/signal/spectrum.h"

#include <cmath>
#include <numbers>
#include <numeric>

namespace kestrel {
namespace {

using Cosines = std::array<double, 5>;  // coefficients of alternating sign

Cosines Coefficients(WindowShape window) {
  switch (window) {
    case WindowShape::Hanning:
      return {0.5, 0.5};
    case WindowShape::FlatTop:
      return {0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368};
    default:
      return {1.0};
  }
}

double WindowAt(const Cosines& coefficients, std::size_t n) {
  const double angle = 2.0 * std::numbers::pi * static_cast<double>(n) / kFftLength;  // periodic
  double value = 0.0;
  double sign = 1.0;
  for (std::size_t term = 0; term < coefficients.size(); ++term) {
    value += sign * coefficients[term] * std::cos(static_cast<double>(term) * angle);
    sign = -sign;
  }
  return value;
}

}  // namespace

SpectrumAverager::SpectrumAverager(WindowShape window) {
  fft_.SetFlag(Eigen::FFT<double>::HalfSpectrum);
  const Cosines coefficients = Coefficients(window);
  for (std::size_t n = 0; n < kFftLength; ++n) window_[n] = WindowAt(coefficients, n);
  const double gain = std::accumulate(window_.begin(), window_.end(), 0.0);
  for (double& value : window_) value *= 2.0 / gain;
}

void SpectrumAverager::Add(std::span<const double, kFftLength> samples) {
  for (std::size_t n = 0; n < kFftLength; ++n) windowed_[n] = samples[n] * window_[n];
  fft_.fwd(bins_.data(), windowed_.data(), static_cast<int>(kFftLength));
  sum_[0] += std::abs(bins_[0]) / 2.0;  // bin 0 has no mirror image
  for (std::size_t k = 1; k < kBinCount; ++k) sum_[k] += std::sqrt(std::norm(bins_[k]));
  ++blocks_;
}

void SpectrumAverager::Clear() {
  sum_ = {};
  blocks_ = 0;
}

std::array<double, kBinCount> SpectrumAverager::Mean() const {
  std::array<double, kBinCount> mean = sum_;
  for (double& magnitude : mean) magnitude /= blocks_;
  return mean;
}

}  // namespace kestrel
