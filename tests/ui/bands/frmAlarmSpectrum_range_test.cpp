// What the alarm editor says when the range changes: thresholds are codes of the range.
// SPDX-License-Identifier: MIT
#include <QFrame>
#include <QTest>

#include "alarms/alarm_file.h"
#include "device/rec_ctrl.h"
#include "ui/bands/alarm_editor_bench.h"

namespace kestrel {
namespace {

constexpr int k5g = 1;
constexpr int k20g = 2;
constexpr int k70g = 3;

class ThresholdsAndRange : public FrmAlarmSpectrum {
 protected:
  // Codes of the range 0 to 70 g, read from the sensor.
  void OpenAt70g(const Row& values = kBand) {
    Start();
    PutIntoSensor(3, 0, values);
    OpenByMenu();
    ASSERT_EQ(Values(3, 0), values);
    ASSERT_FALSE(Notice().isVisible());
  }
  void ChooseRange(int range) { Choose("cbxSignalRange", range); }
  QFrame& Notice() { return Get<QFrame>("rangeNotice"); }
  std::string NoticeText() { return Get<QLabel>("lblRangeNotice").text().toStdString(); }
};

TEST_F(ThresholdsAndRange, AChangeOfTheRangeIsToldWithWhatItDoesToAThreshold) {
  OpenAt70g();
  ChooseRange(k5g);
  ASSERT_TRUE(Notice().isVisible());
  EXPECT_EQ(NoticeText(),
            "The range is 0 - 5g now. 6 thresholds were given for 0 - 70g; as codes of the range "
            "they mean something else now: option 0, band 3, alarm 1 X was 0.143 g and is now "
            "0.00916 g.");
  EXPECT_EQ(Values(3, 0), kBand) << "nothing is changed without being asked for";
  ChooseRange(k70g);
  EXPECT_FALSE(Notice().isVisible()) << "they mean again what they meant";
}

TEST_F(ThresholdsAndRange, KeptInGTheyAreRecalculatedAndMarkedAsNotWritten) {
  OpenAt70g();
  ChooseRange(k5g);
  Click("cmdKeepG");
  EXPECT_FALSE(Notice().isVisible());
  EXPECT_EQ(Values(3, 0), (Row{40, 52, 1875, 1890, 1906, 3125, 3140, 3156}));
  EXPECT_EQ(Shown(3, 3), "0.14306");
  EXPECT_NE(Marks(3, 3) & BandGridModel::NotWritten, 0);
  EXPECT_EQ(Marks(3, kFLow) & BandGridModel::NotWritten, 0);
  EXPECT_EQ(Message(),
            "6 thresholds recalculated for the range 0 - 5g. Not yet written to the sensor.");
  EXPECT_EQ(State(), "Not yet written to the sensor: 6 values.");
  Click("cmdWriteAll");
  EXPECT_EQ(FromSensor(3, 0), (Row{40, 52, 1875, 1890, 1906, 3125, 3140, 3156}));
}

TEST_F(ThresholdsAndRange, UndoBringsTheCodesBackAndWithThemTheNotice) {
  OpenAt70g();
  ChooseRange(k5g);
  Click("cmdKeepG");
  Click("cmdUndo");
  EXPECT_EQ(Values(3, 0), kBand);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Notice().isVisible(); }));
  Click("cmdRedo");
  EXPECT_EQ(Values(3, 0)[2], 1875);
  EXPECT_FALSE(Notice().isVisible());
}

TEST_F(ThresholdsAndRange, WhatIsBeyondTheFullScaleOfTheNewRangeIsTold) {
  OpenAt70g({40, 52, 10000, 1, 0, 20000, 2, 0});  // 11.9 g and 23.8 g
  ChooseRange(k5g);
  Click("cmdKeepG");
  EXPECT_EQ(Values(3, 0), (Row{40, 52, 65535, 16, 0, 65535, 31, 0}));
  EXPECT_EQ(Message(),
            "4 thresholds recalculated for the range 0 - 5g; 2 lie above its full scale and were "
            "set to 5.00032 g. Not yet written to the sensor.");
}

TEST_F(ThresholdsAndRange, WhatIsTooSmallForTheNewRangeIsTold) {
  Start();
  ChooseRange(k5g);
  PutIntoSensor(3, 0, {40, 52, 3, 0, 0, 400, 0, 0});  // 0.2 mg and 30 mg
  OpenByMenu();
  ChooseRange(k70g);
  Click("cmdKeepG");
  EXPECT_EQ(Values(3, 0), (Row{40, 52, 0, 0, 0, 26, 0, 0}));
  EXPECT_EQ(Message(),
            "2 thresholds recalculated for the range 0 - 70g; 1 lies below its smallest step and "
            "was set to 0. Not yet written to the sensor.");
}

TEST_F(ThresholdsAndRange, TheCodesCanBeKeptAsTheyAre) {
  OpenAt70g();
  ChooseRange(k5g);
  Click("cmdKeepCodes");
  EXPECT_FALSE(Notice().isVisible());
  EXPECT_EQ(Values(3, 0), kBand);
  EXPECT_EQ(State(), "The sensor holds these bands.");
  ChooseRange(k20g);
  EXPECT_NE(NoticeText().find("given for 0 - 5g"), std::string::npos) << NoticeText();
}

TEST_F(ThresholdsAndRange, WhatIsTypedAfterTheChangeIsMeantForTheNewRange) {
  OpenAt70g();
  ChooseRange(k5g);
  Enter(3, 3, "2");
  const std::int32_t typed = Values(3, 0)[2];
  EXPECT_TRUE(NoticeText().starts_with("The range is 0 - 5g now. 5 thresholds")) << NoticeText();
  Click("cmdKeepG");
  EXPECT_EQ(Values(3, 0)[2], typed);
  EXPECT_EQ(Values(3, 0)[3], 1890);
}

TEST_F(ThresholdsAndRange, ReadingTheSameCodesAgainDoesNotMakeThemRight) {
  OpenAt70g();
  ChooseRange(k5g);
  Click("cmdReadAll");
  EXPECT_TRUE(Notice().isVisible());
  Click("cmdKeepG");
  Click("cmdWriteAll");
  Click("cmdReadAll");
  EXPECT_FALSE(Notice().isVisible());
}

TEST_F(ThresholdsAndRange, WithoutThresholdsThereIsNoNotice) {
  OpenAt70g({40, 52});
  ChooseRange(k5g);
  EXPECT_FALSE(Notice().isVisible());
}

// Alarms are judged on spectra, whatever is recorded meanwhile.
TEST_F(ThresholdsAndRange, AnotherRecordModeIsNoOtherRange) {
  OpenAt70g();
  const std::string usual = Hint();
  Choose("cbxRecMode", 2);
  EXPECT_FALSE(Notice().isVisible());
  EXPECT_EQ(Hint(),
            usual +
                " The mode is Manual Time: thresholds are shown on the scale of "
                "time records. Alarms are judged on spectra, where each of them counts half.");
  ChooseRange(k5g);
  EXPECT_TRUE(Notice().isVisible());
  Click("cmdKeepG");
  EXPECT_EQ(Values(3, 0)[2], 1875);
}

TEST_F(ThresholdsAndRange, AFileIsLoadedForTheRangeThatIsNamed) {
  BandTable table;
  table(Alarm1Field(Axis::X), 1, 0) = 100;
  files_.contents[kProposedFile] = AlarmFileText(table);
  OpenAt70g();
  ChooseRange(k5g);
  ChooseFile(kProposed);
  Click("cmdReadFile");
  EXPECT_EQ(Message(), "24 bands loaded from " + kProposedFile.string() +
                           ". Not yet written to the sensor. The file holds codes; the g values "
                           "shown hold good for the range 0 - 5g.");
  EXPECT_FALSE(Notice().isVisible());
}

TEST_F(ThresholdsAndRange, TheLinesOnThePlotFollowTheRange) {
  OpenAt70g();
  Get<QRadioButton>("opX").click();
  ChooseRange(k5g);
  EXPECT_DOUBLE_EQ(Window().Overlay().Lines()(kAlarm1Level, 3).y1, 120 * 0.0000763);
  Click("cmdKeepG");
  EXPECT_DOUBLE_EQ(Window().Overlay().Lines()(kAlarm1Level, 3).y1, 1875 * 0.0000763);
}

// The bands stay in the sensor when their editor is closed.
TEST_F(ThresholdsAndRange, TheMainWindowTellsItTooAndKeepsThemInG) {
  OpenAt70g();
  editor_->close();
  ChooseRange(k5g);
  EXPECT_TRUE(Text("lblNotice_bandRange").startsWith("Alarm bands: The range is 0 - 5g now."));
  Press("cmdNotice_bandRange");
  EXPECT_EQ(Values(3, 0)[2], 1875);
  EXPECT_EQ(Window().findChild<QLabel*>("lblNotice_bandRange"), nullptr);
}

}  // namespace
}  // namespace kestrel
