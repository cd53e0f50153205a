// The adapter debug window.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmUSBdebug.h"
#include "support/given.h"

#include <QSignalSpy>
#include <set>

#include "regmap/register_table.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class FrmUsbDebug : public WindowBench {
 protected:
  FrmUsbDebug() {
    Start();
    window_ = new frmUSBdebug(core_, Window().Edge(), &Window());
    window_->ShowInFront();
    Find<QLineEdit>("txtLoopWait").setText("1");
  }

  void Type(int number, const char* text) {
    Find<QLineEdit>(QString("txtTx_%1").arg(number).toLatin1()).setText(text);
  }
  QString Answer(int number) { return BoxText(QString("txtRx_%1").arg(number).toLatin1()); }
  QString LoopCaption() { return Find<QPushButton>("cmdLoop").text(); }
  std::int64_t Transfers() { return Text("lblCounts").section(' ', 1, 1).toLongLong(); }

  // Starts the loop with a harmless read and lets it run for some transfers.
  void RunLoop(std::int64_t transfers = 5) {
    Type(1, "1C00");
    const std::int64_t before = Transfers();
    Press("cmdLoop");
    ASSERT_TRUE(QTest::qWaitFor([&] { return Transfers() >= before + transfers; }));
    ASSERT_EQ(LoopCaption(), "Stop");
  }

  // Whether the loop is at rest: nothing goes out although the event loop runs.
  void ExpectStopped() {
    EXPECT_EQ(LoopCaption(), "Loop");
    EXPECT_TRUE(StopSpiLoop);
    const std::int64_t transfers = Transfers();
    QTest::qWait(30);
    EXPECT_EQ(Transfers(), transfers);
    EXPECT_EQ(hardware_.Adapter().OpenHandles(), 0U);
  }

  frmUSBdebug* window_;
};

TEST_F(FrmUsbDebug, FramesGoOutAndTheirAnswersShowBeside) {
  core_.registers.WriteReg(row::FFT_AVG, 0x23);
  Type(1, "0E00");
  Type(2, "0e00");
  Press("cmdWriteSpi");
  EXPECT_EQ(Answer(2), "0023");
  EXPECT_EQ(Answer(3), "");
  EXPECT_EQ(Text("lblCounts"), "Transfers: 1   Errors: 0");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmUsbDebug, ThereAreSixteenFrames) {
  for (int i = 1; i <= 16; ++i) Type(i, "0E00");
  Press("cmdWriteSpi");
  EXPECT_EQ(SpiWordCount, 16);
  EXPECT_EQ(Answer(16).size(), 4);
}

TEST_F(FrmUsbDebug, AFaultyFrameIsNamedAndGetsTheFocus) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  Type(1, "0E00");
  Type(2, "zz");
  usb_.FailFrom(0);
  Press("cmdWriteSpi");
  EXPECT_EQ(messages_.Texts(),
            Words{"Frame 2: \"zz\" is not a hexadecimal number.\nNothing was sent."});
  EXPECT_EQ(usb_.Requests(), 0);
  EXPECT_TRUE(Find<QLineEdit>("txtTx_2").hasFocus());
  EXPECT_EQ(Find<QLineEdit>("txtTx_2").selectedText(), "zz");
}

TEST_F(FrmUsbDebug, WithoutAnAdapterEveryActionSaysSo) {
  Given(UsbPresent) = false;
  Type(1, "0E00");
  for (const char* button : {"cmdReadBits", "cmdReadDelay", "cmdWriteSpi", "cmdLoop"}) {
    messages_.Clear();
    Press(button);
    EXPECT_EQ(messages_.Texts(), Words{"Please Select a Buffer first"}) << button;
  }
  messages_.Clear();
  QTest::keyClick(&Find<QLineEdit>("txtLoopDelay"), Qt::Key_Return);
  EXPECT_EQ(messages_.Texts(), Words{"Please Select a Buffer first"});
  EXPECT_EQ(LoopCaption(), "Loop");
}

TEST_F(FrmUsbDebug, SettingsOfTheBoardAreReadAndSet) {
  auto& box = Find<QLineEdit>("txtLoopDelay");
  EXPECT_EQ(box.text(), "25");
  box.clear();
  QTest::keyClicks(&box, "40");
  QTest::keyClick(&box, Qt::Key_Return);
  EXPECT_EQ(UsbSpiSetupValue, 40);
  EXPECT_EQ(Transfers(), 0) << "Enter did not press the default button";
  Press("cmdReadBits");
  Press("cmdReadDelay");
  EXPECT_EQ(BoxText("txtBits"), "78 28 hex  (120, 40)");
  EXPECT_EQ(BoxText("txtDelay"), "78 28 hex  (120, 40)");
}

TEST_F(FrmUsbDebug, EnterInAFrameSendsTheFrames) {
  Type(1, "0E00");
  QTest::keyClick(&Find<QLineEdit>("txtTx_1"), Qt::Key_Return);
  EXPECT_EQ(Transfers(), 1);
}

TEST_F(FrmUsbDebug, PolarityTogglesItsCaption) {
  const auto& button = Find<QPushButton>("cmdPolarity");
  EXPECT_EQ(button.text(), "Pos");
  Press("cmdPolarity");
  EXPECT_EQ(button.text(), "Neg");
  Press("cmdPolarity");
  EXPECT_EQ(button.text(), "Pos");
}

TEST_F(FrmUsbDebug, TheOptionsChooseTheChipSelect) {
  EXPECT_TRUE(Find<QRadioButton>("optSpiChan_0").isChecked());
  Find<QRadioButton>("optSpiChan_1").click();
  EXPECT_FALSE(UsbCsPerWord);
  Find<QRadioButton>("optSpiChan_0").click();
  EXPECT_TRUE(UsbCsPerWord);
  Given(UsbCsPerWord) = false;
  window_->close();
  window_->ShowInFront();
  EXPECT_TRUE(Find<QRadioButton>("optSpiChan_1").isChecked());
}

TEST_F(FrmUsbDebug, TheButtonStopsTheLoop) {
  RunLoop();
  EXPECT_FALSE(Find<QPushButton>("cmdWriteSpi").isEnabled());
  Press("cmdLoop");
  ExpectStopped();
  EXPECT_TRUE(Find<QPushButton>("cmdWriteSpi").isEnabled());
}

TEST_F(FrmUsbDebug, EscapeStopsTheLoopAndThenClosesTheWindow) {
  RunLoop();
  QTest::keyClick(&Find<QLineEdit>("txtTx_1"), Qt::Key_Escape);
  ExpectStopped();
  EXPECT_TRUE(window_->isVisible());
  QTest::keyClick(&Find<QLineEdit>("txtTx_1"), Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(FrmUsbDebug, ClosingTheWindowStopsTheLoop) {
  for (const bool byButton : {false, true}) {
    window_->ShowInFront();
    RunLoop();
    if (byButton) {
      Press("cmdExit");
    } else {
      window_->close();
    }
    ExpectStopped();
  }
}

// None where the watch over the adapter is faster than the next transfer.
TEST_F(FrmUsbDebug, UnpluggingStopsTheLoopWithOneMessageAtMost) {
  RunLoop();
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return LoopCaption() == "Loop"; }));
  EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
  EXPECT_FALSE(Find<QRadioButton>("optUsbPort_0").isChecked());
  ExpectStopped();
  EXPECT_LE(messages_.Texts().size(), 1U);
}

TEST_F(FrmUsbDebug, AfterRepluggingTheLoopRunsAgain) {
  RunLoop();
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return LoopCaption() == "Loop"; }));
  hardware_.Adapter().Replug(0);
  Press("cmdFindEzUsb");
  const QSignalSpy chosen(window_, &frmUSBdebug::InterfaceChosen);
  Find<QRadioButton>("optUsbPort_0").click();
  EXPECT_EQ(chosen.count(), 1);
  messages_.Clear();
  RunLoop();
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmUsbDebug, ClosingTheProgramDuringTheLoopIsSafe) {
  RunLoop();
  windows_.reset();
  usb_.FailFrom(0);
  QTest::qWait(20);
  EXPECT_EQ(usb_.Requests(), 0);
}

// A capture is a handler that waits: the loop rests until it is over, then goes on.
TEST_F(FrmUsbDebug, ACaptureDuringTheLoopIsNotDisturbed) {
  RunLoop();
  Choose("cbxFFTAvgs", 10);
  std::int64_t during = 0;
  std::int64_t later = 0;
  During(60, [&] { during = Transfers(); });
  During(120, [&] { later = Transfers(); });
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
  EXPECT_GT(during, 0);
  EXPECT_EQ(later, during);
  EXPECT_EQ(LoopCaption(), "Stop");
  const std::int64_t now = Transfers();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Transfers() > now; }));
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmUsbDebug, TheLoopCanBeStoppedWhileACaptureIsWaitedFor) {
  RunLoop();
  Choose("cbxFFTAvgs", 10);
  During(60, [&] { Press("cmdLoop"); });
  Press("cmdStart");
  ExpectStopped();
}

TEST_F(FrmUsbDebug, WhileACaptureIsWaitedForNothingStarts) {
  Type(1, "0E00");
  Choose("cbxFFTAvgs", 10);
  int requests = -1;
  During(60, [&] {
    usb_.FailFrom(0);
    for (const char* button : {"cmdReadBits", "cmdReadDelay", "cmdWriteSpi", "cmdLoop"}) {
      Press(button);
    }
    QTest::keyClick(&Find<QLineEdit>("txtLoopDelay"), Qt::Key_Return);
    Find<QRadioButton>("optSpiChan_1").click();
    requests = usb_.Requests();
  });
  Press("cmdStart");
  EXPECT_EQ(requests, 0);
  EXPECT_TRUE(UsbCsPerWord);
  EXPECT_TRUE(Find<QRadioButton>("optSpiChan_0").isChecked());
  EXPECT_EQ(LoopCaption(), "Loop");
  EXPECT_EQ(Transfers(), 0);
}

TEST_F(FrmUsbDebug, OtherWindowsReachTheSensorBetweenTwoTransfers) {
  RunLoop();
  Press("CmdReadStatus");
  core_.registers.WriteReg(row::FFT_AVG, 0x55);
  ASSERT_TRUE(QTest::qWaitFor([this, now = Transfers()] { return Transfers() > now + 3; }));
  core_.registers.ReadReg(row::FFT_AVG);
  EXPECT_EQ(RegValue, 0x55);
  EXPECT_TRUE(messages_.Texts().empty());
  EXPECT_EQ(LoopCaption(), "Stop");
}

TEST_F(FrmUsbDebug, SavingPutsTheLogIntoAFileAndSaysWhere) {
  Type(1, "0E00");
  Press("cmdWriteSpi");
  Press("cmdSave");
  const std::string path = "/program/Adapter_LOG.txt";
  EXPECT_EQ(Text("lblSaved"), QString::fromStdString("Saved: " + path + " and Adapter_LOG.vcd"));
  EXPECT_NE(files_.contents[path].find("\t13\t0E00\t"), std::string::npos);
  EXPECT_NE(files_.contents["/program/Adapter_LOG.vcd"].find("$enddefinitions"), std::string::npos);
  files_.failure = "disk full";
  Press("cmdSave");
  EXPECT_EQ(messages_.Texts(), Words{"cmdSave_Click\n/program/Adapter_LOG_2.txt: disk full"});
  Press("cmdClear");
  EXPECT_EQ(Text("lblSaved"), "");
  EXPECT_EQ(Text("lblCounts"), "Transfers: 0   Errors: 0");
}

TEST_F(FrmUsbDebug, MnemonicsAreUnique) {
  std::multiset<QChar> letters;
  const auto note = [&](const QString& text) {
    const qsizetype at = text.indexOf('&');
    if (at >= 0) letters.insert(text[at + 1].toLower());
  };
  for (const auto* button : window_->findChildren<QAbstractButton*>()) note(button->text());
  for (const auto* label : window_->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) note(label->text());
  }
  EXPECT_GT(letters.size(), 12U);
  for (const QChar letter : letters) EXPECT_EQ(letters.count(letter), 1U) << letter.toLatin1();
}

}  // namespace
}  // namespace kestrel
