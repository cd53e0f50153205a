// Ticks of a plot's axis: where they are and how they are written.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "chart/axis_map.h"

namespace kestrel {

struct AxisTick {
  double value = 0;
  std::string label;  // UTF-8
};

// Ticks at multiples of 1, 2 or 5 times a power of ten, at least `apart` pixels from each other on
// an axis that is `pixels` long. Logarithmic: 1, 2, 5 while there is room, then decades, then every
// so many decades; within less than a decade evenly spaced ones.
[[nodiscard]] std::vector<AxisTick> AxisTicks(const PlotRange& range, AxisKind kind, double pixels,
                                              double apart);

// "50,000", "−0.25" (with a minus sign, not a hyphen): as many decimals as tell multiples of the
// step apart; beyond 10⁶ and below 10⁻⁵ as "2×10⁻⁶".
[[nodiscard]] std::string TickText(double value, double step);

// Rounded to so many decimals, with commas between thousands and a minus sign.
[[nodiscard]] std::string NumberText(double value, int decimals);

// With so many significant digits, for numbers that no step or bound tells more about.
[[nodiscard]] std::string SignificantText(double value, int digits);

// 10 to a whole power: "10⁻⁸".
[[nodiscard]] std::string PowerText(int exponent);

}  // namespace kestrel
