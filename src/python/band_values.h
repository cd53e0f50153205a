// A table of alarm bands as rows of numbers.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "alarms/band_table.h"

namespace kestrel::python {

// Option, band, then the values of kBandFields.
using BandRow = std::array<std::int32_t, 2 + kBandFields.size()>;
using BandValues = std::vector<BandRow>;

[[nodiscard]] BandValues ValuesOf(const BandTable& table);
// What a row is not there of is 0.
[[nodiscard]] BandTable TableOf(const BandValues& rows);

}  // namespace kestrel::python
