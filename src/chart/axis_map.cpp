// Linear and logarithmic positions worked out, and intervals zoomed and moved in them.
// SPDX-License-Identifier: MIT
#include "chart/axis_map.h"

#include <algorithm>
#include <cmath>

#include "chart/plot_ticks.h"

namespace kestrel {
namespace {

constexpr double kLeastRelativeSpan = 1e-9;
constexpr double kFarBelow = 1e6;  // pixels; what is clipped anyway
constexpr double kMostDecades = 8;

bool IsLog(AxisKind kind) {
  return kind == AxisKind::Logarithmic;
}

// The axis stretched so that equal distances are equal on it.
double Stretched(double value, AxisKind kind) {
  return IsLog(kind) ? std::log(value) : value;
}

double Unstretched(double value, AxisKind kind) {
  return IsLog(kind) ? std::exp(value) : value;
}

PlotRange OrAsBefore(const PlotRange& wished, const PlotRange& before, AxisKind kind) {
  return IsShowable(wished, kind) ? wished : before;
}

PlotRange Between(double low, double high, AxisKind kind) {
  return {Unstretched(low, kind), Unstretched(high, kind)};
}

double RoundLogarithm(double value, bool isUp) {
  const double decade = std::pow(10.0, std::floor(std::log10(value) + 1e-9));
  const double mantissa = value / decade;
  if (isUp) return decade * (mantissa <= 1 + 1e-9 ? 1 : mantissa <= 2 ? 2 : mantissa <= 5 ? 5 : 10);
  return decade * (mantissa >= 5 ? 5 : mantissa >= 2 ? 2 : 1);
}

PlotRange LogarithmicRange(double least, double largest) {
  if (!(largest > 0)) return {0.001, 1};
  const double high = RoundLogarithm(largest, true);
  const double floor = high / std::pow(10.0, kMostDecades);
  double low = RoundLogarithm(std::max(least, floor), false);
  if (low >= high / 9) low = high / 10;
  return {low, high};
}

PlotRange EvenRange(double least, double largest, AxisKind kind) {
  double low = kind == AxisKind::Linear ? std::min(least, 0.0) : least;
  double high = kind == AxisKind::Linear ? std::max(largest, 0.0) : largest;
  if (!(high - low > 0)) high = low + (kind == AxisKind::Linear ? 1 : 20);
  const double step = NiceStep(high - low, kind == AxisKind::Linear ? 8 : 6);
  if (!(step > 0)) return {0, 1};
  low = std::floor(low / step + 1e-9) * step;
  high = std::ceil(high / step - 1e-9) * step;
  return {low, high};
}

}  // namespace

bool IsShowable(const PlotRange& range, AxisKind kind) {
  if (!std::isfinite(range.low) || !std::isfinite(range.high)) return false;
  if (IsLog(kind)) {
    return range.low > 1e-300 && range.high > range.low * (1 + 1e-6) && range.high < 1e300;
  }
  const double largest = std::max(std::abs(range.low), std::abs(range.high));
  return range.Span() > largest * kLeastRelativeSpan && range.Span() > 1e-300 && largest < 1e300;
}

AxisMap::AxisMap(const PlotRange& range, AxisKind kind, double atLow, double atHigh)
    : range_(range), kind_(kind), atLow_(atLow) {
  origin_ = Stretched(range.low, kind);
  scale_ = (atHigh - atLow) / (Stretched(range.high, kind) - origin_);
}

double AxisMap::ToPixel(double value) const {
  if (IsLog(kind_) && !(value > 0)) {
    return std::isnan(value) ? value : atLow_ - std::copysign(kFarBelow, scale_);
  }
  const double place = (Stretched(value, kind_) - origin_) * scale_;
  return atLow_ + std::clamp(place, -kFarBelow, kFarBelow);
}

double AxisMap::FromPixel(double pixel) const {
  return Unstretched(origin_ + (pixel - atLow_) / scale_, kind_);
}

PlotRange Zoomed(const PlotRange& range, AxisKind kind, double about, double factor) {
  if (!(factor > 0) || !std::isfinite(factor) || (IsLog(kind) && !(about > 0))) return range;
  const double centre = Stretched(about, kind);
  const double low = centre + (Stretched(range.low, kind) - centre) / factor;
  const double high = centre + (Stretched(range.high, kind) - centre) / factor;
  return OrAsBefore(Between(low, high, kind), range, kind);
}

PlotRange Panned(const PlotRange& range, AxisKind kind, double part) {
  const double low = Stretched(range.low, kind);
  const double high = Stretched(range.high, kind);
  const double shift = (high - low) * part;
  return OrAsBefore(Between(low + shift, high + shift, kind), range, kind);
}

PlotRange Within(const PlotRange& range, AxisKind kind, const PlotRange& bounds) {
  if (range.low >= bounds.low && range.high <= bounds.high) return range;
  const double low = Stretched(range.low, kind);
  const double high = Stretched(range.high, kind);
  const double least = Stretched(bounds.low, kind);
  const double most = Stretched(bounds.high, kind);
  if (!(high - low < most - least)) return bounds;
  if (low < least) return {bounds.low, Unstretched(least + (high - low), kind)};
  return {Unstretched(most - (high - low), kind), bounds.high};
}

PlotRange RangeFor(double least, double largest, AxisKind kind) {
  if (!std::isfinite(least) || !std::isfinite(largest)) return {IsLog(kind) ? 0.001 : 0.0, 1};
  return IsLog(kind) ? LogarithmicRange(least, largest) : EvenRange(least, largest, kind);
}

}  // namespace kestrel
