// Window functions as data: coefficients, gain, noise bandwidth, scallop, main lobe.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace kestrel::analysis {

enum class WindowKind { Rectangular, Hanning, FlatTop, Unknown };

// a0 − a1 cos(x) + a2 cos(2x) − ..., x = 2πn/N: the periodic form.
using WindowCoefficients = std::array<double, 5>;

// Of an unknown window only `lobe` is set, to the widest, so that no offset is taken for vibration.
struct Window {
  WindowKind kind = WindowKind::Unknown;
  std::string_view name = "unknown window";
  WindowCoefficients coefficients{};
  double gain = 0;            // mean of the samples
  double noiseBandwidth = 0;  // bins
  double scallopDb = 0;       // loss of a line midway between two bins
  std::size_t lobe = 5;       // bins from the middle of the main lobe to its first zero
  [[nodiscard]] bool Known() const { return kind != WindowKind::Unknown; }
  bool operator==(const Window&) const = default;
};

[[nodiscard]] Window WindowOf(WindowKind kind);

// Of the sensor's code: 0 rectangular, 1 Hanning, 2 flat top; any other is unknown.
[[nodiscard]] Window WindowOfCode(int code);

// A flat top of other coefficients; "flat top" alone is ambiguous in the field.
[[nodiscard]] Window FlatTopOf(const WindowCoefficients& coefficients);

// `count` samples of a known window, not scaled.
[[nodiscard]] std::vector<double> WindowSamples(const Window& window, std::size_t count);

// Magnitude of the window's transform `bins` away from its middle, 1 in the middle: what a line
// shows in a bin that far away.
[[nodiscard]] double LobeShape(const Window& window, double bins);

// First bin that holds vibration: those below are within the lobe around 0 Hz and hold offset.
[[nodiscard]] std::size_t FirstVibrationBin(const Window& window);

// First bin that may be integrated to velocity or displacement: 3, of the flat top 5.
[[nodiscard]] std::size_t FirstIntegrableBin(const Window& window);

}  // namespace kestrel::analysis
