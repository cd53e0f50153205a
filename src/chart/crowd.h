// Many records at once: what they reach in every pixel column, and their median.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "chart/axis_map.h"
#include "chart/stroke_image.h"

namespace kestrel {

struct CrowdColumns {
  std::vector<ColumnArea> area;  // from largest (upper) to least (lower), a column each
  PlotLine median;
};

// Over columns 0 to `columns` - 1, between the first and the last x. All records share x, which
// does not decrease; where several points fall on one column, each record counts with its largest.
// Values that are no numbers count not at all.
[[nodiscard]] CrowdColumns CrowdInColumns(std::span<const double> x,
                                          std::span<const std::vector<double>> records,
                                          const AxisMap& across, const AxisMap& up, int columns);

}  // namespace kestrel
