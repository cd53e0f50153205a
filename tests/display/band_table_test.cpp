// The sensor's alarm bands with their headroom.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "display/tables.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

// A line of 3,277 words at bin 40.
const Sample kTone{.tones = {ToneAtBin(40, 1)}};

SensorBands Bands() {
  SensorBands bands;
  bands[0][0] = {.lowBin = 30, .highBin = 50, .warning = 5000, .fault = 8000};
  bands[0][1] = {.lowBin = 35, .highBin = 45, .warning = 3000, .fault = 5000};
  bands[0][2] = {.lowBin = 40, .highBin = 40, .warning = 1000, .fault = 2000};
  bands[0][3] = {.lowBin = 100, .highBin = 110, .warning = 0, .fault = 100};
  bands[0][4] = {.lowBin = 60, .highBin = 50, .warning = 1, .fault = 1};  // in the wrong order
  return bands;
}

TEST(BandTable, HasTheStateAndHeadroomOfTheBandsInUse) {
  Study study = StudyOf({}, {kTone});
  EXPECT_TRUE(BandsOf(study).empty());
  study.SetSensorBands(0, Bands());
  const auto rows = BandsOf(study);
  ASSERT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows[0].number, 1);
  EXPECT_EQ(rows[0].range, "5,870 to 9,780");
  EXPECT_EQ(rows[0].largest, "1.00");
  EXPECT_EQ(rows[0].headroom, "+3.7");
  EXPECT_EQ(rows[0].state, "3.7 dB free");
  EXPECT_EQ(rows[1].kind, analysis::BandState::Warning);
  EXPECT_EQ(rows[1].headroom, "\u22120.8");
  EXPECT_EQ(rows[2].kind, analysis::BandState::Fault);
  EXPECT_EQ(rows[3].largest, "below 0.00031");
  EXPECT_EQ(rows[3].headroom, "");
}

TEST(BandTable, BarsArePartsOfTheLargestOfValueAndThresholds) {
  Study study = StudyOf({}, {kTone});
  study.SetSensorBands(0, Bands());
  for (const BandRow& row : BandsOf(study)) {
    EXPECT_DOUBLE_EQ(std::max({row.level, row.warning, row.fault}), 1);
  }
}

TEST(BandTable, FollowsFocusAndOption) {
  Study study = StudyOf({.focus = Axis::Y}, {kTone});
  study.SetSensorBands(0, Bands());
  EXPECT_TRUE(BandsOf(study).empty());
  study.Take(RecordOf({.tones = kTone.tones, .option = 1, .second = 1}));
  Choose(study, [](StudyChoice& choice) { choice.focus = Axis::X; });
  EXPECT_TRUE(BandsOf(study).empty());
}

TEST(BandTable, ATransformIsNotHeldAgainstTheSensorsWords) {
  Study study = StudyOf({}, {{.tones = kTone.tones, .kind = RecordKind::Time}});
  study.SetSensorBands(0, Bands());
  EXPECT_TRUE(BandsOf(study).empty());
}

TEST(BandTable, OfAllZerosAreFree) {
  Study study = StudyOf({}, {{}});
  study.SetSensorBands(0, Bands());
  for (const BandRow& row : BandsOf(study)) {
    EXPECT_EQ(row.kind, analysis::BandState::Free);
    EXPECT_EQ(row.level, 0);
  }
}

}  // namespace
}  // namespace kestrel::study
