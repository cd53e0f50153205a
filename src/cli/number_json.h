// Peaks and levels of a record as JSON for scripts.
// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "cli/number_report.h"

namespace kestrel {

// What the numbers are: quantity, unit, window, where they hold, notices.
[[nodiscard]] nlohmann::ordered_json NumbersHeadJson(const NumberReport& report);

// Adds "peaks", "levels" and "refusal" of one axis, as far as they were asked for. What is refused
// is null, with the refusal's text beside it.
void AddNumbers(nlohmann::ordered_json& axis, const NumberReport& report, Axis which);

}  // namespace kestrel
