// Steps of 1, 2 and 5, halves, and multiples within an interval.
// SPDX-License-Identifier: MIT
#include "chart/plot_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel {
namespace {

constexpr double kRounding = 1e-9;  // relative to a step
constexpr int kMostParts = 1000;

bool IsWhole(double value) {
  return std::abs(value - std::round(value)) < kRounding;
}

// `step` as 1 to below 10.
double Mantissa(double step) {
  return step / std::pow(10.0, std::floor(std::log10(step) + kRounding));
}

bool IsHalvingStep(double step) {
  constexpr std::array kMantissas{1.0, 2.0, 2.5, 5.0};
  const double mantissa = Mantissa(step);
  return std::any_of(kMantissas.begin(), kMantissas.end(),
                     [=](double nice) { return std::abs(mantissa - nice) < kRounding; });
}

// Index times step rather than a sum, so that no error adds up and zero is exactly zero.
std::vector<double> Multiples(double low, double high, double step) {
  std::vector<double> ticks;
  const double first = std::ceil(low / step - kRounding);
  const double last = std::floor(high / step + kRounding);
  const auto count = static_cast<int>(last - first) + 1;
  ticks.reserve(static_cast<std::size_t>(std::max(count, 0)));
  for (int i = 0; i < count; ++i) ticks.push_back((first + i) * step + 0.0);
  return ticks;
}

bool IsInterval(double low, double high) {
  return std::isfinite(high - low) && low < high &&
         (high - low) > std::max(std::abs(low), std::abs(high)) * kRounding;
}

}  // namespace

double NiceStep(double span, int wished) {
  if (!std::isnormal(span) || span < 0) return 0;
  const double rough = span / std::clamp(wished, 1, kMostParts);
  if (!std::isnormal(rough)) return 0;
  const double decade = std::pow(10.0, std::floor(std::log10(rough) + kRounding));
  const double mantissa = rough / decade;
  // The borders are the geometric means of the neighbours.
  if (mantissa < std::sqrt(2.0)) return decade;
  if (mantissa < std::sqrt(10.0)) return 2 * decade;
  if (mantissa < std::sqrt(50.0)) return 5 * decade;
  return 10 * decade;
}

std::vector<double> NiceTicks(double from, double to, int wished) {
  const auto [low, high] = std::minmax(from, to);
  if (!IsInterval(low, high)) return {};
  const double step = NiceStep(high - low, wished);
  if (!(step > 0)) return {};
  return Multiples(low, high, step);
}

std::vector<double> HalvedTicks(double from, double to, int wished) {
  const auto [low, high] = std::minmax(from, to);
  if (!IsInterval(low, high)) return {};
  const double half = (high - low) / 2;
  for (int parts = std::clamp(wished, 1, kMostParts) / 2; parts >= 1; --parts) {
    const double step = half / parts;
    if (std::isnormal(step) && IsHalvingStep(step) && IsWhole(low / step)) {
      return Multiples(low, high, step);
    }
  }
  return {low, low + half, high};
}

std::vector<double> BinTicks(int last, int wished) {
  if (last <= 0) return {};
  const int parts = std::clamp(wished, 1, kMostParts);
  int step = 1;
  while (step * parts < last) step *= 2;
  std::vector<double> ticks;
  for (int tick = 0; 2 * tick <= 2 * last - step; tick += step) ticks.push_back(tick);
  ticks.push_back(last);
  return ticks;
}

}  // namespace kestrel
