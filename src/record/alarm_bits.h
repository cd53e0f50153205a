// Where the alarm words of an axis hold the state of each band.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

inline constexpr int kAlarmBands = 6;  // numbered 1 to 6

// Flags in ALM_X_STAT, ALM_Y_STAT and ALM_Z_STAT.
[[nodiscard]] inline constexpr int WarningBit(int band) {  // alarm 1
  return 2 * band + 2;
}
[[nodiscard]] inline constexpr int FaultBit(int band) {  // alarm 2
  return 2 * band + 3;
}

}  // namespace kestrel
