// The start of the program, and the interface made ready.
// SPDX-License-Identifier: MIT
#include "connection/start.h"

#include "app/config_file.h"
#include "app/plot_scale.h"
#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "numeric/runtime_error.h"
#include "regmap/register_table.h"
#include "transport/port_driver.h"

namespace kestrel {
namespace {

constexpr const char* kLoadingText =
    "\r\n"
    "  LOADING..."
    "\r\n"
    "\r\n"
    "  Setting up Delay function"
    "\r\n"
    "\r\n"
    "  3 second trial delay.";

// The loading window must be painted before the trials block the program.
void MeasureDelay(Core& core, StartWindows& windows, bool quickStart) {
  DelayCalibrated = false;
  if (quickStart) {
    core.delay.SkipCalibration();
    return;
  }
  windows.ShowLoading(std::string(kApplicationTitle) + "  ", kLoadingText);
  core.seams.loop.Yield();
  try {
    core.delay.CalibrateDelay();
  } catch (const RuntimeError& error) {
    // A timer that stands still; the waits follow another clock, so the program can go on.
    core.seams.messages.Show(std::string("CalibrateDelay\n") + error.what());
  }
}

}  // namespace

void Main(Core& core, StartWindows& windows, const StartOptions& options) {
  SetColours();
  MeasureDelay(core, windows, options.quickStart);
  SetStartDefaults();
  if (!ReadConfigFile(core.seams.files, core.seams.messages)) {
    InterfaceType = options.interfaceWithoutConfig;
  }
  InitInterface(core);
  InitRegisterTable(core.registers);
  windows.SetLoadingText(" ");
  windows.HideLoading();
  PlotScale = 1.0;
  windows.ShowMainWindow();
}

void InitInterface(Core& core) {
  if (InterfaceType == kParallelPort) {
    PreparePort(core.seams.driverService, core.seams.port, core.port, core.seams.messages);
  } else if (InterfaceType == kUsbAdapter) {
    core.usb.SelectUsbAdapter();
    if (UsbPresent) {
      core.usb.UsbSetSpiBits(UsbSpiBits);
      core.usb.UsbSetupSpi(UsbSpiSetupValue);
    } else {
      InterfaceType = kNoInterface;
    }
  } else {
    InterfaceType = kNoInterface;
    core.seams.messages.Show("Please select an interface before taking data");
  }
}

void InitRegisterTable(RegisterAccess& registers) {
  gAlmCtrl = std::make_unique<cALMCtrl>(registers);
  gRecCtrl = std::make_unique<cRecCtrl>(registers);
  gRecInfo = std::make_unique<cRecInfo>(registers);
  BuildRegisterTable();
}

}  // namespace kestrel
