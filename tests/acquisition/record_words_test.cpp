// Every word that the registers of the record settings can hold or be given.
// SPDX-License-Identifier: MIT
// Every word that the registers of the record settings can hold or be given.

#include "acquisition/settings_exchange.h"
#include "device/rec_ctrl.h"
#include "support/capture_bench.h"

namespace kestrel {
namespace {

constexpr int kAllWords = 0x10000;
constexpr int kReservedBits = 0xC040;  // of REC_CTRL: neither read nor written as 1

class RecordWords : public CaptureBench {
 protected:
  FakeSettingsView& view = settingsView;
};

// What a list shows of a code: nothing where the list has no such item.
int Shown(int code, int items) {
  return code < items ? code : -1;
}

TEST_F(RecordWords, EveryControlWordComesBackFromTheModelWithoutItsReservedBits) {
  for (int word = 0; word < kAllWords; ++word) {
    sensor.Set(address::kRecCtrl, word);
    gRecCtrl->ReadRecCtrl();
    TakeFrames();
    gRecCtrl->WriteRecCtrl();
    ASSERT_EQ(TakeFrames(), WriteFrames(address::kRecCtrl, word & ~kReservedBits)) << word;
  }
}

TEST_F(RecordWords, EveryControlWordIsShownAndReservedCodesLeaveTheirListEmpty) {
  for (int word = 0; word < kAllWords; ++word) {
    sensor.Set(address::kRecCtrl, word);
    settings.Display_RecCtrl();
    ASSERT_EQ(view.selected[Setting::RecMode], Shown(word & 3, 3)) << word;
    ASSERT_EQ(view.selected[Setting::Storage], Shown(word >> 2 & 3, 3)) << word;
    ASSERT_EQ(view.selected[Setting::SignalRange], word >> 4 & 3) << word;
    ASSERT_EQ(view.powerDown, (word & 0x80) != 0) << word;
    ASSERT_EQ(view.selected[Setting::Window], Shown(word >> 12 & 3, 3)) << word;
    for (int bit = 0; bit < 4; ++bit) {
      ASSERT_EQ(view.SampleRateBit(bit), (word >> (8 + bit) & 1) != 0) << word;
    }
  }
  EXPECT_TRUE(messages.Texts().empty());
  TakeFrames();
}

TEST_F(RecordWords, AReservedCodeSurvivesAChangeOfAnotherSetting) {
  sensor.Set(address::kRecCtrl, 0x3000);
  settings.Display_RecCtrl();
  TakeFrames();
  view.selected[Setting::SignalRange] = 2;
  settings.Set_RecCtrl();
  EXPECT_EQ(messages.Texts(), std::vector<std::string>{"Error Windowing ComboBox box index = -1"});
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x3020);
}

TEST_F(RecordWords, EachCombinationOfItemsWritesExactlyItsWord) {
  for (int mode = 0; mode < 3; ++mode) {
    for (int storage = 0; storage < 3; ++storage) {
      for (int range = 0; range < 4; ++range) {
        for (int window = 0; window < 3; ++window) {
          for (int rate = 0; rate < 16; ++rate) {
            view.selected[Setting::RecMode] = mode;
            view.selected[Setting::Storage] = storage;
            view.selected[Setting::SignalRange] = range;
            view.selected[Setting::Window] = window;
            for (int bit = 0; bit < 4; ++bit) view.SetSampleRateBit(bit, (rate >> bit & 1) != 0);
            settings.Set_RecCtrl();
            ASSERT_EQ(sensor.Word(address::kRecCtrl),
                      mode + 4 * storage + 16 * range + 256 * rate + 4096 * window);
          }
        }
      }
    }
  }
  TakeFrames();
}

TEST_F(RecordWords, EveryPeriodWordIsShownOrItsReservedUnitNamed) {
  for (int word = 0; word < kAllWords; ++word) {
    messages.Clear();
    view.selected[Setting::Units] = 1;
    sensor.Set(address::kRecPrd, word);
    settings.Read_RecPrd();
    const int unit = word >> 8 & 3;
    ASSERT_EQ(view.selected[Setting::Interval], word & 0xFF) << word;
    ASSERT_EQ(view.selected[Setting::Units], unit < 3 ? unit : 1) << word;
    ASSERT_EQ(messages.Texts().size(), unit < 3 ? 0U : 1U) << word;
  }
  TakeFrames();
}

TEST_F(RecordWords, OfEveryPointerWordTheFourSignificantBitsAreShown) {
  for (int word = 0; word < kAllWords; ++word) {
    sensor.Set(address::kRecPntr, word);
    settings.Read_RecPtrCnt();
    ASSERT_EQ(view.selected[Setting::RecPntr], word & 15) << word;
  }
  EXPECT_TRUE(messages.Texts().empty());
  TakeFrames();
}

// A write costs the driver three requests: open, send, take the answers. The read-back follows.
TEST_F(RecordWords, ASensorUnpluggedBetweenWriteAndReadBackGivesOneMessageAndKeepsTheChoice) {
  constexpr int kAfterTheWrite = 4;
  view.selected[Setting::Interval] = 42;
  sensor.UnplugAtRequest(kAfterTheWrite);
  settings.Write_RecPrd();
  EXPECT_EQ(messages.Texts(), std::vector<std::string>{"Error Writing SPI"});
  EXPECT_EQ(sensor.Word(address::kRecPrd), 42);
  EXPECT_EQ(view.selected[Setting::Interval], 42);
  messages.Clear();
  settings.Set_RecCtrl();
  settings.cbxFFTAvgs_Click();
  settings.ReadMainFormRegisters();
  EXPECT_TRUE(messages.Texts().empty()) << "no further boxes while the adapter is lost";
  TakeFrames();
}

}  // namespace
}  // namespace kestrel
