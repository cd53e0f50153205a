// Every owner of program-wide names, asked to reset them.
// SPDX-License-Identifier: MIT
#include "acquisition/start_state.h"

#include "acquisition/window_delay.h"
#include "alarms/band_table.h"
#include "device/register_models.h"
#include "logging/data_log.h"

namespace kestrel {

void ResetProgramNames() {
  ResetDeviceNames();
  ResetAlarmBandTable();
  ResetDataLogState();
  ResetDelayActive();
}

}  // namespace kestrel
