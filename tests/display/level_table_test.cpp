// The levels of spectra: overall, free bands, over the reference, and what is below the last step.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "display/tables.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

using Values = std::array<std::string, 3>;

const Sample kTone{.tones = {ToneAtBin(40, 1)}};

const LevelRow* RowOf(const LevelTable& table, const std::string& name) {
  for (const LevelRow& row : table.rows) {
    if (row.name == name) return &row;
  }
  ADD_FAILURE() << "no row " << name;
  return nullptr;
}

TEST(LevelTable, HasOverallAndLargestOfEachAxis) {
  const LevelTable table = LevelsOf(StudyOf({}, {kTone}));
  EXPECT_EQ(table.summary, "294 Hz to 50.0 kHz");
  EXPECT_EQ(RowOf(table, "Overall, g RMS")->values, (Values{"0.707", "0.353", "0.177"}));
  EXPECT_EQ(RowOf(table, "Largest, g peak")->values, (Values{"1.00", "0.500", "0.250"}));
  EXPECT_EQ(RowOf(table, "at, Hz")->values, (Values{"7,830", "7,830", "7,830"}));
  EXPECT_EQ(table.AsText().heads.size(), 5U);
  EXPECT_EQ(table.AsText().rows.size(), table.rows.size());
}

TEST(LevelTable, NothingIsBelowWhatTheBinsMayHide) {
  const LevelTable table = LevelsOf(StudyOf({}, {{}}));
  // Half a step in each of 254 bins: 0.0003052 / 2 · √(254 / 2 / 1.5) = 0.0014 g
  EXPECT_EQ(RowOf(table, "Overall, g RMS")->values[0], "below 0.0015");
  EXPECT_EQ(RowOf(table, "Largest, g peak")->values[0], "below 0.00031");
  EXPECT_EQ(RowOf(table, "at, Hz")->values[0], "");
}

TEST(LevelTable, FreeBandsSayTheirRangeAndWhatIsMissing) {
  Study study = StudyOf({}, {kTone});
  Choose(study, [](StudyChoice& choice) {
    choice.bands = {{.name = "Tone", .fromHz = 7000, .toHz = 9000},
                    {.name = "Low", .fromHz = 100, .toHz = 9000},
                    {.name = "Shaft", .fromHz = 5, .toHz = 50},
                    {.name = "None", .fromHz = 9000, .toHz = 10},
                    {.name = "NaN", .fromHz = std::numeric_limits<double>::quiet_NaN()}};
  });
  const LevelTable table = LevelsOf(study);
  EXPECT_EQ(RowOf(table, "Tone, g RMS")->values[1], "0.353");
  EXPECT_EQ(RowOf(table, "Tone, g RMS")->note, "7,000 Hz to 9,000 Hz");
  EXPECT_EQ(RowOf(table, "Low, g RMS")->values[0], "0.707 (part)");
  EXPECT_EQ(RowOf(table, "Shaft, g RMS")->values, (Values{"", "", ""}));
  EXPECT_EQ(RowOf(table, "Shaft, g RMS")->note, "5.00 Hz to 50.0 Hz; Capture at option 3");
  EXPECT_EQ(RowOf(table, "None, g RMS")->values, (Values{"", "", ""}));
  EXPECT_NE(RowOf(table, "NaN, g RMS")->note, "");
}

TEST(LevelTable, TheLevelOverTheReferenceIsARow) {
  Study study = StudyOf({}, {kTone});
  study.TakeReference();
  Sample louder = kTone;
  louder.tones[0].amplitudeG = 2;
  louder.second = 1;
  study.Take(RecordOf(louder));
  EXPECT_EQ(RowOf(LevelsOf(study), "re reference, dB")->values, (Values{"+6.0", "+6.0", "+6.0"}));
  louder.window = WindowShape::FlatTop;
  louder.second = 2;
  study.Take(RecordOf(louder));
  const LevelTable table = LevelsOf(study);
  EXPECT_EQ(RowOf(table, "re reference, dB")->values, (Values{"", "", ""}));
  EXPECT_EQ(RowOf(table, "re reference, dB")->note, "reference has other window: Hanning");
  study.Take(RecordOf({.second = 3}));
  EXPECT_EQ(RowOf(LevelsOf(study), "re reference, dB")->values, (Values{"", "", ""}));
  Choose(study, [](StudyChoice& choice) { choice.extras.clear(); });
  const LevelTable without = LevelsOf(study);
  for (const LevelRow& row : without.rows) EXPECT_NE(row.name, "re reference, dB");
}

TEST(LevelTable, SaysWhyThereIsNone) {
  Study study(SampleClock);
  EXPECT_EQ(LevelsOf(study).summary, "No record yet");
  study.Take(Changed(kTone, [](Record& record) { record.settings.window = 3; }));
  EXPECT_EQ(LevelsOf(study).summary, "No level can be determined from this trace");
  EXPECT_EQ(RowOf(LevelsOf(study), "Overall, g RMS")->values, (Values{"", "", ""}));
  study.Take(Changed({.second = 1}, [](Record& record) { record.settings.range = -1; }));
  EXPECT_EQ(LevelsOf(study).summary, "No spectrum can be determined from this record");
}

}  // namespace
}  // namespace kestrel::study
