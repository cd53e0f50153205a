// The alarm control window over a scripted sensor.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmALM_CTRL.h"
#include "support/given.h"

#include <QAbstractItemView>

#include "ui/windows/sensor_window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

constexpr int kAlmSMag = 0x32;
const Frames kRead = ReadFrames(address::kAlmCtrl);

class FrmAlmCtrl : public SensorWindowBench<frmALM_CTRL> {
 protected:
  void OpenWith(int word) {
    sensor.Set(address::kAlmCtrl, word);
    Open();
    TakeFrames();
  }

  // The word written by what has just been done with a control.
  int Written() {
    const int word = sensor.Word(address::kAlmCtrl);
    EXPECT_EQ(TakeFrames(), WriteFrames(address::kAlmCtrl, word) + kRead);
    return word;
  }
  int WordAfterPressing(const char* button) {
    Press(button);
    return Written();
  }
};

TEST_F(FrmAlmCtrl, OpeningReadsTheRegisterAndWritesNothing) {
  Open();
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_EQ(Text("lblHexWord"), "0");
}

TEST_F(FrmAlmCtrl, TheListHoldsTheDelayCodes) {
  Open();
  auto& list = Find<QComboBox>("cbxResponseDelay");
  ASSERT_EQ(list.count(), 16);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(list.itemText(i), QString::number(i));
}

TEST_F(FrmAlmCtrl, ALongDelayAloneLeavesEveryBoxClear) {
  OpenWith(0x0F00);
  EXPECT_EQ(Find<QComboBox>("cbxResponseDelay").currentText(), "15");
  for (const char* box :
       {"ckDIOenable", "ckXenable", "ckYenable", "ckZenable", "ckSystemAlarmEnable"}) {
    EXPECT_FALSE(Checked(box)) << box;
  }
  EXPECT_TRUE(Checked("opLessThan"));
  EXPECT_TRUE(Checked("opSupply"));
  EXPECT_FALSE(Checked("opGreaterThan"));
  EXPECT_FALSE(Checked("opTemperature"));
  EXPECT_EQ(Text("lblHexWord"), "F00");
}

TEST_F(FrmAlmCtrl, EveryControlHasItsBit) {
  struct Row {
    const char* control;
    int bit;
  };
  for (const Row& row : {Row{"ckXenable", 0x01}, Row{"ckYenable", 0x02}, Row{"ckZenable", 0x04},
                         Row{"ckSystemAlarmEnable", 0x08}, Row{"ckDIOenable", 0x40}}) {
    SCOPED_TRACE(row.control);
    OpenWith(0x0F80);
    EXPECT_EQ(WordAfterPressing(row.control), 0x0F80 | row.bit);
    EXPECT_TRUE(Checked(row.control));
    EXPECT_EQ(WordAfterPressing(row.control), 0x0F80);
    EXPECT_FALSE(Checked(row.control));
  }
  OpenWith(0);
  EXPECT_EQ(WordAfterPressing("opTemperature"), 0x10);
  EXPECT_EQ(WordAfterPressing("opGreaterThan"), 0x30);
  EXPECT_EQ(WordAfterPressing("opSupply"), 0x20);
  EXPECT_EQ(WordAfterPressing("opLessThan"), 0x00);
  Find<QComboBox>("cbxResponseDelay").setCurrentIndex(13);
  EXPECT_EQ(Written(), 0x0D00);
}

TEST_F(FrmAlmCtrl, EveryWordComesBackThroughTheControls) {
  Open();
  for (int word = 0; word < 0x1000; ++word) {
    sensor.Set(address::kAlmCtrl, word);
    TakeFrames();
    window_->Display_AlmCtrl();
    ASSERT_EQ(TakeFrames(), kRead) << "filling the window writes nothing";
    ASSERT_EQ(Text("lblHexWord"), QString::number(word, 16).toUpper());
    window_->Write_AlmCtrl();
    ASSERT_EQ(TakeFrames(), WriteFrames(address::kAlmCtrl, word) + kRead) << std::hex << word;
  }
}

TEST_F(FrmAlmCtrl, TheLatchBitSurvivesEveryEdit) {
  OpenWith(0x0080);
  EXPECT_EQ(WordAfterPressing("ckXenable"), 0x0081);
  EXPECT_EQ(WordAfterPressing("opTemperature"), 0x0091);
  QTest::keyClicks(&Find("txtSAmag"), "7");
  EXPECT_EQ(Written(), 0x0091);
}

TEST_F(FrmAlmCtrl, EveryKeystrokeInTheLimitRewritesTheWordAndTheLimitGoesNowhere) {
  OpenWith(0x0A5C);
  const QString keys = "3.45";
  for (const QChar key : keys) {
    QTest::keyClicks(&Find("txtSAmag"), QString(key));
    EXPECT_EQ(Written(), 0x0A5C);
  }
  Key(Find("txtSAmag"), Qt::Key_Backspace);
  EXPECT_EQ(Written(), 0x0A5C);
  EXPECT_EQ(BoxText("txtSAmag"), "3.4");
  EXPECT_EQ(sensor.Word(kAlmSMag), 0);
}

TEST_F(FrmAlmCtrl, TheWindowSaysWhereTheLimitIsSet) {
  Open();
  bool said = false;
  for (const QLabel* label : window_->findChildren<QLabel*>()) {
    said = said || label->text().contains("ALM_S_MAG");
  }
  EXPECT_TRUE(said);
}

TEST_F(FrmAlmCtrl, OptionButtonsActWhenThePointersButtonGoesUp) {
  OpenWith(0);
  auto& option = Find<QRadioButton>("opGreaterThan");
  const QPoint inside(8, option.height() / 2);
  QTest::mousePress(&option, Qt::LeftButton, {}, inside);
  EXPECT_EQ(TakeFrames(), Frames{});
  QTest::mouseRelease(&option, Qt::LeftButton, {}, inside);
  EXPECT_EQ(Written(), 0x0020);
  EXPECT_EQ(WordAfterPressing("opGreaterThan"), 0x0020) << "the selected one writes as well";
}

TEST_F(FrmAlmCtrl, AnOptionButtonActsAlsoWhenThePointersButtonGoesUpBesideIt) {
  OpenWith(0);
  auto& option = Find<QRadioButton>("opGreaterThan");
  QTest::mousePress(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
  QTest::mouseMove(&option, QPoint(8, -200));
  QTest::mouseRelease(&option, Qt::LeftButton, {}, QPoint(8, -200));
  EXPECT_EQ(Written(), 0x0000) << "it is not selected there, and the word is written as it stands";
  EXPECT_FALSE(option.isChecked());
}

TEST_F(FrmAlmCtrl, ChoosingTheChosenDelayWritesIt) {
  OpenWith(0x0300);
  auto& list = Find<QComboBox>("cbxResponseDelay");
  list.showPopup();
  QApplication::processEvents();
  QTest::keyClick(list.view(), Qt::Key_Return);
  EXPECT_EQ(Written(), 0x0300);
}

TEST_F(FrmAlmCtrl, NothingIsWrittenWhileACaptureIsAwaitedAndTheWindowSaysSo) {
  OpenWith(0x0300);
  idle = false;
  Press("ckXenable");
  QTest::keyClicks(&Find("txtSAmag"), "7");
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_FALSE(Checked("ckXenable"));
  EXPECT_EQ(
      Text("lblNote"),
      "Not done: the sensor is busy with a capture. Try again when it is complete, or stop it.");
  Press("cmdRead");
  EXPECT_EQ(TakeFrames(), kRead) << "reading disturbs no capture";
}

TEST_F(FrmAlmCtrl, OptionButtonsCanBeUsedFromTheKeyboard) {
  OpenWith(0);
  Find("opSupply").setFocus();
  Key(Find("opSupply"), Qt::Key_Down);
  EXPECT_EQ(Written(), 0x0010);
  EXPECT_TRUE(Checked("opTemperature"));
  EXPECT_TRUE(Find("opTemperature").hasFocus());
  Key(Find("opTemperature"), Qt::Key_Up);
  EXPECT_EQ(Written(), 0x0000);
  Key(Find("opSupply"), Qt::Key_Space);
  EXPECT_EQ(Written(), 0x0000);
}

TEST_F(FrmAlmCtrl, BoxesAndListCanBeUsedFromTheKeyboard) {
  OpenWith(0);
  Key(Find("ckZenable"), Qt::Key_Space);
  EXPECT_EQ(Written(), 0x0004);
  Key(Find("cbxResponseDelay"), Qt::Key_End);
  EXPECT_EQ(Written(), 0x0F04);
}

TEST_F(FrmAlmCtrl, TheTabKeyLeadsThroughAllControls) {
  OpenWith(0x0020);
  EXPECT_EQ(TabOrder(Find("ckXenable")),
            (std::vector<QString>{"ckXenable", "ckYenable", "ckZenable", "ckSystemAlarmEnable",
                                  "opSupply", "opGreaterThan", "txtSAmag", "ckDIOenable",
                                  "cbxResponseDelay", "cmdRead", "cmdClose"}));
}

TEST_F(FrmAlmCtrl, MnemonicsAreUnique) {
  Open();
  EXPECT_EQ(Mnemonics().size(), 13U);
}

TEST_F(FrmAlmCtrl, ComingBackToTheWindowRefreshesIt) {
  OpenWith(0);
  sensor.Set(address::kAlmCtrl, 0x0107);
  Activate();
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_EQ(Text("lblHexWord"), "107");
  EXPECT_TRUE(Checked("ckYenable"));
  sensor.Set(address::kAlmCtrl, 0x0200);
  Press("cmdRead");
  EXPECT_EQ(Text("lblHexWord"), "200");
}

TEST_F(FrmAlmCtrl, CloseAndEscapeCloseItAndEnterPressesNothing) {
  OpenWith(0);
  Key(Find("txtSAmag"), Qt::Key_Return);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(TakeFrames(), Frames{});
  Key(Find("txtSAmag"), Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
  Activate();
  EXPECT_TRUE(window_->isVisible());
  Find("cmdClose").setFocus();
  Key(Find("cmdClose"), Qt::Key_Return);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(FrmAlmCtrl, UnpluggedAtAnyRequestOfAnEditTheWindowShowsWhatItShowed) {
  constexpr int kRequests = 6;  // write and read, three each
  OpenWith(0x0A95);
  for (int request = 1; request <= kRequests; ++request) {
    SCOPED_TRACE(request);
    sensor.Set(address::kAlmCtrl, 0x0A95);
    Press("cmdRead");
    EXPECT_EQ(Text("lblNote"), "");
    messages.Clear();
    sensor.UnplugAtRequest(request);
    Press("ckYenable");
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(Text("lblHexWord"), "A95");
    EXPECT_FALSE(Checked("ckYenable"));
    EXPECT_FALSE(Text("lblNote").isEmpty());
    Press("opSupply");
    EXPECT_EQ(messages.Texts().size(), 1U) << "one message is enough";
    EXPECT_TRUE(Checked("opTemperature"));
    sensor.PlugInAgain();
    Given(UsbPresent) = true;
  }
}

TEST_F(FrmAlmCtrl, WithoutAnInterfaceItStaysEmptyAndSaysSo) {
  core.registers.Use(kNoInterface);
  Open();
  EXPECT_EQ(Text("lblHexWord"), "");
  EXPECT_EQ(Find<QComboBox>("cbxResponseDelay").currentIndex(), -1);
  EXPECT_FALSE(Text("lblNote").isEmpty());
  Press("opGreaterThan");
  EXPECT_FALSE(Checked("opGreaterThan")) << "nothing took it over";
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(FrmAlmCtrl, AnEditThatIsRefusedIsTakenBackAndSaysSo) {
  OpenWith(0x0300);
  busy = true;
  Press("ckXenable");
  Find<QComboBox>("cbxResponseDelay").setCurrentIndex(5);
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_FALSE(Checked("ckXenable"));
  EXPECT_EQ(Find<QComboBox>("cbxResponseDelay").currentIndex(), 3);
  EXPECT_FALSE(Text("lblNote").isEmpty());
  busy = false;
  EXPECT_EQ(WordAfterPressing("ckXenable"), 0x0301);
  EXPECT_EQ(Text("lblNote"), "");
}

}  // namespace
}  // namespace kestrel
