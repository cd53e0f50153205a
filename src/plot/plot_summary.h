// A record in words.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "record/record.h"

namespace kestrel {

// A record in words, for whoever cannot see the plot: its kind and, for each axis shown,
// where a spectrum is highest or how far a time record reaches.
// "Spectrum, bins 0 to 255. X: highest 0.512 g at bin 85, 16,633 Hz. ..."
[[nodiscard]] std::string PlotSummary(const Record& record, const std::array<bool, 3>& shown);

}  // namespace kestrel
