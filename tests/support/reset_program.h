// Every program-wide name back to its start value.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/start_state.h"
// The owners of the names, for the tests that look at them.
#include "acquisition/window_delay.h"
#include "alarms/band_table.h"
#include "app/delay.h"
#include "app/plot_scale.h"
#include "app/program_state.h"
#include "app/system_name.h"
#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "logging/data_log.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"
#include "transport/port_driver.h"
#include "transport/register_access.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// Every program-wide name back to its start value, that of the system included.
inline void ResetProgram() {
  ResetProgramNames();
  ResetSystemName();
}

}  // namespace kestrel
