// The windows as the menus open them, over the simulated sensor.
// SPDX-License-Identifier: MIT
#include "regmap/register_table.h"
#include "ui/window_bench.h"
#include "ui/windows/frmALM_CTRL.h"
#include "ui/windows/frmCalibration.h"
#include "ui/windows/frmDIOGPIO.h"

namespace kestrel {
namespace {

// The windows as the menus open them, over the simulated sensor.
class SensorWindows : public WindowBench {
 protected:
  template <typename Window>
  Window& Open(const char* item, const char* name) {
    Trigger(item);
    QApplication::processEvents();
    return Find<Window>(name);
  }
  std::int32_t InSensor(std::int16_t row) {
    core_.registers.ReadReg(row);
    return RegValue;
  }
  static void Click(QWidget& window, const char* button) {
    window.findChild<QAbstractButton*>(button)->click();
  }
};

TEST_F(SensorWindows, AlarmControlReachesTheSensor) {
  Start();
  core_.registers.WriteReg(row::ALM_CTRL, 0x0580);
  auto& window = Open<frmALM_CTRL>("mnuAlarmCtrl", "frmALM_CTRL");
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(Text("lblHexWord"), "580");
  Click(window, "ckZenable");
  EXPECT_EQ(InSensor(row::ALM_CTRL), 0x0584);
}

TEST_F(SensorWindows, DigitalLinesReachTheSensor) {
  Start();
  auto& window = Open<frmDIOGPIO>("mnuDIOGPIO", "frmDIOGPIO");
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(Text("lblDioWord"), "F") << "what the sensor begins with";
  Click(window, "OpFuncAlarm2");
  EXPECT_EQ(InSensor(row::DIO_CTRL), 0x001F);
  Click(window, "opFuncGPIO1");
  Click(window, "opGOutput1");
  EXPECT_EQ(InSensor(row::GPIO_CTRL), 0x0001);
}

TEST_F(SensorWindows, CalibrationReachesTheSensor) {
  Start();
  auto& window = Open<frmCalibration>("MnuCal", "frmCalibration");
  EXPECT_TRUE(window.isVisible());
  Find<QLineEdit>("txtAUX0null").setText("-0.5");
  Click(window, "cmdWriteAUX0");
  EXPECT_EQ(InSensor(row::Y_NULL), -105);
  EXPECT_EQ(Text("lblAUX0nullReg"), "FF97");
}

TEST_F(SensorWindows, AutonullIsDoneWhenTheRowsAreReadBack) {
  Start();
  for (const std::int16_t row : {row::X_NULL, row::Y_NULL, row::Z_NULL}) {
    core_.registers.WriteReg(row, 0x1000);
  }
  auto& window = Open<frmCalibration>("MnuCal", "frmCalibration");
  EXPECT_EQ(Text("lblXnullReg"), "1000");
  Click(window, "cmdAutoNull");
  for (const char* label : {"lblXnullReg", "lblAUX0nullReg", "lblAUX1nullReg"}) {
    EXPECT_NE(Text(label), "1000") << label;
  }
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr) << "the hourglass is gone";
}

TEST_F(SensorWindows, NoCommandIsSentWhileACaptureIsAwaited) {
  Start();
  ChooseShortCaptures();
  auto& window = Open<frmCalibration>("MnuCal", "frmCalibration");
  const QString before = Text("lblXnullReg");
  bool tried = false;
  DuringCapture([&] {
    tried = true;
    EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Stop");
    Click(window, "cmdAutoNull");
    EXPECT_FALSE(window.findChild<QLabel*>("lblNote")->text().isEmpty());
  });
  Press("cmdStart");
  EXPECT_TRUE(tried);
  EXPECT_EQ(Text("lblXnullReg"), before);
  EXPECT_EQ(Text("lblRecCount"), "1") << "the capture was not disturbed";
}

TEST_F(SensorWindows, TheMainWindowShowsALossThatAnEditFinds) {
  Start();
  auto& window = Open<frmALM_CTRL>("mnuAlarmCtrl", "frmALM_CTRL");
  usb_.FailFrom(1);
  Click(window, "ckXenable");
  EXPECT_EQ(messages_.Texts(), std::vector<std::string>{"Error Writing SPI"});
  EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
  EXPECT_FALSE(Find<QCheckBox>("ckXenable").isChecked());
}

}  // namespace
}  // namespace kestrel
