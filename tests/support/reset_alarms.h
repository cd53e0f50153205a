// The program-wide names of the alarm bands' layer and of those below it.
// SPDX-License-Identifier: MIT
#pragma once

#include "alarms/band_table.h"
#include "support/reset_device.h"

namespace kestrel {

// The names of the alarm bands' layer and of those below back to their start values.
inline void ResetAlarms() {
  ResetDevice();
  ResetAlarmBandTable();
}

}  // namespace kestrel
