// The windows over libusb and a mock board, and over mock parallel ports.
// SPDX-License-Identifier: MIT

#include "hardware/mock_usb_bus.h"  // before the toolkit, whose keywords it does not know

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <memory>

#include "hardware/mock_parallel_port.h"
#include "platform/libusb/libusb_driver.h"
#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "record/frequency.h"
#include "start/start.h"
#include "support/absent_hardware.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/parport_settings.h"
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

TEST_F(WindowOverUsb, APulledCableIsToldByTheSystemAndNobodyLooksForIt) {
  const auto& watcher = *Window().findChild<AdapterWatcher*>();
  EXPECT_FALSE(watcher.Polls());
  Window().show();
  const auto* notice = Window().findChild<QWidget*>("lostNotice");
  ASSERT_NE(notice, nullptr);
  EXPECT_TRUE(notice->isHidden());
  bus.Unplug(board);
  for (const QDeadlineTimer end(3000); notice->isHidden() && !end.hasExpired();) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  }
  EXPECT_FALSE(notice->isHidden());
  EXPECT_FALSE(UsbPresent);
  EXPECT_THAT(messages.Texts(), IsEmpty());
}

class WindowOverPort : public testing::Test {
 protected:
  WindowOverPort() {
    ResetProgram();
    settings_.Add(0, 0x378);
    settings_.Add(1, 0x278);
    files_.contents[files_.WorkingFolder() / "CommPort.cfg"] =
        "Interface = 1\nPort Address = 956\nProductNumber = 31407\n";
    windows_ = std::make_unique<QtStartWindows>(core_, SimulatorControl{});
    Main(core_, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
  }
  ~WindowOverPort() override {
    windows_.reset();
    ResetProgram();
  }

  frm1& Window() { return windows_->MainWindow(); }
  QPushButton& Start() { return *Window().findChild<QPushButton*>("cmdStart"); }

  // As the user does in the window of the port's address.
  void ChooseAddress(const char* address) {
    messages.Clear();
    Window().findChild<QAction*>("mnuParallel")->trigger();
    auto* frmPort = Window().findChild<QWidget*>("frmPort");
    ASSERT_NE(frmPort, nullptr);
    frmPort->findChild<QLineEdit*>("txtUser")->setText(address);
    frmPort->findChild<QPushButton*>("cmdOK")->click();
  }
  void ExpectACapture() {
    messages.Clear();
    Start().click();
    EXPECT_THAT(messages.Texts(), IsEmpty());
    EXPECT_NEAR(DataX(kToneBin), kToneG, 0.001 * kToneG);
  }

 private:
  SwiftClock clock_;
  SimulatedSensor sensor_{clock_, SingleTone(kToneBin* BinWidth(0), kToneG)};
  MockTestbed testbed_;
  ParportSettings settings_;

 protected:
  MockParallelPort first{testbed_, 0, sensor_};
  MockParallelPort second{testbed_, 1, sensor_};
  RecordingMessages messages;

 private:
  PpdevPort port_{[] { return PortAddress; },
                  {.folders = {.devices = "/dev", .settings = settings_.Folder()}}};
  PpdevService service_{port_};
  AbsentUsbDriver usb_;
  QtEventLoop loop_;
  QtMousePointer pointer_;
  MemoryFiles files_;
  FixedLocale locale_;
  Core core_{{clock_, loop_, pointer_, messages, files_, locale_, usb_, port_, service_}};
  std::unique_ptr<QtStartWindows> windows_;
};

TEST_F(WindowOverPort, AWrongAddressIsToldAtTheStartAtEveryPressAndInItsWindowUntilItIsRight) {
  const auto told = ElementsAre("The required I/O drivers could not be installed.");
  EXPECT_THAT(messages.Texts(), told);
  messages.Clear();
  Start().click();
  EXPECT_THAT(messages.Texts(), told);
  EXPECT_EQ(Start().text(), "Start");
  ChooseAddress("3BC");
  EXPECT_THAT(messages.Texts(), told);
  ChooseAddress("378");
  EXPECT_THAT(messages.Texts(), IsEmpty());
  EXPECT_TRUE(first.Claimed());
  ExpectACapture();
}

TEST_F(WindowOverPort, TheOtherPortIsTakenAndTheFirstIsLetGo) {
  ChooseAddress("378");
  ASSERT_TRUE(first.Claimed());
  ChooseAddress("278");
  EXPECT_FALSE(first.Claimed());
  EXPECT_TRUE(second.Claimed());
  const std::size_t before = first.trace.size();
  ExpectACapture();
  EXPECT_EQ(first.trace.size(), before);
}

TEST_F(WindowOverPort, ABusyPortIsTakenOnceItIsFree) {
  first.claimError = EBUSY;
  ChooseAddress("378");
  EXPECT_THAT(messages.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_NE(messages.explanations.back().find("is in use"), std::string::npos);
  first.claimError = 0;
  ExpectACapture();
}

}  // namespace
}  // namespace kestrel
