// The fields of ALM_X_STAT, ALM_Y_STAT and ALM_Z_STAT.
// SPDX-License-Identifier: MIT
#pragma once

#include "device/field.h"

namespace kestrel {

// Layout of ALM_X_STAT, ALM_Y_STAT and ALM_Z_STAT: the number of a band, and above it two flags for
// each band, 1 to 6.
inline constexpr Field kAlarmBandNumber{0, 0x0007};
[[nodiscard]] inline constexpr int WarningBit(int band) {  // alarm 1
  return 2 * band + 2;
}
[[nodiscard]] inline constexpr int FaultBit(int band) {  // alarm 2
  return 2 * band + 3;
}

}  // namespace kestrel
