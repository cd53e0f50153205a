// What stands beside the pointer.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "display/scene.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const double kBin = BinWidth(0);
const Sample kTone{.tones = {ToneAtBin(20, 1)}};

TEST(ReadOut, HasPlaceAndValuesOfTheAxesOfItsPane) {
  Study study = StudyOf({}, {kTone});
  PlotReadOut readOut = ReadOutAt(study, 20.4 * kBin, 0);
  EXPECT_EQ(readOut.title, "3,913.7 Hz");
  ASSERT_EQ(readOut.rows.size(), 3U);
  EXPECT_EQ(readOut.rows[0].value, "1.00 g");
  EXPECT_EQ(readOut.rows[2].name, "Z");
  Choose(study, [](StudyChoice& choice) { choice.stacked = true; });
  readOut = ReadOutAt(study, 20 * kBin, 1);
  ASSERT_EQ(readOut.rows.size(), 1U);
  EXPECT_EQ(readOut.rows[0].value, "0.500 g");
  EXPECT_TRUE(ReadOutAt(study, 20 * kBin, 3).rows.empty());
  EXPECT_TRUE(ReadOutAt(study, 20 * kBin, -1).rows.empty());
}

TEST(ReadOut, SaysWhatCannotBeTold) {
  Study study = StudyOf({}, {kTone});
  EXPECT_EQ(ReadOutAt(study, kBin, 0).rows.at(0).value, "offset, no vibration");
  EXPECT_EQ(ReadOutAt(study, 200 * kBin, 0).rows.at(0).value, "below 0.00031 g");
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  EXPECT_EQ(ReadOutAt(study, 2 * kBin, 0).rows.at(0).value, "too low to integrate");
  // 1560.777 · 0.0003052 / 39,137 mm/s peak
  EXPECT_EQ(ReadOutAt(study, 200 * kBin, 0).rows.at(0).value, "below 0.000013 mm/s");
}

TEST(ReadOut, BeyondTheAxisThereIsNone) {
  const Study study = StudyOf({}, {kTone});
  for (const double x : {256 * kBin, 1e300, std::numeric_limits<double>::infinity(),
                         std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_TRUE(ReadOutAt(study, x, 0).rows.empty()) << x;
  }
  EXPECT_EQ(ReadOutAt(study, -1000, 0).title, "0.0 Hz");
  EXPECT_TRUE(ReadOutAt(Study(SampleClock), 10, 0).rows.empty());
}

TEST(ReadOut, PlacesAreInTheChosenUnitWithDigitsThatTellTenthsOfABin) {
  StudyChoice choice;
  choice.machine.rpm = 60 * BinWidth(0);
  choice.unit = analysis::HorizontalUnit::Order;
  Study study = StudyOf(choice, {kTone});
  EXPECT_EQ(ReadOutAt(study, 20 * kBin, 0).title, "20.0 \u00D7");
  choice.machine.rpm = 600000;
  study.Choose(choice);
  EXPECT_EQ(ReadOutAt(study, 20 * kBin, 0).title, "0.391 \u00D7");
  choice.machine.rpm.reset();
  study.Choose(choice);
  EXPECT_EQ(ReadOutAt(study, 20 * kBin, 0).title, "3,913.7 Hz");
}

TEST(ReadOut, TheReferenceStandsBesideWhereItMayBeCompared) {
  Study study = StudyOf({.shown = {true, false, false}}, {kTone});
  study.TakeReference();
  Sample louder = kTone;
  louder.tones[0].amplitudeG = 2;
  louder.second = 1;
  study.Take(RecordOf(louder));
  PlotReadOut readOut = ReadOutAt(study, 20 * kBin, 0);
  ASSERT_EQ(readOut.rows.size(), 3U);
  EXPECT_EQ(readOut.rows[1].value, "1.00 g");
  EXPECT_EQ(readOut.rows[2].value, "+6.0 dB");
  readOut = ReadOutAt(study, 200 * kBin, 0);
  EXPECT_EQ(readOut.rows.at(1).value, "below 0.00031 g");
  EXPECT_EQ(readOut.rows.at(2).value, "\u2013");
  louder.option = 1;
  study.Take(RecordOf(louder));
  EXPECT_EQ(ReadOutAt(study, 20 * kBin, 0).rows.size(), 1U);
}

TEST(ReadOut, OfADifferenceIsTheDifference) {
  Study study = StudyOf({.shown = {true, false, false}}, {kTone});
  study.TakeReference();
  Choose(study, [](StudyChoice& choice) { choice.difference = true; });
  const PlotReadOut readOut = ReadOutAt(study, 20 * kBin, 0);
  ASSERT_EQ(readOut.rows.size(), 1U);
  EXPECT_EQ(readOut.rows[0].value, "0.0 dB");
}

TEST(ReadOut, OverTimeIsOfTheNearestSample) {
  Sample sample = kTone;
  sample.kind = RecordKind::Time;
  const Study study = StudyOf({.view = View::Time}, {sample});
  const double step = 1 / SampleFrequency(0);
  const PlotReadOut readOut = ReadOutAt(study, 100.4 * step, 0);
  EXPECT_EQ(readOut.title, "0.998 ms");
  EXPECT_EQ(readOut.rows.size(), 3U);
  EXPECT_TRUE(ReadOutAt(study, 600 * step, 0).rows.empty());
}

}  // namespace
}  // namespace kestrel::study
