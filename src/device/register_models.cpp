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
#include "transport/usb_adapter.h"

namespace kestrel {

void InitRegisterTable(RegisterAccess& registers) {
  gAlmCtrl = std::make_unique<cALMCtrl>(registers);
  gRecCtrl = std::make_unique<cRecCtrl>(registers);
  gRecInfo = std::make_unique<cRecInfo>(registers);
  BuildRegisterTable();
}

void ResetDeviceNames() {
  gRecInfo.reset();
  gRecCtrl.reset();
  gAlmCtrl.reset();
  ResetProgramState();
  ResetDelayState();
  ResetAdapterState();
  ResetRegisterAccessState();
  ResetRegisterTable();
  ResetCaptureData();
  PlotScale = 0;
}

}  // namespace kestrel
