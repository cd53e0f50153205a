// The peak table: order, digits, bounds, names, and what cannot be told.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "display/tables.h"
#include "numeric/number_texts.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const Sample kThree{.tones = {ToneAtBin(20.3, 1), ToneAtBin(60.4, 3), ToneAtBin(150.2, 2)}};

TEST(PeakTable, IsSortedByAmplitudeOverAllAxesShown) {
  Study study = StudyOf({}, {kThree});
  PeakTable table = PeaksOf(study);
  EXPECT_EQ(table.summary, "9");
  ASSERT_EQ(table.rows.size(), 9U);
  for (std::size_t i = 1; i < table.rows.size(); ++i) {
    EXPECT_GE(table.rows[i - 1].amplitude, table.rows[i].amplitude);
  }
  EXPECT_NEAR(table.rows[0].hz, 60.4 * BinWidth(0), 1);
  Choose(study, [](StudyChoice& choice) { choice.shown = {false, false, true}; });
  table = PeaksOf(study);
  ASSERT_EQ(table.rows.size(), 3U);
  EXPECT_EQ(table.rows[0].axis, Axis::Z);
}

TEST(PeakTable, DigitsFollowTheBound) {
  Sample noisy = kThree;
  noisy.noiseDensityG = 0.001;
  const Study study = StudyOf({.shown = {true, false, false}}, {noisy});
  const PeakTable table = PeaksOf(study);
  ASSERT_FALSE(table.rows.empty());
  const PeakRow& row = table.rows[0];
  const analysis::Line& line = study.SpectrumOf(Axis::X)->peaks[0].line;
  const auto frequency = analysis::WithBound(line.hz, line.hzBound);
  EXPECT_EQ(row.frequency, frequency.value);
  EXPECT_EQ(row.frequencyBound, frequency.bound);
  EXPECT_TRUE(row.frequencyBound.starts_with("±")) << row.frequencyBound;
  EXPECT_EQ(row.valueBound, analysis::WithBound(line.peakG, *line.peakBoundG).bound);
  EXPECT_EQ(row.value.size() - row.value.find('.'),
            row.valueBound.size() - row.valueBound.find('.'));
}

TEST(PeakTable, LevelsHaveABoundInDecibels) {
  Study study = StudyOf({}, {kThree});
  Choose(study, [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Level; });
  const PeakTable table = PeaksOf(study);
  EXPECT_EQ(table.valueHead, "dB re 1 g RMS");
  EXPECT_NEAR(table.rows.at(0).amplitude, 20 * std::log10(3 / std::sqrt(2)), 0.05);
  EXPECT_FALSE(table.rows.at(0).valueBound.empty());
}

TEST(PeakTable, VelocityLeavesOutWhatIsTooLow) {
  Study study =
      StudyOf({.shown = {true, false, false}}, {{.tones = {ToneAtBin(2, 3), ToneAtBin(60.4, 1)}}});
  EXPECT_EQ(PeaksOf(study).rows.size(), 2U);
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  const PeakTable table = PeaksOf(study);
  ASSERT_EQ(table.rows.size(), 1U);
  EXPECT_NEAR(table.rows[0].amplitude, analysis::kVelocityOfG / (60.4 * BinWidth(0)), 0.001);
}

TEST(PeakTable, HasOrdersOfASpeedAlone) {
  Study study = StudyOf({.shown = {true, false, false}}, {kThree});
  EXPECT_EQ(PeaksOf(study).rows.at(0).order, "");
  for (const double none : {0.0, -5.0, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
    Choose(study, [&](StudyChoice& choice) { choice.machine.rpm = none; });
    EXPECT_EQ(PeaksOf(study).rows.at(0).order, "") << none;
  }
  Choose(study, [](StudyChoice& choice) { choice.machine.rpm = 60 * 30.2 * BinWidth(0); });
  EXPECT_TRUE(PeaksOf(study).rows.at(0).order.starts_with("2.00")) << PeaksOf(study).rows[0].order;
}

TEST(PeakTable, FrequenciesAreInTheChosenUnit) {
  StudyChoice choice;
  choice.unit = analysis::HorizontalUnit::Bin;
  Study study = StudyOf(choice, {kThree});
  PeakTable table = PeaksOf(study);
  EXPECT_EQ(table.frequencyHead, "bin");
  EXPECT_TRUE(table.rows.at(0).frequency.starts_with("60.4")) << table.rows[0].frequency;
  choice.unit = analysis::HorizontalUnit::Order;
  study.Choose(choice);
  table = PeaksOf(study);
  EXPECT_EQ(table.frequencyHead, "Hz");
}

TEST(PeakTable, NamesTheKnownFrequencyThatAPeakLiesIn) {
  StudyChoice choice{.shown = {true, false, false}};
  choice.machine.rpm = 60 * 20.3 * BinWidth(0);
  const PeakTable table = PeaksOf(StudyOf(choice, {kThree}));
  ASSERT_EQ(table.rows.size(), 3U);
  EXPECT_TRUE(table.rows[0].nearest.starts_with("Shaft 3")) << table.rows[0].nearest;
  EXPECT_EQ(table.rows[1].nearest, "");
  EXPECT_TRUE(table.rows[2].nearest.starts_with("Shaft")) << table.rows[2].nearest;
}

TEST(PeakTable, LinesTooCloseAreUnresolved) {
  const Study study = StudyOf({.shown = {true, false, false}},
                              {{.tones = {ToneAtBin(60.4, 1), ToneAtBin(62.1, 0.8)}}});
  const PeakTable table = PeaksOf(study);
  ASSERT_FALSE(table.rows.empty());
  EXPECT_TRUE(table.rows[0].unresolved);
  EXPECT_EQ(table.rows[0].valueBound, "");
  EXPECT_EQ(table.AsText().rows[0].back(), "unresolved");
}

TEST(PeakTable, SaysTheFloor) {
  Study study = StudyOf({.shown = {true, false, false}}, {kThree});
  Choose(study, [](StudyChoice& choice) { choice.peaks.floorG = 1.5; });
  EXPECT_EQ(PeaksOf(study).summary, "2 above 1.50 g");
}

TEST(PeakTable, SaysWhyThereAreNone) {
  Study study(SampleClock);
  EXPECT_EQ(PeaksOf(study).summary, "No record yet");
  study.Take(RecordOf(kThree));
  Choose(study, [](StudyChoice& choice) { choice.shown = {false, false, false}; });
  EXPECT_EQ(PeaksOf(study).summary, "No axis is shown");
  Choose(study, [](StudyChoice& choice) {
    choice.shown = {true, true, true};
    choice.quantity.quantity = analysis::Quantity::Velocity;
    choice.quantity.lowestHz = 1e6;
  });
  EXPECT_EQ(PeaksOf(study).summary,
            "Velocity from 1,000 kHz cannot be determined from this record");
  EXPECT_TRUE(PeaksOf(study).rows.empty());
}

TEST(PeakTable, AnAxisThatIsRefusedDoesNotHideTheOthers) {
  Study study(SampleClock);
  study.Take(Changed(kThree, [](Record& record) {
    record.Of(Axis::X).data(17) = std::numeric_limits<double>::quiet_NaN();
  }));
  EXPECT_EQ(PeaksOf(study).rows.size(), 6U);
}

TEST(PeakTable, ATimeRecordsPeaksAreToldInEitherView) {
  Sample sample = kThree;
  sample.kind = RecordKind::Time;
  StudyChoice choice{.view = View::Time, .timeQuantity = TimeQuantity::Velocity};
  choice.timeFromHz = 1;  // refused over time
  const Study study = StudyOf(choice, {sample});
  ASSERT_TRUE(study.Refused());
  EXPECT_EQ(PeaksOf(study).rows.size(), 9U);
  EXPECT_EQ(PeaksOf(StudyOf({.view = View::Time}, {kThree})).rows.size(), 9U);
}

TEST(PeakTable, ZerosAndFullScaleHaveNone) {
  for (const double word : {0.0, 65535.0}) {
    Study study(SampleClock);
    study.Take(Changed({}, [word](Record& record) {
      for (int i = 0; i < 256; ++i) record.Of(Axis::X).raw(i) = word;
      record = Rescaled(record, record.settings.range);
    }));
    Choose(study, [](StudyChoice& choice) { choice.shown = {true, false, false}; });
    EXPECT_EQ(PeaksOf(study).summary, "0");
  }
}

}  // namespace
}  // namespace kestrel::study
