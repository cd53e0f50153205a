// Record settings between controls and sensor.
// SPDX-License-Identifier: MIT

#include "acquisition/settings_bench.h"

namespace kestrel {
namespace {

TEST_F(Settings, TenMinutes) {
  view.selected[Setting::Interval] = 10;
  view.selected[Setting::Units] = 1;
  settings.Write_RecPrd();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kRecPrd, 0x010A) + ReadFrames(address::kRecPrd));
}

TEST_F(Settings, ThePeriodIsReadBackAfterItIsWritten) {
  sensor.OnRead(address::kRecPrd, [] { return 0x02FF; });
  settings.Write_RecPrd();
  EXPECT_EQ(view.selected[Setting::Interval], 255);
  EXPECT_EQ(view.selected[Setting::Units], 2);
}

TEST_F(Settings, EveryTimeUnitIsSelected) {
  for (int unit = 0; unit <= 2; ++unit) {
    SCOPED_TRACE(unit);
    sensor.Set(address::kRecPrd, unit * 256 + 7 + unit);
    settings.Read_RecPrd();
    EXPECT_EQ(view.selected[Setting::Units], unit);
    EXPECT_EQ(view.selected[Setting::Interval], 7 + unit);
  }
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(Settings, OnlyBits9And8AreTheTimeUnit) {
  sensor.Set(address::kRecPrd, 0xFD05);
  settings.Read_RecPrd();
  EXPECT_EQ(view.selected[Setting::Units], 1);
  EXPECT_EQ(view.selected[Setting::Interval], 5);
}

TEST_F(Settings, AReservedTimeUnitIsNamedAndTheListLeftAlone) {
  view.selected[Setting::Units] = 1;
  sensor.Set(address::kRecPrd, 0x0305);
  settings.Read_RecPrd();
  EXPECT_EQ(messages.Texts(), Words{"\n\nError reading Capture Period register\n"
                                    "Time units bit field (bits 8, 9) value = 3\n"
                                    "This value should not be greater than 2."});
  EXPECT_EQ(view.selected[Setting::Units], 1);
  EXPECT_EQ(view.selected[Setting::Interval], 5);
}

TEST_F(Settings, ARefusedIntervalIsNamedAndTheUnitStillShown) {
  view.items[Setting::Interval] = 100;
  sensor.Set(address::kRecPrd, 0x02C8);
  settings.Read_RecPrd();
  EXPECT_EQ(messages.Texts(),
            Words{"Error setting timer value cbx box\nValue = 200 is not valid."});
  EXPECT_EQ(view.selected[Setting::Interval], 0);
  EXPECT_EQ(view.selected[Setting::Units], 2);
}

TEST_F(Settings, PointerAndCountAreReadInThatOrder) {
  sensor.Set(address::kRecPntr, 15);
  sensor.Set(address::kRecCnt, 16);
  settings.Read_RecPtrCnt();
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecPntr) + ReadFrames(address::kRecCnt));
  EXPECT_EQ(view.selected[Setting::RecPntr], 15);
  EXPECT_EQ(view.recCount, "16");
}

// The table takes four bits of the register; a pointer out of range needs a wider row.

TEST_F(Settings, APointerOutOfRangeIsNamedAndTheCountStillShown) {
  struct Row {
    int word;
    const char* value;
    bool isSigned;
  };
  Given(RegBits)[row::REC_PNTR] = 16;
  for (const Row& row : {Row{16, "16", false}, Row{0xFFFF, "-1", true}}) {
    SCOPED_TRACE(row.word);
    messages.Clear();
    view.selected[Setting::RecPntr] = 3;
    view.recCount.clear();
    Given(RegSigned)[row::REC_PNTR] = row.isSigned;
    sensor.Set(address::kRecPntr, row.word);
    settings.Read_RecPtrCnt();
    EXPECT_EQ(messages.Texts(),
              Words{std::string("\n\nError reading Record Pointer (REC_PNTR) register\nvalue = ") +
                    row.value + "\nValid values are 0 to 15."});
    EXPECT_EQ(view.selected[Setting::RecPntr], 3);
    EXPECT_EQ(view.recCount, "7");
  }
}

TEST_F(Settings, AChosenPointerIsWrittenAndReadBack) {
  view.selected[Setting::RecPntr] = 9;
  settings.cbxRecPntr_Click();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kRecPntr, 9) + ReadFrames(address::kRecPntr) +
                              ReadFrames(address::kRecCnt));
  EXPECT_EQ(view.selected[Setting::RecPntr], 9);
}

TEST_F(Settings, ChosenAveragesAreWrittenAndReadBack) {
  view.selected[Setting::FftAvgs] = 255;
  settings.cbxFFTAvgs_Click();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kFftAvg, 255) + ReadFrames(address::kFftAvg));
  EXPECT_EQ(view.selected[Setting::FftAvgs], 255);
}

TEST_F(Settings, NoAveragesAreWrittenAsOne) {
  view.selected[Setting::FftAvgs] = 0;
  settings.cbxFFTAvgs_Click();
  EXPECT_EQ(sensor.Word(address::kFftAvg), 1);
  EXPECT_EQ(view.selected[Setting::FftAvgs], 1);
}

TEST_F(Settings, AveragesOutOfTheListAreNotSelectedAfterAWrite) {
  for (const int word : {0, 256, 0xFFFF}) {
    SCOPED_TRACE(word);
    view.selected[Setting::FftAvgs] = 4;
    sensor.Set(address::kFftAvg, word);
    settings.Read_FFTAVGS();
    EXPECT_EQ(view.selected[Setting::FftAvgs], 4);
  }
}

TEST_F(Settings, NoAveragesAreShownAsReadWhenTheWindowIsRefreshed) {
  view.selected[Setting::FftAvgs] = 4;
  settings.Read_FftAvg();
  EXPECT_EQ(view.selected[Setting::FftAvgs], 0);
}

TEST_F(Settings, TheExponentOfTheAveragesIsKeptForTheLog) {
  struct Row {
    int averages;
    double exponent;
  };
  for (const Row& row : {Row{8, 3}, Row{1, 0}, Row{128, 7}, Row{0, 0}}) {
    sensor.Set(address::kFftAvg, row.averages);
    settings.Read_FFTAVGS();
    EXPECT_DOUBLE_EQ(AvgExponent, row.exponent) << row.averages;
  }
  sensor.Set(address::kFftAvg, 100);
  settings.Read_FFTAVGS();
  EXPECT_DOUBLE_EQ(std::exp2(AvgExponent), 100);
}

TEST_F(Settings, TheLogShowsEveryNumberOfAveragesAsAWholeNumber) {
  for (int averages = 1; averages <= 255; ++averages) {
    view.selected[Setting::FftAvgs] = averages;
    settings.cbxFFTAvgs_Click();
    const DataLogHead head{
        .baseName = "Datalog", .date = "date", .time = "time", .averageExponent = AvgExponent};
    const std::string text =
        DataLogText(core.record.Get(), FormatFor('.'), head, DataLogValues::Scaled);
    const std::size_t begin = text.find("AVG_Cnt,");
    ASSERT_NE(begin, std::string::npos);
    EXPECT_EQ(text.substr(begin, text.find('\r', begin) - begin),
              "AVG_Cnt," + std::to_string(averages));
  }
}

TEST_F(Settings, TheWorkingSignStandsInTheFrameForAFifthOfASecond) {
  std::string during;
  loop.At(clock.Monotonic() + 100ms, [&] { during = view.fraCap; });
  settings.ShowWorkingCapPrd();
  EXPECT_EQ(during, "WRITE/READ CAPT_CTRL");
  EXPECT_EQ(view.fraCaps, (Words{"WRITE/READ CAPT_CTRL", "Record settings"}));
  EXPECT_EQ(loop.Intervals(), std::vector{200ms});
  EXPECT_FALSE(loop.TimerRuns());
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(Settings, TheCaptionComesBackWhenAnotherSettingIsChangedMeanwhile) {
  loop.At(clock.Monotonic() + 100ms, [this] { settings.ShowWorkingCapPrd(); });
  settings.ShowWorkingCapPrd();
  EXPECT_TRUE(loop.ScriptDone());
  EXPECT_EQ(view.fraCap, "Record settings");
}

TEST_F(Settings, TheSignCanBeEndedEarly) {
  std::string afterwards;
  loop.At(clock.Monotonic() + 100ms, [&] {
    settings.HideWorkingSign();
    afterwards = view.fraCap;
  });
  settings.ShowWorkingCapPrd();
  EXPECT_EQ(afterwards, "Record settings");
  EXPECT_EQ(view.fraCap, "Record settings");
}

TEST_F(Settings, TheCaptionComesBackWhenTheWindowClosesMeanwhile) {
  loop.At(clock.Monotonic() + 100ms, [this] { desk.delay.Close(); });
  settings.ShowWorkingCapPrd();
  EXPECT_EQ(clock.Monotonic(), 100ms + startTime);
  EXPECT_EQ(view.fraCap, "Record settings");
}

// What a lost sensor seems to answer is what was received last, whatever that was.

}  // namespace
}  // namespace kestrel
