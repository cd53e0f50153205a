// Luminance and mixtures of colours.
// SPDX-License-Identifier: MIT
#include "ui/parts/contrast.h"

#include <algorithm>
#include <cmath>

namespace kestrel {

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  constexpr double kFlare = 0.05;
  const double one = Luminance(a) + kFlare;
  const double other = Luminance(b) + kFlare;
  return std::max(one, other) / std::min(one, other);
}

QColor Mix(const QColor& from, const QColor& to, double part) {
  const auto mix = [part](float a, float b) {
    return static_cast<float>((1 - part) * static_cast<double>(a) + part * static_cast<double>(b));
  };
  return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                          mix(from.blueF(), to.blueF()));
}

}  // namespace kestrel
