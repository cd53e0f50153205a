// The values of the traces at one bin or sample, in words.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

namespace kestrel {

// What stands at one bin or sample of a record.
struct PointOfRecord {
  int index = 0;
  double hertz = 0;             // of the bin; of no meaning for a time record
  bool isTime = false;          // a sample of a time record
  std::array<double, 3> g{};    // by axis
  std::array<bool, 3> shown{};  // whether the axis is drawn
};

// "Bin 10, 1,957 Hz" or "Sample 10", then a line for each axis that is drawn: "X  0.4120 g".
[[nodiscard]] std::string TraceValues(const PointOfRecord& point);

}  // namespace kestrel
