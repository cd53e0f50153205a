// Records as a machine could give them, kept with what their user noted.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "archive/kept_record.h"
#include "study/records.h"

namespace kestrel::report {

// Lines of all axes: bin and magnitude word.
inline archive::KeptRecord KeptSpectrum(int second, const std::vector<std::pair<int, int>>& lines,
                                        int option = 0, int window = 1) {
  archive::KeptRecord kept;
  kept.record = *study::SpectrumRecord(second, lines, option, window);
  kept.remarks = {.machine = "Pump 1", .point = "Drive end", .orientation = "X radial, Z axial"};
  kept.program = "0.1.0";
  kept.bench = "bench 1";
  kept.id = second + 1;
  return kept;
}

}  // namespace kestrel::report
