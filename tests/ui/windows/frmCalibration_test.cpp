// The calibration window over a scripted sensor.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmCalibration.h"
#include "support/given.h"

#include "ui/windows/sensor_window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

const Frames kReadAll =
    ReadFrames(address::kXNull) + ReadFrames(address::kYNull) + ReadFrames(address::kZNull);

struct Row {
  int address;
  const char* word;
  const char* value;
  const char* write;
};

constexpr std::array kRows{Row{address::kXNull, "lblXnullReg", "txtXnull", "cmdWriteX"},
                           Row{address::kYNull, "lblAUX0nullReg", "txtAUX0null", "cmdWriteAUX0"},
                           Row{address::kZNull, "lblAUX1nullReg", "txtAUX1null", "cmdWriteAUX1"}};

class FrmCalibration : public SensorWindowBench<frmCalibration> {
 protected:
  void OpenWith(int x, int y, int z) {
    sensor.Set(address::kXNull, x);
    sensor.Set(address::kYNull, y);
    sensor.Set(address::kZNull, z);
    Open();
    TakeFrames();
  }
  void Type(const char* box, const char* text) {
    Find<QLineEdit>(box).selectAll();
    QTest::keyClicks(&Find(box), text);
  }
};

TEST_F(FrmCalibration, OpeningShowsWordsAndValues) {
  sensor.Set(address::kXNull, 0xFFFF);
  sensor.Set(address::kYNull, 0x0064);
  Open();
  EXPECT_EQ(TakeFrames(), kReadAll);
  EXPECT_EQ(Text("lblXnullReg"), "FFFF");
  EXPECT_EQ(BoxText("txtXnull"), "-0.0048");
  EXPECT_EQ(Text("lblAUX0nullReg"), "64");
  EXPECT_EQ(BoxText("txtAUX0null"), "0.4768");
  EXPECT_EQ(Text("lblAUX1nullReg"), "0");
  EXPECT_EQ(BoxText("txtAUX1null"), "0.0000");
}

TEST_F(FrmCalibration, EachButtonWritesItsRowAndReadsAllBack) {
  OpenWith(0, 0, 0);
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.write);
    Type(row.value, "-1");
    Press(row.write);
    EXPECT_EQ(TakeFrames(), WriteFrames(row.address, 0xFF2E) + kReadAll);
    EXPECT_EQ(Text(row.word), "FF2E");
    EXPECT_EQ(BoxText(row.value), "-1.0014");
  }
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmCalibration, EnterInABoxWritesItsRowOnce) {
  OpenWith(0, 0, 0);
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.value);
    Type(row.value, "0.5");
    Key(Find(row.value), Qt::Key_Return);
    EXPECT_EQ(TakeFrames(), WriteFrames(row.address, 105) + kReadAll);
  }
}

TEST_F(FrmCalibration, LettersWriteZeroAndTheWindowSaysSo) {
  OpenWith(5, 5, 5);
  Type("txtAUX0null", "abc");
  Press("cmdWriteAUX0");
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kYNull, 0) + kReadAll);
  EXPECT_EQ(Text("lblNote"), "Y_NULL: \"abc\" was taken as 0.");
  Press("cmdRead");
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmCalibration, ADecimalCommaIsExplainedAndTheNoteStaysOnComingBack) {
  OpenWith(0, 0, 0);
  Type("txtXnull", "1,5");
  Press("cmdWriteX");
  const QString note = "X_NULL: \"1,5\" was taken as 1. The decimal mark is a point.";
  EXPECT_EQ(Text("lblNote"), note);
  EXPECT_EQ(BoxText("txtXnull"), "1.0014");
  Activate();
  EXPECT_EQ(Text("lblNote"), note);
}

TEST_F(FrmCalibration, AValueThatDoesNotFitGivesAMessageAndStaysToBeCorrected) {
  OpenWith(3, 3, 3);
  Type("txtAUX1null", "200");
  Press("cmdWriteAUX1");
  ASSERT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(messages.Texts()[0].rfind("cmdWriteAUX1_Click\nOverflow: \"200\"", 0), 0U)
      << messages.Texts()[0];
  EXPECT_EQ(TakeFrames(), Frames{});
  Activate();  // as when the message is closed
  EXPECT_EQ(BoxText("txtAUX1null"), "200");
}

TEST_F(FrmCalibration, ComingBackRefreshesAllButWhatIsBeingTyped) {
  OpenWith(1, 1, 1);
  Type("txtAUX0null", "0.7");
  sensor.Set(address::kXNull, 2);
  sensor.Set(address::kYNull, 2);
  Activate();
  EXPECT_EQ(TakeFrames(), kReadAll);
  EXPECT_EQ(BoxText("txtXnull"), "0.0095");
  EXPECT_EQ(Text("lblAUX0nullReg"), "2");
  EXPECT_EQ(BoxText("txtAUX0null"), "0.7");
  Press("cmdRead");
  EXPECT_EQ(BoxText("txtAUX0null"), "0.0095");
}

TEST_F(FrmCalibration, EscapeTakesBackWhatWasTypedThenCloses) {
  OpenWith(1, 0, 0);
  Type("txtXnull", "9");
  Key(Find("txtXnull"), Qt::Key_Escape);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(BoxText("txtXnull"), "0.0048");
  Key(Find("txtXnull"), Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(FrmCalibration, AutonullRefreshesAllRows) {
  OpenWith(1, 2, 3);
  sensor.OnRead(address::kXNull, [] { return 0x10; });
  sensor.OnRead(address::kYNull, [] { return 0x20; });
  sensor.OnRead(address::kZNull, [] { return 0x30; });
  Press("cmdAutoNull");
  EXPECT_EQ(TakeFrames(), Frames{0xBE01} + kReadAll);
  EXPECT_EQ(Text("lblXnullReg"), "10");
  EXPECT_EQ(Text("lblAUX0nullReg"), "20");
  EXPECT_EQ(Text("lblAUX1nullReg"), "30");
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmCalibration, AFlashUpdateRefreshesNothing) {
  OpenWith(1, 2, 3);
  sensor.Set(address::kXNull, 9);
  Press("cmdFlashUpdate");
  EXPECT_EQ(TakeFrames(), Frames{0xBF10});
  EXPECT_EQ(Text("lblXnullReg"), "1");
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
}

TEST_F(FrmCalibration, RetrievingRefreshesAllRows) {
  OpenWith(1, 2, 3);
  sensor.Set(address::kZNull, 4);
  window_->RetrieveAndRead();
  EXPECT_EQ(TakeFrames(), Frames{0xBF20} + kReadAll);
  EXPECT_EQ(Text("lblAUX1nullReg"), "4");
}

TEST_F(FrmCalibration, WhileACaptureIsAwaitedNothingIsSentAndWhatWasTypedStays) {
  OpenWith(1, 2, 3);
  Type("txtXnull", "0.5");
  idle = false;
  for (const char* button : {"cmdWriteX", "cmdAutoNull", "cmdFlashUpdate"}) {
    Press(button);
    EXPECT_EQ(TakeFrames(), Frames{}) << button;
    EXPECT_FALSE(Text("lblNote").isEmpty()) << button;
  }
  EXPECT_EQ(BoxText("txtXnull"), "0.5");
  idle = true;
  Press("cmdWriteX");
  EXPECT_EQ(Text("lblXnullReg"), "69");
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmCalibration, UnpluggedAtAnyRequestTheWindowShowsWhatItShowed) {
  OpenWith(1, 2, 3);
  const auto lose = [this](const char* button, int request) {
    SCOPED_TRACE(button + std::to_string(request));
    messages.Clear();
    sensor.UnplugAtRequest(request);
    Press(button);
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(Text("lblXnullReg"), "1");
    EXPECT_EQ(Text("lblAUX0nullReg"), "2");
    EXPECT_EQ(BoxText("txtAUX1null"), "0.0143");
    EXPECT_FALSE(Text("lblNote").isEmpty());
    sensor.PlugInAgain();
    Given(UsbPresent) = true;
    sensor.Set(address::kXNull, 1);
  };
  for (int request = 1; request <= 12; ++request) lose("cmdWriteX", request);
  for (int request = 1; request <= 12; ++request) lose("cmdAutoNull", request);
  for (int request = 1; request <= 3; ++request) lose("cmdFlashUpdate", request);
  for (int request = 1; request <= 9; ++request) lose("cmdRead", request);
  EXPECT_EQ(pointer.Shown().back(), "default");
}

TEST_F(FrmCalibration, WithoutAnInterfaceItStaysEmpty) {
  core.registers.Use(kNoInterface);
  Open();
  for (const Row& row : kRows) {
    EXPECT_EQ(Text(row.word), "");
    EXPECT_EQ(BoxText(row.value), "");
  }
  EXPECT_FALSE(Text("lblNote").isEmpty());
}

TEST_F(FrmCalibration, TheTabKeyLeadsThroughRowsAndButtons) {
  OpenWith(0, 0, 0);
  EXPECT_EQ(TabOrder(Find("txtXnull")),
            (std::vector<QString>{"txtXnull", "cmdWriteX", "txtAUX0null", "cmdWriteAUX0",
                                  "txtAUX1null", "cmdWriteAUX1", "cmdAutoNull", "cmdFlashUpdate",
                                  "cmdRead", "cmdClose"}));
}

TEST_F(FrmCalibration, ButtonsTakeEnterAndSpace) {
  OpenWith(0, 0, 0);
  Find("cmdFlashUpdate").setFocus();
  Key(Find("cmdFlashUpdate"), Qt::Key_Return);
  EXPECT_EQ(TakeFrames(), Frames{0xBF10});
  Key(Find("cmdFlashUpdate"), Qt::Key_Space);
  EXPECT_EQ(TakeFrames(), Frames{0xBF10});
}

TEST_F(FrmCalibration, MnemonicsAreUnique) {
  Open();
  EXPECT_EQ(Mnemonics().size(), 10U);
}

}  // namespace
}  // namespace kestrel
