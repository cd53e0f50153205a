// The alarm control window's logic: every word shown and written back.
// SPDX-License-Identifier: MIT
#include "device/alm_ctrl_editor.h"

#include "support/given.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

constexpr int kAlmSMag = 0x32;
constexpr int kRequestsPerAccess = 3;  // open, send, receive
constexpr int kRequestsPerEdit = 2 * kRequestsPerAccess;
const Frames kRead = ReadFrames(address::kAlmCtrl);

// A window whose controls report every change, the program's own ones as well.
class AlmCtrlEdit : public RegisterBench, public AlarmControlView {
 protected:
  void ShowControls(const AlarmControls& controls) override {
    shown = controls;
    ++shows;
    editor.Changed();
  }
  AlarmControls Controls() override { return shown; }

  void Read(int word) {
    sensor.Set(address::kAlmCtrl, word);
    editor.Display_AlmCtrl();
    TakeFrames();
  }

  // The user changes something: the word that is written.
  int WordAfter(const std::function<void(AlarmControls&)>& change) {
    change(shown);
    editor.Changed();
    EXPECT_EQ(TakeFrames(), WriteFrames(address::kAlmCtrl, sensor.Word(address::kAlmCtrl)) + kRead);
    return sensor.Word(address::kAlmCtrl);
  }

  AlarmControls shown;
  int shows = 0;
  AlmCtrlEditor editor{*this};
};

TEST_F(AlmCtrlEdit, EveryWordIsShownWithoutBeingWritten) {
  for (int word = 0; word < 0x1000; ++word) {
    sensor.Set(address::kAlmCtrl, word);
    editor.Display_AlmCtrl();
    ASSERT_EQ(TakeFrames(), kRead) << std::hex << word;
  }
}

TEST_F(AlmCtrlEdit, EveryWordOfTheRegisterIsWrittenBackAsItWasRead) {
  for (int word = 0; word < 0x1000; ++word) {
    Read(word);
    editor.Write_AlmCtrl();
    ASSERT_EQ(TakeFrames(), WriteFrames(address::kAlmCtrl, word) + kRead) << std::hex << word;
  }
}

TEST_F(AlmCtrlEdit, TheUndefinedBitsAreShownInTheWordAndWrittenAsZero) {
  Read(0xF5A5);
  EXPECT_EQ(shown.hexWord, "F5A5");
  editor.Write_AlmCtrl();
  EXPECT_EQ(sensor.Word(address::kAlmCtrl), 0x05A5);
  EXPECT_EQ(shown.hexWord, "5A5");
}

TEST_F(AlmCtrlEdit, ALongDelayAloneLeavesEverythingElseClear) {
  Read(0x0F00);
  EXPECT_EQ(shown.responseDelay, 15);
  EXPECT_FALSE(shown.dioEnable);
  EXPECT_EQ(shown.spectralEnable, (std::array<bool, 3>{}));
  EXPECT_FALSE(shown.systemEnable);
  EXPECT_EQ(shown.greaterThan, std::optional<bool>(false));
  EXPECT_EQ(shown.temperature, std::optional<bool>(false));
}

TEST_F(AlmCtrlEdit, EveryEditIsOneWriteAndOneReadOfItsBits) {
  Read(0);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.spectralEnable[0] = true; }), 0x0001);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.spectralEnable[1] = true; }), 0x0003);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.spectralEnable[2] = true; }), 0x0007);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.systemEnable = true; }), 0x000F);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.temperature = true; }), 0x001F);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.greaterThan = true; }), 0x003F);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.dioEnable = true; }), 0x007F);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.responseDelay = 10; }), 0x0A7F);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.temperature = false; }), 0x0A6F);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.greaterThan = false; }), 0x0A4F);
  EXPECT_EQ(WordAfter([](AlarmControls&) {}), 0x0A4F) << "as while the limit is typed";
  EXPECT_EQ(sensor.Word(kAlmSMag), 0);
}

TEST_F(AlmCtrlEdit, OfAPairWithNothingSelectedTheBitIsZero) {
  Read(0x0030);
  const auto clear = [](AlarmControls& c) {
    c.greaterThan = std::nullopt;
    c.temperature = std::nullopt;
  };
  EXPECT_EQ(WordAfter(clear), 0);
}

TEST_F(AlmCtrlEdit, TheLatchBitSurvivesEveryEdit) {
  Read(0x0080);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.responseDelay = 3; }), 0x0380);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.dioEnable = true; }), 0x03C0);
  EXPECT_EQ(shown.hexWord, "3C0");
}

TEST_F(AlmCtrlEdit, WhatTheSensorMadeOfTheWordIsShown) {
  Read(0);
  sensor.OnRead(address::kAlmCtrl, [] { return 0x0204; });
  shown.systemEnable = true;
  editor.Changed();
  EXPECT_EQ(shown.hexWord, "204");
  EXPECT_FALSE(shown.systemEnable);
  EXPECT_EQ(shown.responseDelay, 2);
}

// Controls that were never filled would wipe out what the sensor holds.
TEST_F(AlmCtrlEdit, AChangeBeforeAnythingWasReadIsRefreshedAway) {
  sensor.Set(address::kAlmCtrl, 0x0F83);
  shown.dioEnable = true;
  editor.Changed();
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_EQ(shown.hexWord, "F83");
  EXPECT_FALSE(shown.dioEnable);
  EXPECT_EQ(WordAfter([](AlarmControls& c) { c.dioEnable = true; }), 0x0FC3);
}

TEST_F(AlmCtrlEdit, UnpluggedAtAnyRequestThereIsOneMessageAndTheLastReadingStays) {
  for (int request = 1; request <= kRequestsPerEdit; ++request) {
    SCOPED_TRACE(request);
    Read(0x0A90);
    messages.Clear();
    sensor.UnplugAtRequest(request);
    shown.dioEnable = true;
    shown.responseDelay = 1;
    editor.Changed();
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(shown.hexWord, "A90");
    EXPECT_FALSE(shown.dioEnable) << "the change was not taken over";
    EXPECT_EQ(shown.responseDelay, 10);
    sensor.PlugInAgain();
    Given(UsbPresent) = true;
  }
}

TEST_F(AlmCtrlEdit, AfterALossTheFirstChangeReadsTheSensorAnew) {
  Read(0x0000);
  sensor.UnplugAtRequest(1);
  editor.Display_AlmCtrl();
  sensor.PlugInAgain();
  Given(UsbPresent) = true;
  sensor.Set(address::kAlmCtrl, 0x0780);
  TakeFrames();
  shown.dioEnable = true;
  editor.Changed();
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_EQ(shown.hexWord, "780");
}

// While the message about the loss is open, a window may become active.
TEST_F(AlmCtrlEdit, ARefreshInsideARefreshWritesNothing) {
  Read(0x0123);
  sensor.UnplugAtRequest(kRequestsPerAccess);
  messages.WhileShown([this] { editor.Display_AlmCtrl(); });
  editor.Display_AlmCtrl();
  EXPECT_EQ(messages.Texts(), Words{"Error Reading SPI"});
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_EQ(shown.hexWord, "123");
}

TEST_F(AlmCtrlEdit, WhatWasChangedAndRefusedIsTakenBack) {
  Read(0x0210);
  shown.responseDelay = 9;
  editor.ShowLastRead();
  EXPECT_EQ(shown.responseDelay, 2);
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(AlmCtrlEdit, WithoutAnInterfaceNothingIsShownAsRead) {
  core.registers.Use(kNoInterface);
  editor.Display_AlmCtrl();
  EXPECT_EQ(shown.hexWord, "");
  EXPECT_EQ(shown.responseDelay, -1);
  EXPECT_FALSE(shown.greaterThan.has_value());
  EXPECT_FALSE(shown.temperature.has_value());
}

}  // namespace
}  // namespace kestrel
