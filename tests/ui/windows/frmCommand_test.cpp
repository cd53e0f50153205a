// The window of global commands over the simulated sensor.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmCommand.h"

#include <QEvent>
#include <span>

#include "regmap/register_table.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

constexpr int kRequestsPerWrite = 3;  // open, send, receive

class FrmCommand : public WindowBench {
 protected:
  frmCommand& OpenCommands() {
    Start();
    Trigger("mnuCommand");
    return Find<frmCommand>("frmCommand");
  }
};

// Notes what happens to a label, each time with the number of requests to the adapter by then.
class LabelWatch : public QObject {
 public:
  LabelWatch(QLabel& label, const FailingUsbDriver& usb) : usb_(usb) {
    label.installEventFilter(this);
  }

  Words events;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    const std::string requests = " after " + std::to_string(usb_.Requests());
    if (event->type() == QEvent::Show) events.push_back("shown" + requests);
    if (event->type() == QEvent::Paint) events.push_back("painted" + requests);
    if (event->type() == QEvent::Hide) events.push_back("hidden" + requests);
    return false;
  }

 private:
  const FailingUsbDriver& usb_;
};

TEST_F(FrmCommand, ListsTheSixteenFunctionsInTheOrderOfTheirBits) {
  OpenCommands();
  const QComboBox& list = Find<QComboBox>("cbxCommand");
  EXPECT_EQ(
      Items(list),
      (Words{"0   Autonull", "1   Power-down", "2   Self-test",
             "3   Reset to factory configuration", "4   Clear status register", "5   Flash test",
             "6   Flash Update/Save settings", "7   Software reset", "8   Clear Records",
             "9   Clear spectral alarm bands", "10  Reset buffer pointer", "11  Record start/stop",
             "12  Save spectral alarm band", "13  Retrieve record from Flash",
             "14  Retrieve spectral alarm band", "15  Clear null values"}));
}

TEST_F(FrmCommand, BeginsWithATextThatIsNoItem) {
  OpenCommands();
  const QComboBox& list = Find<QComboBox>("cbxCommand");
  EXPECT_EQ(list.currentIndex(), -1);
  EXPECT_EQ(list.placeholderText(), "Select a Function");
  EXPECT_EQ(list.findText("Select a Function"), -1);
  EXPECT_TRUE(Find<QLabel>("LbLBusy").isHidden());
}

TEST_F(FrmCommand, WritingBeforeAFunctionIsChosenSendsNothing) {
  OpenCommands();
  usb_.FailFrom(0);
  Press("cmdWrite");
  EXPECT_EQ(messages_.Texts(), Words{"Error: Index must be between 0 and 15   idx = -1"});
  EXPECT_EQ(usb_.Requests(), 0);
  EXPECT_TRUE(Find<QLabel>("LbLBusy").isHidden());
}

TEST_F(FrmCommand, TheChosenFunctionReachesTheSensor) {
  OpenCommands();
  core_.registers.WriteReg(row::BUF_PNTR, 77);
  Choose("cbxCommand", 10);
  Press("cmdWrite");
  core_.registers.ReadReg(row::BUF_PNTR);
  EXPECT_EQ(RegValue, 0);
  core_.registers.WriteReg(row::FFT_AVG, 77);
  Choose("cbxCommand", 7);
  Press("cmdWrite");
  core_.registers.ReadReg(row::FFT_AVG);
  EXPECT_EQ(RegValue, 8) << "a restarted sensor has its own settings";
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmCommand, TheBusyLabelIsOnTheScreenFromBeforeTheWriteToTheEndOfTheWait) {
  OpenCommands();
  QApplication::processEvents();
  LabelWatch watch(Find<QLabel>("LbLBusy"), usb_);
  usb_.FailFrom(0);
  Choose("cbxCommand", 4);
  Press("cmdWrite");
  EXPECT_EQ(watch.events, (Words{"shown after 0", "painted after 0",
                                 "hidden after " + std::to_string(kRequestsPerWrite)}));
}

TEST_F(FrmCommand, ALostSensorGivesOneMessageAndShowsInTheMainWindow) {
  OpenCommands();
  Choose("cbxCommand", 4);
  usb_.FailFrom(1);
  Press("cmdWrite");
  EXPECT_EQ(messages_.Texts(), Words{"Error Writing SPI"});
  EXPECT_TRUE(Find<QLabel>("LbLBusy").isHidden());
  EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
}

TEST_F(FrmCommand, ItsDirectProceduresAreThereForOtherWindows) {
  frmCommand& window = OpenCommands();
  using Procedure = void (frmCommand::*)();
  struct Case {
    Procedure procedure;
    int word;
  };
  std::vector<int> commands;
  usb_.OnBlock([&](std::span<const std::uint8_t> block) {
    if (block[0] != 13) return;
    for (std::size_t i = 3; i + 1 < block.size(); i += 2) {
      if (block[i] == 0xBE || block[i] == 0xBF) commands.push_back(block[i] * 256 + block[i + 1]);
    }
  });
  for (const Case& direct :
       {Case{&frmCommand::CmdAutonull, 0xBE01}, Case{&frmCommand::CmdPowerDown, 0xBE02},
        Case{&frmCommand::CmdSelfTest, 0xBE04}, Case{&frmCommand::CmdFactoryReset, 0xBE08},
        Case{&frmCommand::CmdFlashTest, 0xBE20}, Case{&frmCommand::CmdSoftwareReset, 0xBE80},
        Case{&frmCommand::CmdClearRecords, 0xBF01}, Case{&frmCommand::CmdRecordStartStop, 0xBF08},
        Case{&frmCommand::CmdSaveAlarmBand, 0xBF10},
        Case{&frmCommand::CmdRetrieveRecord, 0xBF20}}) {
    commands.clear();
    (window.*direct.procedure)();
    EXPECT_EQ(commands, std::vector<int>{direct.word});
    EXPECT_TRUE(Find<QLabel>("LbLBusy").isHidden());
  }
  commands.clear();
  window.ShowBusy(51);
  EXPECT_TRUE(commands.empty());
}

TEST_F(FrmCommand, NoFunctionIsSentWhileACaptureIsAwaitedAndTheWindowSaysSo) {
  OpenCommands();
  ChooseShortCaptures();
  Choose("cbxCommand", 3);
  QString note;
  DuringCapture([&] {
    Press("cmdWrite");
    note = Find<QDialog>("frmCommand").findChild<QLabel*>("lblNote")->text();
  });
  Press("cmdStart");
  EXPECT_EQ(
      note,
      "Not done: the sensor is busy with a capture. Try again when it is complete, or stop it.");
  EXPECT_EQ(Text("lblRecCount"), "1") << "the capture was not disturbed";
}

TEST_F(FrmCommand, ThereIsOneWindowAndItKeepsTheChoice) {
  frmCommand& window = OpenCommands();
  EXPECT_TRUE(window.isVisible());
  Choose("cbxCommand", 5);
  window.findChild<QPushButton*>("cmdClose")->click();
  EXPECT_FALSE(window.isVisible());
  Trigger("mnuCommand");
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(Window().findChildren<frmCommand*>("frmCommand").size(), 1);
  EXPECT_EQ(Find<QComboBox>("cbxCommand").currentIndex(), 5);
}

TEST_F(FrmCommand, TheListIsReachedByItsMnemonicAndTheKeyboardAlone) {
  frmCommand& window = OpenCommands();
  QComboBox& list = Find<QComboBox>("cbxCommand");
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(list.currentIndex(), 0);
  bool buddy = false;
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    buddy = buddy || label->buddy() == &list;
  }
  EXPECT_TRUE(buddy);
}

}  // namespace
}  // namespace kestrel
