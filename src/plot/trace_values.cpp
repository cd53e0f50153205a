// A point of a record, written a line for each trace.
// SPDX-License-Identifier: MIT
#include "plot/trace_values.h"

#include "numeric/number_format.h"
#include "record/axis.h"

namespace kestrel {
namespace {

constexpr int kDecimals = 4;  // of the finest range's resolution no more is worth reading

}  // namespace

std::string TraceValues(const PointOfRecord& point) {
  std::string text = point.isTime ? "Sample " : "Bin ";
  text += std::to_string(point.index);
  if (!point.isTime) text += ", " + GroupedWholeNumber(point.hertz) + " Hz";
  for (std::size_t axis = 0; axis < point.g.size(); ++axis) {
    if (!point.shown[axis]) continue;
    text += std::string("\n") + Letter(kAxes[axis]) + "  " + FixedNumber(point.g[axis], kDecimals) +
            " g";
  }
  return text;
}

}  // namespace kestrel
