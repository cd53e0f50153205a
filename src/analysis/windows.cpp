// The sensor's windows, and what follows from their coefficients.
// SPDX-License-Identifier: MIT
#include "analysis/windows.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrel::analysis {
namespace {

constexpr WindowCoefficients kHanning{0.5, 0.5};
// Heinzel, Rüdiger, Schilling 2002; the same as in widespread numerical libraries.
constexpr WindowCoefficients kFlatTop{0.21557895, 0.41663158, 0.277263158, 0.083578947,
                                      0.006947368};
constexpr std::size_t kLeastIntegrableBin = 3;

// sin(πx)/(πx), the transform of a long rectangle.
double Sinc(double x) {
  const double angle = std::numbers::pi * x;
  return std::fabs(angle) < 1e-12 ? 1.0 : std::sin(angle) / angle;
}

std::size_t Terms(const WindowCoefficients& coefficients) {
  std::size_t terms = coefficients.size();
  while (terms > 1 && coefficients[terms - 1] == 0) --terms;
  return terms;
}

Window Made(WindowKind kind, std::string_view name, const WindowCoefficients& coefficients) {
  Window window{.kind = kind, .name = name, .coefficients = coefficients};
  window.gain = coefficients[0];
  double power = coefficients[0] * coefficients[0];
  for (std::size_t term = 1; term < coefficients.size(); ++term) {
    power += coefficients[term] * coefficients[term] / 2;
  }
  window.noiseBandwidth = power / (window.gain * window.gain);
  window.scallopDb = -20 * std::log10(LobeShape(window, 0.5));
  window.lobe = Terms(coefficients);
  return window;
}

}  // namespace

Window WindowOf(WindowKind kind) {
  switch (kind) {
    case WindowKind::Rectangular:
      return Made(kind, "Rectangular", {1.0});
    case WindowKind::Hanning:
      return Made(kind, "Hanning", kHanning);
    case WindowKind::FlatTop:
      return Made(kind, "Flat top", kFlatTop);
    default:
      return {};
  }
}

Window WindowOfCode(int code) {
  switch (code) {
    case 0:
      return WindowOf(WindowKind::Rectangular);
    case 1:
      return WindowOf(WindowKind::Hanning);
    case 2:
      return WindowOf(WindowKind::FlatTop);
    default:
      return {};
  }
}

Window FlatTopOf(const WindowCoefficients& coefficients) {
  if (!(coefficients[0] > 0)) return {};
  return Made(WindowKind::FlatTop, "Flat top", coefficients);
}

std::vector<double> WindowSamples(const Window& window, std::size_t count) {
  std::vector<double> samples(count);
  for (std::size_t n = 0; n < count; ++n) {
    const double x = 2 * std::numbers::pi * static_cast<double>(n) / static_cast<double>(count);
    double sign = 1;
    for (std::size_t term = 0; term < window.lobe; ++term, sign = -sign) {
      samples[n] += sign * window.coefficients[term] * std::cos(static_cast<double>(term) * x);
    }
  }
  return samples;
}

double LobeShape(const Window& window, double bins) {
  double sum = window.coefficients[0] * Sinc(bins);
  for (std::size_t term = 1; term < window.coefficients.size(); ++term) {
    if (window.coefficients[term] == 0) continue;
    // The alternating signs are undone by the shift of the window's middle to N/2.
    const auto shift = static_cast<double>(term);
    sum += window.coefficients[term] / 2 * (Sinc(bins - shift) + Sinc(bins + shift));
  }
  return window.gain > 0 ? std::fabs(sum) / window.gain : 0;
}

std::size_t FirstVibrationBin(const Window& window) {
  return window.lobe;
}

std::size_t FirstIntegrableBin(const Window& window) {
  return std::max(window.lobe, kLeastIntegrableBin);
}

}  // namespace kestrel::analysis
