// Averaged magnitude spectra of blocks of 512 samples.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <complex>
#include <cstddef>
#include <span>
#include <unsupported/Eigen/FFT>

namespace kestrel {

inline constexpr std::size_t kFftLength = 512;
inline constexpr std::size_t kBinCount = kFftLength / 2;

// Codes of the window field of REC_CTRL.
enum class WindowShape : unsigned { Rectangular = 0, Hanning = 1, FlatTop = 2 };

// Averages magnitude spectra of blocks of samples. Magnitudes are peak amplitudes: a sine on a bin
// gives its amplitude whatever the window; bin 0 gives the mean.
class SpectrumAverager {
 public:
  explicit SpectrumAverager(WindowShape window);

  void Add(std::span<const double, kFftLength> samples);

  // Forgets the blocks added so far.
  void Clear();

  // Mean magnitude of the blocks added so far; at least one.
  [[nodiscard]] std::array<double, kBinCount> Mean() const;

 private:
  Eigen::FFT<double> fft_;
  std::array<double, kFftLength> window_;  // scaled to single-sided peak amplitude
  std::array<double, kFftLength> windowed_;
  std::array<std::complex<double>, kBinCount + 1> bins_;
  std::array<double, kBinCount> sum_{};
  unsigned blocks_ = 0;
};

}  // namespace kestrel
