// Every owner of program-wide names, asked to reset them.
// SPDX-License-Identifier: MIT
#include "station/start_state.h"

#include "acquisition/window_delay.h"
#include "alarms/band_table.h"
#include "app/delay.h"
#include "app/plot_scale.h"
#include "app/program_state.h"
#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "logging/data_log.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"
#include "transport/register_access.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// The name of the system stays: it is what the program runs on.
void ResetProgramNames() {
  gRecInfo.reset();
  gRecCtrl.reset();
  gAlmCtrl.reset();
  ResetProgramState();
  ResetDelayState();
  ResetAdapterState();
  ResetRegisterAccessState();
  ResetRegisterTable();
  ResetCaptureData();
  ResetDataLogState();
  ResetAlarmBandTable();
  PlotScale = 0;
  DelayActive = 0;
}

}  // namespace kestrel
