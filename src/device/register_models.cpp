// The models of the registers and the register table, made and gone.
// SPDX-License-Identifier: MIT
#include "device/register_models.h"

#include <memory>

#include "app/delay.h"
#include "app/plot_scale.h"
#include "app/program_state.h"
#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"
#include "transport/port_driver.h"
#include "transport/usb_adapter.h"

namespace kestrel {

void InitRegisterTable(RegisterAccess& registers) {
  MakeAlmCtrl(registers);
  MakeRecCtrl(registers);
  MakeRecInfo(registers);
  BuildRegisterTable();
}

void ResetDeviceNames() {
  DropRecInfo();
  DropRecCtrl();
  DropAlmCtrl();
  ResetProgramState();
  ResetDelayState();
  ResetPortDriver();
  ResetAdapterState();
  ResetRegisterAccessState();
  ResetRegisterTable();
  ResetCaptureData();
  TakePlotScale(0);
}

}  // namespace kestrel
