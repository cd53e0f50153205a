// What a record of the main window tells of its sensor, real or simulated.
// SPDX-License-Identifier: MIT
#include "station/sensor_road.h"

#include "ui/window_bench.h"

namespace kestrel {
namespace {

// The windows on a road of the program's own, with the bench's sensor as the system's device.
class WindowOnARoad : public WindowBench {
 protected:
  frm1& StartOnRoad() {
    windows_ = std::make_unique<QtStartWindows>(road_.core, ControlOf(road_));
    Main(road_.core, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
    ChooseShortCaptures();
    return Window();
  }
  ~WindowOnARoad() override { windows_.reset(); }

  SensorIdentity SensorOfACapture() {
    Press("cmdStart");
    EXPECT_TRUE(road_.core.record.Get().Taken());
    return road_.core.record.Get().sensor;
  }

  SensorRoad road_{{clock_,
                    loop_,
                    pointer_,
                    messages_,
                    files_,
                    locale_,
                    {&usb_, &hardware_.Port(), &hardware_.Service()}}};
};

TEST_F(WindowOnARoad, ARecordOfADeviceNamesInterfaceAndAdapter) {
  StartOnRoad();
  const SensorIdentity sensor = SensorOfACapture();
  EXPECT_FALSE(sensor.simulated);
  EXPECT_EQ(sensor.product, kProduct31407);
  EXPECT_EQ(sensor.interface, "Ezusb-0");
  EXPECT_EQ(sensor.adapter, SelectedAdapter.string2);
  EXPECT_FALSE(sensor.adapter.empty());
}

TEST_F(WindowOnARoad, ARecordOfTheSimulatedSensorSaysSo) {
  StartOnRoad();
  Trigger("mnuSimulated");
  const SensorIdentity sensor = SensorOfACapture();
  EXPECT_TRUE(sensor.simulated);
  EXPECT_EQ(sensor.interface, "Ezusb-0");
  EXPECT_FALSE(sensor.adapter.empty());
}

TEST_F(WindowOnARoad, ASimulatedSensorFromTheStartOnSaysSoToo) {
  road_.Simulate();
  StartOnRoad();
  EXPECT_TRUE(SensorOfACapture().simulated);
}

TEST_F(WindowOnARoad, TheMenuPullsTheSimulatedCableAndPutsItBack) {
  road_.Simulate();
  StartOnRoad();
  Trigger("mnuUnplug");
  EXPECT_FALSE(road_.core.seams.usb.Attached("Ezusb-0"));
  Trigger("mnuUnplug");
  EXPECT_TRUE(road_.core.seams.usb.Attached("Ezusb-0"));
}

}  // namespace
}  // namespace kestrel
