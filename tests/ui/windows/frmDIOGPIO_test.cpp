// The window of the digital lines over a scripted sensor.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmDIOGPIO.h"
#include "support/given.h"

#include "ui/windows/sensor_window_bench.h"

namespace kestrel {
namespace {

const Frames kRead = ReadFrames(address::kDioCtrl) + ReadFrames(address::kGpioCtrl);

constexpr std::array<std::array<const char*, 4>, 2> kFunctions{
    {{"opFuncGPIO1", "opFuncAlarm1", "OpFuncCapTrig1", "OpFuncBusy1"},
     {"OpFuncGPIO2", "OpFuncAlarm2", "OpFuncCapTrig2", "OpFuncBusy2"}}};
constexpr std::array kGpioOptions{"opGInput1",     "opGOutput1",   "opGInput2",     "opGOutput2",
                                  "opGLevelHigh1", "opGLevelLow1", "opGLevelHigh2", "opGLevelLow2"};

class FrmDioGpio : public SensorWindowBench<frmDIOGPIO> {
 protected:
  void Read(int dio, int gpio) {
    sensor.Set(address::kDioCtrl, dio);
    sensor.Set(address::kGpioCtrl, gpio);
    if (window_) {
      window_->ReadDIOGPIO();
    } else {
      Open();
    }
    TakeFrames();
  }

  int DioWordAfter(const char* option) { return WordAfter(option, address::kDioCtrl); }
  int GpioWordAfter(const char* option) { return WordAfter(option, address::kGpioCtrl); }

  void ExpectGpio(int line, bool enabled) {
    SCOPED_TRACE(line);
    const auto name = [&](const char* stem) { return (stem + std::to_string(line)); };
    for (const char* stem : {"fraGPIO", "fraGDirection", "fraGLevel", "opGInput", "opGOutput",
                             "opGLevelHigh", "opGLevelLow"}) {
      EXPECT_EQ(Find(name(stem).c_str()).isEnabled(), enabled) << stem;
    }
    auto& note = Find<QLabel>(name("LbLGPIOinfo").c_str());
    EXPECT_EQ(note.font().bold(), !enabled);
    EXPECT_TRUE(note.isEnabled()) << "it has to be read then";
  }

 private:
  int WordAfter(const char* option, int address) {
    Press(option);
    const int word = sensor.Word(address);
    EXPECT_EQ(TakeFrames(), WriteFrames(address, word) + kRead) << option;
    return word;
  }
};

TEST_F(FrmDioGpio, OpeningReadsBothRegistersAndWritesNothing) {
  Open();
  EXPECT_EQ(TakeFrames(), kRead);
}

TEST_F(FrmDioGpio, ZeroIsGeneralPurposeActiveHighWithItsGroupsEnabled) {
  Read(0, 0);
  EXPECT_TRUE(Checked("opFuncGPIO1"));
  EXPECT_TRUE(Checked("OpFuncGPIO2"));
  EXPECT_TRUE(Checked("opActiveHigh1"));
  EXPECT_TRUE(Checked("OpActiveHigh2"));
  ExpectGpio(1, true);
  ExpectGpio(2, true);
  for (const char* option : {"opGInput1", "opGInput2", "opGLevelLow1", "opGLevelLow2"}) {
    EXPECT_TRUE(Checked(option)) << option;
  }
}

TEST_F(FrmDioGpio, AlarmLinesHaveTheirGroupsDisabledWithBoldNotes) {
  Read(0x0014, 0x0303);
  EXPECT_TRUE(Checked("opFuncAlarm1"));
  EXPECT_TRUE(Checked("OpFuncAlarm2"));
  ExpectGpio(1, false);
  ExpectGpio(2, false);
  for (const char* option : kGpioOptions) EXPECT_FALSE(Checked(option)) << option;
}

TEST_F(FrmDioGpio, TheLinesAreToldApart) {
  Read(0x0020, 0x0101);
  EXPECT_TRUE(Checked("opFuncGPIO1"));
  EXPECT_TRUE(Checked("OpFuncCapTrig2"));
  ExpectGpio(1, true);
  ExpectGpio(2, false);
  EXPECT_TRUE(Checked("opGOutput1"));
  EXPECT_TRUE(Checked("opGLevelHigh1"));
  EXPECT_FALSE(Checked("opGInput2"));
  EXPECT_FALSE(Checked("opGOutput2"));
}

TEST_F(FrmDioGpio, EveryWordIsShownUnwrittenAndGoesBackWithPolarityHigh) {
  for (int word = 0; word <= 0xFF; ++word) {
    SCOPED_TRACE(word);
    sensor.Set(address::kDioCtrl, word);
    if (!window_) Open();
    window_->ReadDIOGPIO();
    EXPECT_TRUE(Checked("opActiveHigh1"));
    EXPECT_TRUE(Checked("OpActiveHigh2"));
    EXPECT_EQ(Text("lblDioWord"), QString::number(word, 16).toUpper());
    EXPECT_EQ(Text("lblPolarityBit1").contains("low"), (word & 1) == 0);
    EXPECT_EQ(Text("lblPolarityBit2").contains("low"), (word & 2) == 0);
    const char* first = kFunctions[0][static_cast<std::size_t>(word >> 2 & 3)];
    const char* second = kFunctions[1][static_cast<std::size_t>(word >> 4 & 3)];
    EXPECT_TRUE(Checked(first));
    EXPECT_TRUE(Checked(second));
    const Frames frames = TakeFrames();
    EXPECT_EQ(Frames(frames.end() - 4, frames.end()), kRead);
    for (const int frame : frames) EXPECT_LT(frame, 0x8000) << "filling the window writes nothing";
    EXPECT_EQ(DioWordAfter(word % 2 == 0 ? first : second), (word & 0x3C) | 3);
  }
}

TEST_F(FrmDioGpio, EveryGpioWordIsShownUnwrittenAndGoesBack) {
  for (int bits = 0; bits < 16; ++bits) {
    const int word = (bits & 3) | (bits & 12) << 6;
    SCOPED_TRACE(word);
    Read(0, 0xFCFC | word);
    EXPECT_EQ(Text("lblGpioWord"), QString::number(0xFCFC | word, 16).toUpper());
    window_->WriteGPIOCTRL();
    EXPECT_EQ(TakeFrames(), WriteFrames(address::kGpioCtrl, word) + kRead);
  }
}

TEST_F(FrmDioGpio, EveryFunctionHasItsCode) {
  Read(0, 0);
  for (std::size_t code = 0; code < 4; ++code) {
    EXPECT_EQ(DioWordAfter(kFunctions[0][code]) & 0x0C, static_cast<int>(code) * 4);
    EXPECT_EQ(DioWordAfter(kFunctions[1][code]) & 0x30, static_cast<int>(code) * 16);
  }
}

TEST_F(FrmDioGpio, ActiveLowIsWrittenAndHighIsShownAgain) {
  Read(0x0003, 0);
  EXPECT_EQ(DioWordAfter("opActiveLow1"), 0x0002);
  EXPECT_TRUE(Checked("opActiveHigh1"));
  EXPECT_FALSE(Checked("opActiveLow1"));
  EXPECT_EQ(Text("lblDioWord"), "2");
  EXPECT_EQ(DioWordAfter("opActiveHigh1"), 0x0003) << "the option that is shown can be chosen";
  EXPECT_EQ(DioWordAfter("OpActiveLow2"), 0x0001);
  EXPECT_TRUE(Checked("OpActiveHigh2"));
  EXPECT_EQ(DioWordAfter("OpActiveHigh2"), 0x0003);
}

TEST_F(FrmDioGpio, EveryGpioOptionHasItsBit) {
  Read(0, 0);
  EXPECT_EQ(GpioWordAfter("opGOutput1"), 0x0001);
  EXPECT_EQ(GpioWordAfter("opGOutput2"), 0x0003);
  EXPECT_EQ(GpioWordAfter("opGLevelHigh1"), 0x0103);
  EXPECT_EQ(GpioWordAfter("opGLevelHigh2"), 0x0303);
  EXPECT_EQ(GpioWordAfter("opGInput1"), 0x0302) << "an input's level is written nevertheless";
  EXPECT_EQ(GpioWordAfter("opGInput2"), 0x0300);
  EXPECT_EQ(GpioWordAfter("opGLevelLow1"), 0x0200);
  EXPECT_EQ(GpioWordAfter("opGLevelLow2"), 0x0000);
}

TEST_F(FrmDioGpio, OptionsCanBeUsedFromTheKeyboardAndKeepTheFocus) {
  Read(0, 0);
  Find("opGInput1").setFocus();
  Key(Find("opGInput1"), Qt::Key_Down);
  EXPECT_EQ(sensor.Word(address::kGpioCtrl), 0x0001);
  EXPECT_TRUE(Find("opGOutput1").hasFocus());
  Key(Find("opGOutput1"), Qt::Key_Space);
  EXPECT_TRUE(Find("opGOutput1").hasFocus()) << "the refresh disables nothing in passing";
  Find("opFuncGPIO1").setFocus();
  Key(Find("opFuncGPIO1"), Qt::Key_Down);
  EXPECT_EQ(sensor.Word(address::kDioCtrl), 0x0007);
  EXPECT_TRUE(Find("opFuncAlarm1").hasFocus());
  Find("opActiveHigh1").setFocus();
  Key(Find("opActiveHigh1"), Qt::Key_Down);
  EXPECT_EQ(sensor.Word(address::kDioCtrl), 0x0006);
  Key(Find("opActiveHigh1"), Qt::Key_Space);
  EXPECT_EQ(sensor.Word(address::kDioCtrl), 0x0007);
}

TEST_F(FrmDioGpio, TheTabKeyLeadsToTheSelectedOptionOfEachGroup) {
  Read(0x0008, 0x0200);
  EXPECT_EQ(TabOrder(Find("OpFuncCapTrig1")),
            (std::vector<QString>{"OpFuncCapTrig1", "opActiveHigh1", "OpFuncGPIO2", "OpActiveHigh2",
                                  "opGInput2", "opGLevelHigh2", "cmdRead", "cmdClose"}));
}

TEST_F(FrmDioGpio, MnemonicsAreUniqueAndWriteNothing) {
  Read(0x0004, 0);
  EXPECT_EQ(Mnemonics().size(), 10U);
  QTest::keyClick(window_.get(), Qt::Key_F, Qt::AltModifier);
  EXPECT_TRUE(Find("opFuncAlarm1").hasFocus());
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(FrmDioGpio, ComingBackToTheWindowRefreshesIt) {
  Read(0, 0);
  sensor.Set(address::kDioCtrl, 0x003C);
  Activate();
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_TRUE(Checked("OpFuncBusy1"));
  EXPECT_TRUE(Checked("OpFuncBusy2"));
}

TEST_F(FrmDioGpio, UnpluggedAtAnyRequestOfAChoiceTheWindowShowsWhatItShowed) {
  constexpr int kRequests = 9;  // a write and two reads, three each
  Open();
  for (int request = 1; request <= kRequests; ++request) {
    for (const char* option : {"OpFuncBusy1", "opGOutput1"}) {
      SCOPED_TRACE(request);
      Read(0x0010, 0x0100);
      messages.Clear();
      sensor.UnplugAtRequest(request);
      Press(option);
      EXPECT_EQ(messages.Texts().size(), 1U);
      EXPECT_TRUE(Checked("opFuncGPIO1"));
      EXPECT_TRUE(Checked("opGInput1"));
      EXPECT_TRUE(Checked("opGLevelHigh1"));
      EXPECT_TRUE(Checked("OpFuncAlarm2"));
      EXPECT_EQ(Text("lblDioWord"), "10");
      EXPECT_EQ(Text("lblGpioWord"), "100");
      EXPECT_FALSE(Text("lblNote").isEmpty());
      sensor.PlugInAgain();
      Given(UsbPresent) = true;
    }
  }
}

TEST_F(FrmDioGpio, WithoutAnInterfaceNothingIsSelected) {
  core.registers.Use(kNoInterface);
  Open();
  for (const auto* option : window_->findChildren<QRadioButton*>()) {
    EXPECT_FALSE(option->isChecked()) << option->objectName().toStdString();
  }
  EXPECT_EQ(Text("lblDioWord"), "");
  EXPECT_EQ(Text("lblPolarityBit1"), "");
  Press("OpFuncBusy1");
  EXPECT_FALSE(Checked("OpFuncBusy1"));
}

TEST_F(FrmDioGpio, AChoiceThatIsRefusedIsTakenBack) {
  Read(0, 0);
  busy = true;
  Press("OpFuncBusy2");
  EXPECT_TRUE(Checked("OpFuncGPIO2"));
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_FALSE(Text("lblNote").isEmpty());
}

TEST_F(FrmDioGpio, EscapeClosesIt) {
  Open();
  Key(Find("cmdRead"), Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
}

}  // namespace
}  // namespace kestrel
