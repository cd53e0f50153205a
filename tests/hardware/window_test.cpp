// The windows over libusb and a mock board.
// SPDX-License-Identifier: MIT
// The windows over libusb and a mock board.

#include "hardware/mock_usb_bus.h"  // before the toolkit, whose keywords it does not know

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <memory>

#include "connection/start.h"
#include "platform/linux/libusb_driver.h"
#include "record/frequency.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/reset_program.h"
#include "support/swift_clock.h"
#include "support/unused_hardware.h"
#include "ui/main/frm1.h"
#include "ui/main/start_windows.h"
#include "ui/parts/qt_event_loop.h"
#include "ui/parts/qt_seams.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kToneBin = 40;
constexpr double kToneG = 0.6;

class WindowOverUsb : public testing::Test {
 protected:
  WindowOverUsb() {
    ResetProgram();
    files_.contents[files_.WorkingFolder() / "CommPort.cfg"] =
        "Interface = 2\nPort Address = 888\nProductNumber = 31407\n";
    windows_ = std::make_unique<QtStartWindows>(core_, SimulatorControl{});
    Main(core_, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
  }
  ~WindowOverUsb() override {
    windows_.reset();
    ResetProgram();
  }

  QPushButton& Start() { return *Window().findChild<QPushButton*>("cmdStart"); }
  frm1& Window() { return windows_->MainWindow(); }

 private:
  SwiftClock clock_;
  SimulatedSensor sensor_{clock_, SingleTone(kToneBin* BinWidth(0), kToneG)};

 protected:
  MockUsbBus bus{sensor_};
  MockBoard& board{bus.Plug({})};
  RecordingMessages messages;

 private:
  LibusbDriver driver_;
  UnusedPort port_;
  UnusedDriverService service_;
  QtEventLoop loop_;
  QtMousePointer pointer_;
  MemoryFiles files_;
  FixedLocale locale_;
  Core core_{{clock_, loop_, pointer_, messages, files_, locale_, driver_, port_, service_}};
  std::unique_ptr<QtStartWindows> windows_;
};

TEST_F(WindowOverUsb, OneCaptureShowsTheVibrationAndThePulledCableOneMessage) {
  EXPECT_THAT(messages.Texts(), IsEmpty());
  Start().click();
  EXPECT_THAT(messages.Texts(), IsEmpty());
  EXPECT_EQ(Start().text(), "Start");
  EXPECT_NEAR(DataX(kToneBin), kToneG, 0.001 * kToneG);
  EXPECT_NEAR(Window().findChild<QLabel*>("LbLSupply")->text().toDouble(), 3.3, 0.01);

  const auto before = DataX;
  board.unplugAt = 400;
  Start().click();
  EXPECT_THAT(messages.Texts(), ElementsAre("Error Reading SPI"));
  EXPECT_EQ(Start().text(), "Start");
  EXPECT_EQ(DataX, before);
}

}  // namespace
}  // namespace kestrel
