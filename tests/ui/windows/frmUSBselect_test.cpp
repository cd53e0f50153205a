// The window in which an adapter is selected.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmUSBselect.h"
#include "support/given.h"

#include <QSignalSpy>

#include "app/system_name.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class FrmUsbSelect : public WindowBench {
 protected:
  FrmUsbSelect() { Start(); }

  frmUSBselect& Open() {
    if (window_ == nullptr) window_ = new frmUSBselect(core_, Window().Edge(), &Window());
    window_->ShowInFront();
    return *window_;
  }
  QRadioButton& Option(int index) {
    return Find<QRadioButton>(QString("optUsbPort_%1").arg(index).toLatin1());
  }
  std::string Config() { return files_.contents[files_.WorkingFolder() / "CommPort.cfg"]; }

  frmUSBselect* window_ = nullptr;
};

TEST_F(FrmUsbSelect, OpeningSearchesAndShowsEachBoard) {
  hardware_.Adapter().SetBoard(2, {.product = 0xEF00, .firmwareMajor = 3, .firmwareMinor = 0});
  Open();
  EXPECT_EQ(Text("lblFinding"), "2 adapters found.");
  EXPECT_EQ(Text("lblBoardType_0"), "FIFO4");
  EXPECT_EQ(Text("lblBoardType_2"), "MCP");
  EXPECT_EQ(Text("lblFirmware_2"), "3.0");
  EXPECT_EQ(Text("lblString1_0"), QString::fromStdString(AdapterRecords[0].string1));
  EXPECT_EQ(Text("lblString2_0"), QString::fromStdString(AdapterRecords[0].string2));
  EXPECT_EQ(Text("lblUsbVersion_0"), QString::fromStdString(AdapterRecords[0].usbVersion));
  EXPECT_EQ(Text("lblBoardType_1"), "-");
  EXPECT_TRUE(Option(0).isChecked());
  EXPECT_TRUE(Option(2).isEnabled());
  EXPECT_FALSE(Option(1).isEnabled());
}

TEST_F(FrmUsbSelect, ChoosingABoardMakesItTheInterface) {
  hardware_.Adapter().SetBoard(2, {});
  core_.registers.Use(kParallelPort);
  const QSignalSpy chosen(&Open(), &frmUSBselect::InterfaceChosen);
  Option(2).click();
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-2");
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_TRUE(Option(2).isChecked());
  EXPECT_FALSE(Option(0).isChecked());
  EXPECT_EQ(chosen.count(), 1);
  EXPECT_EQ(Config(), "Interface = 2\nPort Address = 888\nProductNumber = 31407\n");
  EXPECT_TRUE(Text("lblInterface").startsWith("USB adapter Ezusb-2"));
}

TEST_F(FrmUsbSelect, TheKeyboardChoosesToo) {
  hardware_.Adapter().SetBoard(1, {});
  ASSERT_TRUE(QTest::qWaitForWindowActive(&Open()));
  Option(0).setFocus();
  QTest::keyClick(&Option(0), Qt::Key_Down);
  EXPECT_EQ(SelectedAdapterNumber, 1);
}

TEST_F(FrmUsbSelect, ABoardThatRefusesItsSettingsIsNotShownAsChosen) {
  hardware_.Adapter().SetBoard(2, {});
  const QSignalSpy chosen(&Open(), &frmUSBselect::InterfaceChosen);
  usb_.FailFrom(1);
  Option(2).click();
  EXPECT_EQ(messages_.Texts(), Words{"Error Setting up SPI"});
  EXPECT_FALSE(Option(2).isChecked());
  EXPECT_EQ(chosen.count(), 0);
}

TEST_F(FrmUsbSelect, WithoutABoardItSaysWhy) {
  hardware_.Adapter().RemoveBoard(0);
  Open();
  EXPECT_EQ(Text("lblFinding"), "No adapter is attached. Plug the board in, then try again.");
  EXPECT_FALSE(Option(0).isEnabled());
  EXPECT_FALSE(Option(0).isChecked()) << "the board in use is gone";
  EXPECT_FALSE(UsbPresent);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmUsbSelect, AfterRepluggingTheBoardIsFoundAndChosenWithoutARestart) {
  hardware_.Adapter().Unplug(0);
  Open();
  EXPECT_FALSE(UsbPresent);
  hardware_.Adapter().Replug(0);
  Press("cmdFindEzUsb");
  EXPECT_EQ(Text("lblFinding"), "1 adapter found.");
  EXPECT_FALSE(UsbPresent) << "the user chooses";
  Option(0).click();
  EXPECT_TRUE(UsbPresent);
  ChooseShortCaptures();
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmUsbSelect, WhileACaptureIsWaitedForNeitherSearchNorChoiceDisturbsIt) {
  hardware_.Adapter().SetBoard(2, {});
  Open();
  Choose("cbxFFTAvgs", 10);
  int requests = -1;
  During(60, [&] {
    usb_.FailFrom(0);
    Press("cmdFindEzUsb");
    Option(2).click();
    requests = usb_.Requests();
  });
  Press("cmdStart");
  EXPECT_EQ(requests, 0);
  EXPECT_EQ(SelectedAdapterNumber, 0);
  EXPECT_TRUE(Option(0).isChecked());
  EXPECT_EQ(Text("lblRecCount"), "1");
}

TEST_F(FrmUsbSelect, TheOldestSystemHasNoUsb) {
  Given(SystemName) = "Win95";
  usb_.FailFrom(0);
  Open();
  EXPECT_EQ(messages_.Texts(), Words{"USB not available for Windows95"});
  EXPECT_EQ(usb_.Requests(), 0);
}

TEST_F(FrmUsbSelect, TheDebugWindowOpensOnceAndPassesItsChoiceOn) {
  hardware_.Adapter().SetBoard(1, {});
  const QSignalSpy chosen(&Open(), &frmUSBselect::InterfaceChosen);
  Press("cmdDebugUsb");
  Press("cmdDebugUsb");
  EXPECT_EQ(Window().findChildren<frmUSBdebug*>().size(), 1);
  auto& debug = Find<frmUSBdebug>("frmUSBdebug");
  EXPECT_TRUE(debug.isVisible());
  debug.findChild<QRadioButton*>("optUsbPort_1")->click();
  EXPECT_EQ(SelectedAdapterNumber, 1);
  EXPECT_EQ(chosen.count(), 1);
}

TEST_F(FrmUsbSelect, ExitClosesIt) {
  Open();
  Press("cmdExit");
  EXPECT_FALSE(window_->isVisible());
  EXPECT_TRUE(UsbPresent);
}

}  // namespace
}  // namespace kestrel
