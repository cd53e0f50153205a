// Working out the steps of an axis, and writing numbers at them.
// SPDX-License-Identifier: MIT
#include "chart/axis_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/plot_ticks.h"
#include "numeric/number_format.h"

namespace kestrel {
namespace {

constexpr double kRounding = 1e-9;
constexpr int kLeastPlainExponent = -4;  // 0.0001
constexpr int kMostPlainExponent = 6;    // 1,000,000
constexpr const char* kMinus = "\u2212";

std::string WithCommas(const std::string& digits) {
  const std::size_t end = std::min(digits.find('.'), digits.size());
  std::string text = digits;
  for (std::size_t place = end; place > 3;) {
    place -= 3;
    text.insert(place, ",");
  }
  return text;
}

int DecimalsOf(double step) {
  if (!(step > 0)) return 0;
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - kRounding)), 0, 14);
}

std::vector<AxisTick> EvenTicks(const PlotRange& range, double pixels, double apart) {
  int wished = std::max(1, static_cast<int>(pixels / apart));
  double step = NiceStep(range.Span(), wished);
  // The nearest nice step may be a little too small.
  while (wished > 1 && step > 0 && step / range.Span() * pixels < apart) {
    step = NiceStep(range.Span(), --wished);
  }
  std::vector<AxisTick> ticks;
  for (const double value : NiceTicks(range.low, range.high, wished)) {
    ticks.push_back({value, TickText(value, step)});
  }
  return ticks;
}

// Of one decade, as multiples of it; further decades are stepped over.
struct LogarithmicGrid {
  std::vector<int> mantissas;
  int decades = 1;
};

LogarithmicGrid GridWithRoom(double pixelsPerDecade, double apart) {
  if (std::log10(2.0) * pixelsPerDecade >= apart) return {{1, 2, 5}, 1};
  int decades = 1;
  while (decades * pixelsPerDecade < apart && decades < 100) ++decades;
  return {{1}, decades};
}

std::string LogarithmicLabel(int mantissa, int exponent, bool isPower) {
  if (isPower && mantissa == 1) return PowerText(exponent);
  const double value = mantissa * std::pow(10.0, exponent);
  return TickText(value, value);
}

std::vector<AxisTick> LogarithmicTicks(const PlotRange& range, double pixels, double apart) {
  const double low = std::log10(range.low);
  const double high = std::log10(range.high);
  const LogarithmicGrid grid = GridWithRoom(pixels / (high - low), apart);
  const bool isPower = low < kLeastPlainExponent - 1 || high > kMostPlainExponent + 1;
  std::vector<AxisTick> ticks;
  for (int e = static_cast<int>(std::floor(low)); e <= static_cast<int>(std::ceil(high)); ++e) {
    if (e % grid.decades != 0) continue;
    for (const int mantissa : grid.mantissas) {
      const double value = mantissa * std::pow(10.0, e);
      if (value < range.low * (1 - kRounding) || value > range.high * (1 + kRounding)) continue;
      ticks.push_back({value, LogarithmicLabel(mantissa, e, isPower)});
    }
  }
  return ticks;
}

// Evenly spaced ones crowd together upwards on a logarithmic axis.
std::vector<AxisTick> Thinned(std::vector<AxisTick> ticks, const AxisMap& map, double apart) {
  std::vector<AxisTick> kept;
  for (AxisTick& tick : ticks) {
    if (kept.empty() ||
        std::abs(map.ToPixel(tick.value) - map.ToPixel(kept.back().value)) >= apart) {
      kept.push_back(std::move(tick));
    }
  }
  return kept;
}

}  // namespace

std::string NumberText(double value, int decimals) {
  const std::string digits = FixedNumber(std::abs(value), decimals);
  const bool isZero = digits.find_first_not_of("0.") == std::string::npos;
  return (value < 0 && !isZero ? kMinus : "") + WithCommas(digits);
}

std::string SignificantText(double value, int digits) {
  if (value == 0 || !std::isfinite(value)) return value == 0 ? "0" : "\u2013";
  const int exponent = static_cast<int>(std::floor(std::log10(std::abs(value)) + kRounding));
  if (exponent >= kLeastPlainExponent && exponent <= kMostPlainExponent) {
    return NumberText(value, std::clamp(digits - 1 - exponent, 0, 14));
  }
  const double mantissa = value / std::pow(10.0, exponent);
  return NumberText(mantissa, digits - 1) + "\u00D7" + PowerText(exponent);
}

std::string PowerText(int exponent) {
  constexpr std::array kDigits{"\u2070", "\u00B9", "\u00B2", "\u00B3", "\u2074",
                               "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
  std::string text = exponent < 0 ? "10\u207B" : "10";
  for (const char digit : std::to_string(std::abs(exponent))) {
    text += kDigits.at(static_cast<std::size_t>(digit - '0'));
  }
  return text;
}

std::string TickText(double value, double step) {
  if (value == 0) return "0";
  const double exponent = std::floor(std::log10(std::abs(value)) + kRounding);
  const double stepExponent = step > 0 ? std::floor(std::log10(step) + kRounding) : exponent;
  if (exponent > kMostPlainExponent || stepExponent < kLeastPlainExponent - 2) {
    const double mantissa = value / std::pow(10.0, exponent);
    const int decimals = std::clamp(static_cast<int>(exponent - stepExponent), 0, 12);
    const std::string power = PowerText(static_cast<int>(exponent));
    const bool isOne = std::abs(mantissa - 1) < kRounding && decimals == 0;
    return isOne ? power : NumberText(mantissa, decimals) + "\u00D7" + power;
  }
  return NumberText(value, DecimalsOf(step));
}

std::vector<AxisTick> AxisTicks(const PlotRange& range, AxisKind kind, double pixels,
                                double apart) {
  if (!IsShowable(range, kind) || !(pixels > 0) || !(apart > 0)) return {};
  if (kind != AxisKind::Logarithmic) return EvenTicks(range, pixels, apart);
  std::vector<AxisTick> ticks = LogarithmicTicks(range, pixels, apart);
  if (ticks.size() > 2 || range.high / range.low > 10) return ticks;
  return Thinned(EvenTicks(range, pixels, apart), AxisMap(range, kind, 0, pixels), apart);
}

}  // namespace kestrel
