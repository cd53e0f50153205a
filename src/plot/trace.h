// What a plot is handed to draw: traces.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <string>

#include "record/record.h"

namespace kestrel {

// Where the points of a trace lie: the first at `first`, each further one `step` on.
struct HorizontalAxis {
  std::string unit;  // "bin" or "sample"
  double first = 0;
  double step = 1;
};

struct PlotTrace {
  Axis axis = Axis::X;  // whose check box shows or hides it
  std::string name;     // "X"
  std::string unit;     // of the values: "g"
  HorizontalAxis horizontal;
  std::span<const double> values;  // those of the record, which must outlive the trace
  double colour = 0;               // 0xBBGGRR
};

// Colour value of an axis's trace.
[[nodiscard]] double TraceColour(Axis axis);

// The three axes of a record, X first.
[[nodiscard]] std::array<PlotTrace, 3> TracesOf(const Record& record);

}  // namespace kestrel
