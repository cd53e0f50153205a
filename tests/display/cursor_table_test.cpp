// The cursor's table: values, differences, members, and what cannot be told.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "display/tables.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const double kBin = BinWidth(0);
const Sample kTwo{.tones = {ToneAtBin(20, 1), ToneAtBin(40, 0.5)}};

using Rows = std::vector<std::vector<std::string>>;

TEST(CursorTable, SaysHowToHaveACursor) {
  Study study(SampleClock);
  EXPECT_EQ(CursorTableOf(study).summary, "No record yet");
  study.Take(RecordOf(kTwo));
  EXPECT_EQ(CursorTableOf(study).summary, "No cursor. C single, D delta, H harmonic, S sideband.");
  EXPECT_TRUE(CursorTableOf(study).table.rows.empty());
}

TEST(CursorTable, ASingleCursorHasTheValuesOfAllAxesShown) {
  Study study = StudyOf({}, {kTwo});
  PlaceCursor(study, CursorKind::Single, {.at = 20 * kBin});
  CursorTable table = CursorTableOf(study);
  EXPECT_EQ(table.summary, "Single, 3,913.7 Hz");
  EXPECT_EQ(table.table.heads, (std::vector<std::string>{"Axis", "g peak"}));
  EXPECT_EQ(table.table.rows, (Rows{{"X", "1.00"}, {"Y", "0.500"}, {"Z", "0.250"}}));
  Choose(study, [](StudyChoice& choice) {
    choice.shown = {false, true, false};
    choice.unit = analysis::HorizontalUnit::Cpm;
  });
  table = CursorTableOf(study);
  EXPECT_EQ(table.summary, "Single, 234,820.1 CPM");
  EXPECT_EQ(table.table.rows, (Rows{{"Y", "0.500"}}));
}

TEST(CursorTable, OffsetAndWhatIsBelowOneStepAreSaid) {
  Study study = StudyOf({}, {kTwo});
  PlaceCursor(study, CursorKind::Single, {.at = 0});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "offset, no vibration");
  PlaceCursor(study, CursorKind::Single, {.at = 200 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "below 0.00031");
  PlaceCursor(study, CursorKind::Single, {.at = 900 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "\u2013");
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  PlaceCursor(study, CursorKind::Single, {.at = 2 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "too low to integrate");
}

TEST(CursorTable, LevelsAreInTenthsOfADecibel) {
  Study study = StudyOf({}, {kTwo});
  Choose(study, [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Level; });
  PlaceCursor(study, CursorKind::Single, {.at = 20 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "\u22123.0");
  PlaceCursor(study, CursorKind::Single, {.at = 200 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "below \u221273.3");
}

TEST(CursorTable, ADeltaCursorHasDifferenceRatioAndReciprocal) {
  Study study = StudyOf({}, {kTwo});
  PlaceCursor(study, CursorKind::Delta, {.at = 20 * kBin, .second = 40 * kBin});
  const CursorTable table = CursorTableOf(study);
  EXPECT_EQ(table.summary, "Delta, 3,913.7 Hz; reciprocal 0.256 ms");
  EXPECT_EQ(table.table.rows[0],
            (std::vector<std::string>{"X", "1.00", "0.500", "\u22120.500", "\u22126.0"}));
}

TEST(CursorTable, ARatioOfDensitiesIsTheSameInDecibels) {
  Study study = StudyOf({}, {kTwo});
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Density; });
  PlaceCursor(study, CursorKind::Delta, {.at = 20 * kBin, .second = 40 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][4], "\u22126.0");
}

TEST(CursorTable, BelowOneStepThereIsNoDifference) {
  Study study = StudyOf({}, {kTwo});
  PlaceCursor(study, CursorKind::Delta, {.at = 20 * kBin, .second = 200 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0],
            (std::vector<std::string>{"X", "1.00", "below 0.00031", "", ""}));
  PlaceCursor(study, CursorKind::Delta, {.at = 20 * kBin, .second = 20 * kBin});
  EXPECT_EQ(CursorTableOf(study).summary, "Delta, 0.0 Hz");
}

TEST(CursorTable, AHarmonicCursorSaysWhatIsFoundAndWhatIsNot) {
  Study study = StudyOf({}, {kTwo});
  Choose(study, [](StudyChoice& choice) { choice.cursorMembers = 3; });
  PlaceCursor(study, CursorKind::Harmonic, {.at = 20.1 * kBin});
  CursorTable table = CursorTableOf(study);
  EXPECT_TRUE(table.summary.starts_with("Harmonic on X, f₀ 3,91")) << table.summary;
  EXPECT_TRUE(table.summary.ends_with("least squares over 2 members")) << table.summary;
  ASSERT_EQ(table.table.rows.size(), 3U);
  EXPECT_EQ(table.table.rows[2][2], "not found");
  PlaceCursor(study, CursorKind::Harmonic, {.at = 130 * kBin});
  table = CursorTableOf(study);
  EXPECT_TRUE(table.summary.ends_with(" Hz, no member found")) << table.summary;
}

TEST(CursorTable, ASidebandCursorSaysItsSpacing) {
  Study study =
      StudyOf({}, {{.tones = {ToneAtBin(100, 1), ToneAtBin(88, 0.3), ToneAtBin(112, 0.3)}}});
  PlaceCursor(study, CursorKind::Sideband, {.at = 100 * kBin, .second = 12.1 * kBin});
  CursorTable table = CursorTableOf(study);
  EXPECT_TRUE(table.summary.starts_with("Sidebands on X, spacing 2,34")) << table.summary;
  EXPECT_TRUE(table.summary.ends_with(", together \u22127.4 dB re centre")) << table.summary;
  PlaceCursor(study, CursorKind::Sideband, {.at = 180 * kBin, .second = 12 * kBin});
  table = CursorTableOf(study);
  EXPECT_TRUE(table.summary.ends_with(" Hz, no sideband found")) << table.summary;
}

TEST(CursorTable, OverTimePlacesTellSamplesApart) {
  Study study =
      StudyOf({.view = View::Time}, {{.tones = {ToneAtBin(20, 1)}, .kind = RecordKind::Time}});
  const double step = 1 / SampleFrequency(0);
  PlaceCursor(study, CursorKind::Single, {.at = 500 * step});
  const CursorTable table = CursorTableOf(study);
  EXPECT_EQ(table.summary, "Single, 4.991 ms");
  EXPECT_EQ(table.table.heads[1], "g");
  PlaceCursor(study, CursorKind::Delta, {.at = 0, .second = 100 * step});
  EXPECT_EQ(CursorTableOf(study).summary, "Delta, 0.998 ms; reciprocal 1,000 Hz");
}

TEST(CursorTable, ADifferenceIsReadInDecibels) {
  Study study = StudyOf({}, {kTwo});
  study.TakeReference();
  Choose(study, [](StudyChoice& choice) { choice.difference = true; });
  PlaceCursor(study, CursorKind::Single, {.at = 20 * kBin});
  CursorTable table = CursorTableOf(study);
  EXPECT_EQ(table.table.heads[1], "dB re reference");
  EXPECT_EQ(table.table.rows[0][1], "0.0");
  PlaceCursor(study, CursorKind::Single, {.at = 200 * kBin});
  EXPECT_EQ(CursorTableOf(study).table.rows[0][1], "\u2013");
}

}  // namespace
}  // namespace kestrel::study
