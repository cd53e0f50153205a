// The fields of ALM_X_STAT, ALM_Y_STAT and ALM_Z_STAT.
// SPDX-License-Identifier: MIT
#pragma once

#include "device/field.h"
#include "record/alarm_bits.h"

namespace kestrel {

// Layout of ALM_X_STAT, ALM_Y_STAT and ALM_Z_STAT: the number of a band, and above it two flags for
// each band, 1 to 6.
inline constexpr Field kAlarmBandNumber{0, 0x0007};

}  // namespace kestrel
