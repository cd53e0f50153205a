// Counts, bands and remarks of a workbench as a reader sees them.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "baseline/workbench.h"

namespace kestrel::baseline {

[[nodiscard]] std::string BoundsText(const Count& count);  // "1.2 to 8.6", in %
// "5 of 132, 3.8 % (1.2 to 8.6 %)"; "none of 0".
[[nodiscard]] std::string CountText(const Count& count);

[[nodiscard]] std::string BinsText(const Band& band);                    // "3 to 7"
[[nodiscard]] std::string HertzRangeText(const Band& band, int option);  // "587 to 1,370"

// Whether a band begins below the first bin that holds vibration.
[[nodiscard]] bool ReachesOffset(const Band& band, int window);

// What has to be known of single cells: why nothing is proposed, what was moved, what never alarms.
[[nodiscard]] std::vector<std::string> RemarksOn(const Workbench& bench);

}  // namespace kestrel::baseline
