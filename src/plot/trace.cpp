// The traces of a record and their colours.
// SPDX-License-Identifier: MIT
#include "plot/trace.h"

#include "app/program_state.h"

namespace kestrel {

double TraceColour(Axis axis) {
  switch (axis) {
    case Axis::X:
      return Rgb(205, 50, 50);
    case Axis::Y:
      return Rgb(50, 205, 50);
    default:
      return Rgb(50, 50, 205);
  }
}

std::array<PlotTrace, 3> TracesOf(const Record& record) {
  std::array<PlotTrace, 3> traces;
  for (const Axis axis : kAxes) {
    PlotTrace& trace = traces[Index(axis)];
    trace.axis = axis;
    trace.name = std::string(1, Letter(axis));
    trace.unit = "g";
    trace.horizontal.unit = record.kind == RecordKind::Time ? "sample" : "bin";
    trace.values = record.Values(axis);
    trace.colour = TraceColour(axis);
  }
  return traces;
}

}  // namespace kestrel
