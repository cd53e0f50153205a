// The points of a trace on their way to the screen: thinned to what its pixels can tell apart.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "chart/axis_map.h"

namespace kestrel {

struct PlotPoint {
  double x = 0;
  double y = 0;
  bool operator==(const PlotPoint&) const = default;
};

using PlotLine = std::vector<PlotPoint>;

// Of every whole pixel column the first, least, largest and last point, in their order: a line
// through them covers the same pixels as one through all. x must not decrease.
[[nodiscard]] PlotLine ReducedToColumns(std::span<const PlotPoint> points);

// The points of a trace in pixels, from the last left of the range to the first right of it. A
// value that is no number ends a line; nothing is drawn across it. x must not decrease; x and y are
// equally long (what one has more is left out).
[[nodiscard]] std::vector<PlotLine> LinesInView(std::span<const double> x,
                                                std::span<const double> y, const AxisMap& across,
                                                const AxisMap& up);

// The parts of a line that are drawn when it is alternately drawn and not along it, by the lengths
// of a pattern in pixels (an even number of them, all above 0), as far as they may be seen between
// two heights.
[[nodiscard]] std::vector<PlotLine> Dashes(std::span<const PlotPoint> line,
                                           std::span<const double> pattern, const PlotRange& seen);

// The lengths of dash number 1 to kTraceDashes - 1, told apart without colours; empty for 0, a line
// drawn through.
[[nodiscard]] std::span<const double> DashPattern(int dash);

}  // namespace kestrel
