// The levels of time records: shape, median of the last records, RMS of the spectrum beside it.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis/levels.h"
#include "display/tables.h"
#include "numeric/number_texts.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

Sample Noise(int second) {
  return {.kind = RecordKind::Time, .noiseDensityG = 0.001, .second = second};
}

const LevelRow* RowOf(const LevelTable& table, const std::string& begin) {
  for (const LevelRow& row : table.rows) {
    if (row.name.starts_with(begin)) return &row;
  }
  return nullptr;
}

const StudyChoice kOverTime{.view = View::Time};

TEST(TimeLevels, HasTheShapeOfASine) {
  const LevelTable table = LevelsOf(StudyOf(
      kOverTime, {{.tones = {ToneAtBin(40, 1)}, .kind = RecordKind::Time, .offsetG = 0.5}}));
  EXPECT_EQ(table.summary, "512 samples");
  EXPECT_EQ(RowOf(table, "RMS, g")->values[0], "0.707");
  EXPECT_EQ(RowOf(table, "Peak, g")->values[1], "0.500");
  EXPECT_EQ(RowOf(table, "Mean, g")->values[2], "0.500");
  EXPECT_EQ(RowOf(table, "Crest factor")->values[0], "1.4");
  EXPECT_EQ(RowOf(table, "Crest factor")->note, "noise: 2.7 to 4.0");
  EXPECT_EQ(RowOf(table, "Kurtosis")->values[0], "1.5");
  EXPECT_EQ(RowOf(table, "Kurtosis")->note, "noise: 2.6 to 3.5");
}

TEST(TimeLevels, TheSpectrumsRmsStandsBesideItInEveryWindow) {
  for (const auto window : {analysis::WindowKind::Rectangular, analysis::WindowKind::Hanning,
                            analysis::WindowKind::FlatTop}) {
    StudyChoice choice = kOverTime;
    choice.timeWindow = window;
    const LevelTable table = LevelsOf(
        StudyOf(choice, {{.tones = {ToneAtBin(40, 1)}, .kind = RecordKind::Time, .offsetG = 2}}));
    EXPECT_EQ(RowOf(table, "RMS of its spectrum, g")->values[0], "0.707");
    EXPECT_EQ(RowOf(table, "RMS of its spectrum, g")->note, "0.0 dB re RMS");
  }
}

TEST(TimeLevels, TheMedianIsOfTheLastNineRecordsLikeIt) {
  std::vector<double> crests;
  std::vector<Sample> samples;
  for (int second = 1; second <= 12; ++second) {
    samples.push_back(Noise(second));
    // Others are no such records.
    samples.push_back({.tones = {ToneAtBin(40, 1)}, .second = 100 + second});
    Sample slower = Noise(200 + second);
    slower.option = 1;
    samples.push_back(slower);
  }
  samples.push_back(Noise(1000));
  for (const int second : {5, 6, 7, 8, 9, 10, 11, 12, 1000}) {
    const auto samplesG = SamplesOf(TakenOf(Noise(second)), Axis::X);
    crests.push_back(*analysis::LevelsOf(samplesG->values)->crest);
  }
  std::sort(crests.begin(), crests.end());
  const LevelTable table = LevelsOf(StudyOf(kOverTime, samples));
  ASSERT_NE(RowOf(table, "Crest factor, median of 9"), nullptr);
  EXPECT_EQ(RowOf(table, "Crest factor, median of 9")->values[0],
            analysis::NumberText(crests[4], 1));
  EXPECT_NE(RowOf(table, "Kurtosis, median of 9"), nullptr);
}

TEST(TimeLevels, OneRecordHasNoMedian) {
  const LevelTable table = LevelsOf(StudyOf(kOverTime, {Noise(1)}));
  EXPECT_EQ(RowOf(table, "Crest factor, median"), nullptr);
  EXPECT_NE(RowOf(LevelsOf(StudyOf(kOverTime, {Noise(1), Noise(2)})), "Crest factor, median of 2"),
            nullptr);
}

TEST(TimeLevels, WhatAStoppedCaptureLeftDoesNotCountTwice) {
  Study study = StudyOf(kOverTime, {Noise(1), Noise(2)});
  study.Take(Changed(Noise(3), [](Record& record) {
    record.origin.stopped = true;
    record.origin.countBefore = record.conditions.recordCount;
  }));
  EXPECT_NE(RowOf(LevelsOf(study), "Crest factor, median of 2"), nullptr);
}

TEST(TimeLevels, AnEarlierRecordLooksBackFromItself) {
  Study study = StudyOf(kOverTime, {Noise(1), Noise(2), Noise(3), Noise(4)});
  study.Select({2});
  EXPECT_NE(RowOf(LevelsOf(study), "Crest factor, median of 2"), nullptr);
}

TEST(TimeLevels, WhereNothingMovesThereIsNoShape) {
  const LevelTable table = LevelsOf(StudyOf(kOverTime, {{.kind = RecordKind::Time}}));
  EXPECT_EQ(RowOf(table, "Crest factor")->values[0], "");
  EXPECT_EQ(RowOf(table, "Kurtosis")->values[0], "");
}

TEST(TimeLevels, CodesThatAreNoneHaveNoLevels) {
  Study study(SampleClock, kOverTime);
  study.Take(Changed(Noise(1), [](Record& record) { record.settings.range = 7; }));
  EXPECT_EQ(LevelsOf(study).summary, "No samples can be determined from this record");
  EXPECT_TRUE(LevelsOf(study).rows.empty());
}

TEST(TimeLevels, InTheSpectrumsViewTheyAreTheSpectrums) {
  EXPECT_NE(RowOf(LevelsOf(StudyOf({}, {Noise(1)})), "Overall, g RMS"), nullptr);
}

}  // namespace
}  // namespace kestrel::study
