// Many points of one trace: what they reach in every pixel column, and the median there.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "chart/axis_map.h"
#include "chart/stroke_image.h"

namespace kestrel {

struct Spread {
  std::vector<PlotLine> lines;   // through single points and through the medians of full columns
  std::vector<ColumnArea> area;  // of those columns: from largest (upper) to least (lower)
};

// A column is full where it holds more than two points. x does not decrease. A value that is no
// number ends a line; nothing is drawn across it.
[[nodiscard]] Spread SpreadInColumns(std::span<const double> x, std::span<const double> y,
                                     const AxisMap& across, const AxisMap& up);

}  // namespace kestrel
