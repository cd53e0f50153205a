// The control register's settings, and a sensor lost while settings are exchanged.
// SPDX-License-Identifier: MIT

#include "acquisition/settings_bench.h"

namespace kestrel {
namespace {

TEST_F(Settings, ControlSettingsAreWrittenAndReadBack) {
  view.selected[Setting::Window] = 2;
  view.rateBits = {true, false, true, false};
  view.selected[Setting::SignalRange] = 3;
  view.selected[Setting::Storage] = 1;
  view.selected[Setting::RecMode] = 2;
  settings.Set_RecCtrl();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kRecCtrl, 0x2536) + DisplayFrames());
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.0023842);
}

TEST_F(Settings, EachSampleRateBoxIsItsBit) {
  for (std::size_t bit = 0; bit < 4; ++bit) {
    view.rateBits = {};
    view.rateBits[bit] = true;
    settings.Set_RecCtrl();
    EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x0100 << bit);
  }
  view.rateBits.fill(true);
  settings.Set_RecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x0F00);
}

TEST_F(Settings, PowerDownIsWrittenBackAsLastRead) {
  view.powerDown = true;
  settings.Set_RecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x0000);
  EXPECT_FALSE(view.powerDown);

  sensor.Set(address::kRecCtrl, 0x0080);
  settings.Display_RecCtrl();
  EXPECT_TRUE(view.powerDown);
  view.powerDown = false;
  settings.Set_RecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x0080);
}

TEST_F(Settings, EveryFieldIsShown) {
  sensor.Set(address::kRecCtrl, 0x1AA9);
  settings.Display_RecCtrl();
  EXPECT_EQ(TakeFrames(), DisplayFrames());
  EXPECT_EQ(view.selected[Setting::Window], 1);
  EXPECT_EQ(view.rateBits, (std::array{false, true, false, true}));
  EXPECT_TRUE(view.powerDown);
  EXPECT_EQ(view.selected[Setting::SignalRange], 2);
  EXPECT_EQ(view.selected[Setting::Storage], 2);
  EXPECT_EQ(view.selected[Setting::RecMode], 1);
}

TEST_F(Settings, AnIndexOutsideItsFieldIsNamedAndTheFieldKept) {
  struct Row {
    Setting setting;
    int tooHigh;
    const char* complaint;
  };
  const Row rows[] = {{Setting::Window, 3, "Error Windowing ComboBox box index = "},
                      {Setting::SignalRange, 4, "Error SignalRange ComboBox box index = "},
                      {Setting::Storage, 3, "Error Storage combo box index = "},
                      {Setting::RecMode, 3, "Error RecMode combo box index = "}};
  for (const Row& row : rows) {
    for (const int index : {-1, row.tooHigh}) {
      const std::string text = row.complaint + std::to_string(index);
      SCOPED_TRACE(text);
      messages.Clear();
      sensor.Set(address::kRecCtrl, 0x1215);
      settings.Display_RecCtrl();
      view.selected[row.setting] = index;
      settings.Set_RecCtrl();
      EXPECT_EQ(messages.Texts(), Words{text});
      EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x1215);
      EXPECT_EQ(view.selected[row.setting], 1);
    }
  }
}

TEST_F(Settings, ComplaintsComeInTheOrderOfTheFields) {
  for (auto& [setting, index] : view.selected) index = -1;
  settings.Set_RecCtrl();
  EXPECT_EQ(
      messages.Texts(),
      (Words{"Error Windowing ComboBox box index = -1", "Error SignalRange ComboBox box index = -1",
             "Error Storage combo box index = -1", "Error RecMode combo box index = -1"}));
}

TEST_F(Settings, TheWindowIsRefreshedInOrder) {
  sensor.Set(address::kStatus, 0x0008);
  settings.ReadMainFormRegisters();
  EXPECT_EQ(TakeFrames(), DisplayFrames() + ReadFrames(address::kFftAvg) +
                              ReadFrames(address::kRecPrd) + ReadFrames(address::kRecPntr) +
                              ReadFrames(address::kRecCnt) + ReadFrames(address::kFftAvg) +
                              StatusFrames() + AlarmStatusFrames());
  EXPECT_EQ(StatusFlagText[3], "FAIL");
}

TEST_F(Settings, ALostSensorLeavesWhatWasNotRead) {
  constexpr int kAccesses = 2 + 1 + 1 + 2 + 1 + 7 + 3;
  for (int request = 1; request <= 3 * kAccesses; ++request) {
    SCOPED_TRACE(request);
    messages.Clear();
    view.recCount = "shown before";
    sensor.UnplugAtRequest(request);
    settings.ReadMainFormRegisters();
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(view.recCount, request <= 3 * 6 ? "shown before" : "7");
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

TEST_F(Settings, ALostSensorLeavesTheScale) {
  sensor.Set(address::kRecCtrl, 0x0030);
  sensor.Set(address::kFftAvg, 0x0011);
  settings.ReadMainFormRegisters();
  const double scale = gRecCtrl->gLsb();
  const std::string range = gRecCtrl->RangeString();
  ASSERT_EQ(range, "0 - 70g");
  for (int request = 1; request <= 6; ++request) {
    SCOPED_TRACE(request);
    settings.Read_FftAvg();
    sensor.UnplugAtRequest(request);
    settings.Display_RecCtrl();
    EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), scale);
    EXPECT_EQ(gRecCtrl->RangeString(), range);
    EXPECT_EQ(gRecCtrl->RecModeCode(), 0);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

TEST_F(Settings, AChoiceThatIsNotWrittenDoesNotStayOnTheScreen) {
  sensor.Set(address::kRecCtrl, 0x1030);
  sensor.Set(address::kRecPrd, 0x010A);
  settings.ReadMainFormRegisters();
  const auto lists = view.selected;
  struct Row {
    Setting setting;
    void (SettingsExchange::*write)();
  };
  for (const Row& row : {Row{Setting::RecMode, &SettingsExchange::Set_RecCtrl},
                         Row{Setting::SignalRange, &SettingsExchange::Set_RecCtrl},
                         Row{Setting::Interval, &SettingsExchange::Write_RecPrd},
                         Row{Setting::FftAvgs, &SettingsExchange::cbxFFTAvgs_Click},
                         Row{Setting::RecPntr, &SettingsExchange::cbxRecPntr_Click}}) {
    for (int request = 1; request <= 3; ++request) {
      SCOPED_TRACE(static_cast<int>(row.setting));
      view.selected[row.setting] = 2;
      view.SetPowerDown(true);
      sensor.UnplugAtRequest(request);
      (settings.*row.write)();
      EXPECT_EQ(view.selected, lists);
      EXPECT_EQ(gRecCtrl->RecModeCode(), 0);
      EXPECT_EQ(gRecCtrl->RangeFS(), 3);
      sensor.PlugInAgain();
      core.usb.SelectUsbAdapter();
    }
  }
  EXPECT_FALSE(view.PowerDownTicked());
}

TEST_F(Settings, WithoutAnInterfaceNothingIsSentOrShown) {
  core.registers.Use(kNoInterface);
  view.selected[Setting::Window] = 2;
  view.recCount = "shown before";
  settings.ReadMainFormRegisters();
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_TRUE(messages.Texts().empty());
  EXPECT_EQ(view.selected[Setting::Window], 2);
  EXPECT_EQ(view.recCount, "shown before");
  EXPECT_TRUE(statusView.flags.empty());
}

}  // namespace
}  // namespace kestrel
