// The register window over the simulated sensor.
// SPDX-License-Identifier: MIT
#include <QAbstractItemView>
#include <QRegularExpression>
#include <QStatusBar>
#include <set>

#include "ui/windows/manual_reg_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

using FrmManualReg = ManualRegBench;

TEST_F(FrmManualReg, OpeningFillsTheBoxAndListsAllRegistersAndWritesNothing) {
  Start();
  const std::pair before(InSensor(row::REC_CTRL), InSensor(row::FFT_AVG));
  usb_.FailFrom(0);
  window_ = new frmManualReg(core_, Window().Edge(), &Window(), printers_);
  window_->ShowInFront();
  EXPECT_EQ(usb_.Requests(), kListRequests) << "only the reads of one listing";
  EXPECT_EQ(List().document()->blockCount(), 2 + 50 + 1);
  const Words items = Items(Find<QComboBox>("cmboRegister"));
  ASSERT_EQ(items.size(), 58U);
  EXPECT_EQ(items[0], "ENDURANCE");
  EXPECT_EQ(items[4], "REC_FLSH_CNT");
  EXPECT_EQ(items[40], "REV");
  EXPECT_EQ(items[57], "REC_INFO");
  for (std::size_t row = 45; row <= 52; ++row) EXPECT_EQ(items[row], "reserved");
  EXPECT_EQ(std::pair(InSensor(row::REC_CTRL), InSensor(row::FFT_AVG)), before);
}

TEST_F(FrmManualReg, ListedNamesShowInTheBoxTheNextTimeTheWindowIsOpened) {
  frmManualReg& window = Open();
  Press("cmdClose");
  EXPECT_FALSE(window.isVisible());
  window.ShowInFront();
  const Words items = Items(Find<QComboBox>("cmboRegister"));
  EXPECT_EQ(items[4], "REC_FLSH_CN");
  EXPECT_EQ(items[40], "REV______");
  EXPECT_EQ(items[45], "reserved");
}

TEST_F(FrmManualReg, EveryOpeningReadsTheListAnewAndChoosesNothing) {
  frmManualReg& window = Open();
  Choose(row::FFT_AVG);
  window.hide();
  core_.registers.WriteReg(row::FFT_AVG, 0xABC);
  window.ShowInFront();
  EXPECT_TRUE(List().toPlainText().contains("FFT_AVG     \tE\t0ABC\n"));
  EXPECT_EQ(OutstandingLines(), Words{"FFT_AVG"});
  EXPECT_EQ(Find<QComboBox>("cmboRegister").currentIndex(), -1);
  for (const char* box : {"txtRegAddr", "txtRegByte", "txtRegRead", "txtRegWrite", "txtRegHex",
                          "txtRegVal", "txtDataWrite"}) {
    EXPECT_EQ(BoxText(box), "") << box;
  }
  EXPECT_FALSE(Find<QPushButton>("cmdRead").isEnabled());
  EXPECT_FALSE(Find<QPushButton>("cmdWrite").isEnabled());
}

TEST_F(FrmManualReg, AChosenRegisterShowsWhatTheTableAndTheSensorSayOfIt) {
  Open();
  core_.registers.WriteReg(row::X_NULL, 0xFFFE);
  Type("12");
  Choose(row::X_NULL);
  EXPECT_EQ(BoxText("txtRegAddr"), "2");
  EXPECT_EQ(BoxText("txtRegByte"), "2");
  EXPECT_EQ(BoxText("txtRegRead"), "True");
  EXPECT_EQ(BoxText("txtRegWrite"), "True");
  EXPECT_EQ(BoxText("txtRegHex"), "FFFFFFFE");
  EXPECT_EQ(BoxText("txtRegVal"), "-0.009536744");
  EXPECT_EQ(BoxText("txtDataWrite"), "");
  EXPECT_EQ(Text("lblReadBits"), "1111 1111 1111 1110");
  EXPECT_EQ(FieldLine(0), (Words{"15:0", "Decimal", "-2", ""}));
}

TEST_F(FrmManualReg, ButtonsFollowWhatTheRegisterAllows) {
  Open();
  struct Case {
    std::int16_t row;
    bool read;
    bool write;
  };
  for (const Case& expected : {Case{row::ENDURANCE, true, false}, Case{row::COMMAND, false, true},
                               Case{row::REC_CTRL, true, true}, Case{row::SCRATCH_B, false, false},
                               Case{row::SCRATCH_A, true, true}}) {
    SCOPED_TRACE(expected.row);
    Choose(expected.row);
    EXPECT_EQ(Find<QPushButton>("cmdRead").isEnabled(), expected.read);
    EXPECT_EQ(Find<QPushButton>("cmdWrite").isEnabled(), expected.write);
    EXPECT_EQ(BoxText("txtRegRead"), expected.read ? "True" : "False");
    EXPECT_EQ(BoxText("txtRegWrite"), expected.write ? "True" : "False");
  }
}

TEST_F(FrmManualReg, AWriteShowsInTheValueTheListAndTheSensor) {
  Open();
  Choose(row::REC_CTRL);
  Type("2135");
  Press("cmdWrite");
  EXPECT_EQ(InSensor(row::REC_CTRL), 0x2135);
  EXPECT_EQ(BoxText("txtRegHex"), "2135");
  EXPECT_EQ(BoxText("txtRegVal"), "8501");
  EXPECT_EQ(BoxText("txtDataWrite"), "2135");
  EXPECT_EQ(OutstandingLines(), Words{"REC_CTRL"});
  EXPECT_EQ(Text("lblListNote"), "50 registers, read at 9:26:53 AM. Changed: REC_CTRL.");
  Press("cmdReadAllReg");
  EXPECT_EQ(OutstandingLines(), Words{});
}

TEST_F(FrmManualReg, EnterInTheValueWritesOnce) {
  Open();
  Choose(row::FFT_AVG);
  Find<QLineEdit>("txtDataWrite").setFocus();
  Type("20");
  usb_.FailFrom(0);
  EnterInValue();
  EXPECT_EQ(usb_.Requests(), 3 + kListRequests + 3);
  EXPECT_EQ(InSensor(row::FFT_AVG), 0x20);
}

TEST_F(FrmManualReg, EnterWritesNoReadOnlyRegister) {
  Open();
  Choose(row::ENDURANCE);
  Find<QLineEdit>("txtDataWrite").setFocus();
  Type("1");
  usb_.FailFrom(0);
  EnterInValue();
  EXPECT_EQ(usb_.Requests(), 0);
  EXPECT_EQ(messages_.Texts(), Words{"Writing a register: ENDURANCE cannot be written."});
}

TEST_F(FrmManualReg, WhatIsNoHexadecimalNumberWritesWhatItConvertsToAndTheLinesBelowSaySo) {
  Open();
  Choose(row::FFT_AVG);
  Type("1G");
  EXPECT_EQ(Text("lblWriteBits"), "0000 0000 0000 0001  no such word: writes 1");
  Find<QLineEdit>("txtDataWrite").setFocus();
  EnterInValue();
  EXPECT_EQ(InSensor(row::FFT_AVG), 1);
  EXPECT_EQ(
      Text("lblNote"),
      "\"1G\" is not a word of 1 to 4 hexadecimal digits. 1 written to FFT_AVG, which now holds "
      "1.");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmManualReg, ChoosingTheChosenRegisterReadsItAgain) {
  Open();
  Choose(row::FFT_AVG);
  auto& list = Find<QComboBox>("cmboRegister");
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_Up);
  core_.registers.WriteReg(row::FFT_AVG, 0x33);
  list.showPopup();
  QApplication::processEvents();
  QTest::keyClick(list.view(), Qt::Key_Return);
  EXPECT_EQ(list.currentIndex(), row::FFT_AVG);
  EXPECT_EQ(BoxText("txtRegHex"), "33");
}

TEST_F(FrmManualReg, FieldsOfWhatWasReadStandBesideThoseOfWhatWouldBeWritten) {
  Open();
  Choose(row::REC_CTRL);
  EXPECT_EQ(Find<QTableWidget>("tblFields").rowCount(), 6);
  EXPECT_EQ(FieldLine(0), (Words{"13:12", "Windowing", "1  Hanning [default]", ""}));
  Type("2030");
  EXPECT_EQ(FieldLine(0), (Words{"13:12", "Windowing", "1  Hanning [default]", "2  Flat Top"}));
  EXPECT_EQ(FieldLine(3), (Words{"5:4", "Signal Range", "3  0 - 70g", "3  0 - 70g"}));
  EXPECT_TRUE(Find<QTableWidget>("tblFields").item(0, 3)->font().bold());
  EXPECT_FALSE(Find<QTableWidget>("tblFields").item(3, 3)->font().bold());
  EXPECT_EQ(Text("lblWriteBits"), "0010 0000 0011 0000");
  Type("203x");
  EXPECT_EQ(Text("lblWriteBits"), "0000 0010 0000 0011  no such word: writes 203");
  EXPECT_EQ(FieldLine(0)[3], "0  Rectangular");
  Type("");
  EXPECT_EQ(Text("lblWriteBits"), "");
  EXPECT_EQ(FieldLine(0)[3], "");
}

TEST_F(FrmManualReg, AWriteOnlyRegisterShowsTheFieldsOfWhatWouldBeWritten) {
  Open();
  Choose(row::COMMAND);
  EXPECT_EQ(BoxText("txtRegHex"), "0");
  EXPECT_EQ(BoxText("txtRegVal"), "0");
  EXPECT_EQ(Text("lblReadBits"), "") << "nothing was read";
  Type("0800");
  EXPECT_EQ(FieldLine(4), (Words{"11", "Record start/stop", "", "1  Start"}));
}

TEST_F(FrmManualReg, UpdateFlashReachesTheSensor) {
  Open();
  core_.registers.WriteReg(row::FFT_AVG, 77);
  Press("cmdUpdateFlash");
  core_.registers.WriteReg(row::COMMAND, 0x80);  // restart
  EXPECT_EQ(InSensor(row::FFT_AVG), 77);
}

TEST_F(FrmManualReg, WhatWouldDisturbACaptureIsRefusedWhileOneIsWaitedFor) {
  Open();
  Choose(row::FFT_AVG);
  Type("55");
  QString refusal;
  During(50, [&] {
    Press("cmdWrite");
    refusal = Window().statusBar()->currentMessage();
    Press("cmdUpdateFlash");
    Press("cmdStart");
  });
  Press("cmdStart");
  EXPECT_EQ(InSensor(row::FFT_AVG), 8);
  EXPECT_EQ(refusal, "Please wait for the capture or stop it first.");
  EXPECT_EQ(
      Text("lblNote"),
      "Not done: the sensor is busy with a capture. Try again when it is complete, or stop it.");
}

TEST_F(FrmManualReg, AfterALossAChosenRegisterShowsNoValueOfAnother) {
  Open();
  Choose(row::FFT_AVG);
  EXPECT_EQ(BoxText("txtRegHex"), "8");
  usb_.FailFrom(1);
  Choose(row::REC_CTRL);
  EXPECT_EQ(BoxText("txtRegAddr"), "1C");
  EXPECT_EQ(BoxText("txtRegHex"), "");
  EXPECT_EQ(BoxText("txtRegVal"), "");
  EXPECT_EQ(messages_.Texts().size(), 1U);
}

TEST_F(FrmManualReg, WithoutAnInterfaceItListsZerosAndSaysSo) {
  files_.contents.clear();
  Start();
  messages_.Clear();
  window_ = new frmManualReg(core_, Window().Edge(), &Window(), printers_);
  window_->ShowInFront();
  EXPECT_TRUE(window_->isVisible());
  EXPECT_TRUE(List().toPlainText().contains("REC_CTRL     \t1C\t0000\n"));
  EXPECT_EQ(Text("lblListNote"),
            "No interface is selected: nothing was read, every value stands as 0.");
  Press("cmdWriteFile");
  EXPECT_EQ(files_.contents.count("/program/Registers_LOG.txt"), 1U);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmManualReg, IsUsedByTheKeyboardAlone) {
  frmManualReg& window = Open();
  QApplication::setActiveWindow(&window);
  EXPECT_TRUE(Find<QComboBox>("cmboRegister").hasFocus());
  for (int row = 0; row <= row::FFT_AVG; ++row) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  }
  EXPECT_EQ(BoxText("txtRegAddr"), "E");
  Words reached;
  for (int tab = 0; tab < 18; ++tab) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget()->objectName().toStdString());
  }
  EXPECT_EQ(reached, (Words{"txtRegAddr", "txtRegByte", "txtRegRead", "txtRegWrite", "txtRegHex",
                            "txtRegVal", "cmdRead", "txtDataWrite", "cmdWrite", "tblFields",
                            "txtRegList", "cmdReadAllReg", "cmdWriteFile", "cmdCopy", "cmdPrint",
                            "cmdUpdateFlash", "cmdClose", "cmboRegister"}));
  Find<QLineEdit>("txtDataWrite").setFocus();
  QTest::keyClicks(QApplication::focusWidget(), "2a");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
  EXPECT_EQ(InSensor(row::FFT_AVG), 0x2A);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(FrmManualReg, MnemonicsAreUnique) {
  frmManualReg& window = Open();
  QStringList texts;
  for (const auto* button : window.findChildren<QPushButton*>()) texts << button->text();
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) texts << label->text();
  }
  std::set<QChar> keys;
  int mnemonics = 0;
  for (const QString& text : texts) {
    const auto found = QRegularExpression("&(\\w)").match(text);
    if (!found.hasMatch()) continue;
    ++mnemonics;
    keys.insert(found.captured(1).at(0).toLower());
  }
  EXPECT_EQ(mnemonics, 12);
  EXPECT_EQ(keys.size(), 12U);
}

}  // namespace
}  // namespace kestrel
