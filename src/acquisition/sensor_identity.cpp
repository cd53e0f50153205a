// The sensor's identity out of the state of product and interface.
// SPDX-License-Identifier: MIT
#include "acquisition/sensor_identity.h"

#include "app/program_state.h"
#include "numeric/number_format.h"
#include "transport/usb_adapter.h"

namespace kestrel {

SensorIdentity PresentSensor(const Core& core) {
  SensorIdentity sensor{
      .product = ProductNumber, .interface = {}, .adapter = {}, .simulated = core.simulated};
  if (InterfaceType == kParallelPort) sensor.interface = "parallel port " + Hex(PortAddress);
  if (InterfaceType == kUsbAdapter) {
    sensor.interface = SelectedAdapter.deviceName;
    sensor.adapter = SelectedAdapter.string2;
  }
  return sensor;
}

}  // namespace kestrel
