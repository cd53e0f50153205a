// The interface made ready: the port's driver, or the adapter's settings.
// SPDX-License-Identifier: MIT
#include "connection/init_interface.h"

#include "app/program_state.h"
#include "transport/port_driver.h"

namespace kestrel {

void SetStartDefaults() {
  ResetPortDriver();
  ResetAdapterSettings();
  ChooseInterface(kNoInterface);
}

void InitInterface(Core& core) {
  core.registers.Use(InterfaceType);
  if (InterfaceType == kParallelPort) {
    PreparePort(core.seams.driverService, core.seams.port, core.port, core.seams.messages);
  } else if (InterfaceType == kUsbAdapter) {
    core.usb.SelectUsbAdapter();
    if (UsbPresent) {
      core.usb.UsbSetSpiBits(UsbSpiBits);
      core.usb.UsbSetupSpi(UsbSpiSetupValue);
    } else {
      core.registers.Use(kNoInterface);
    }
  } else {
    core.registers.Use(kNoInterface);
    core.seams.messages.Show("Please select an interface before taking data");
  }
}

}  // namespace kestrel
