// The lines of the cursor: flags, rings, members found and missing, spans.
// SPDX-License-Identifier: MIT
#include "display/cursors.h"

#include <gtest/gtest.h>

#include <cmath>

#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const double kBin = BinWidth(0);

// Harmonics 1, 2 and 4 of bin 20.3; the third is missing.
const Sample kHarmonics{.tones = {ToneAtBin(20.3, 1), ToneAtBin(40.6, 0.5), ToneAtBin(81.2, 0.2)}};
// Sidebands 12.5 bins about bin 100.
const Sample kSidebands{.tones = {ToneAtBin(100, 1), ToneAtBin(87.5, 0.3), ToneAtBin(112.5, 0.3)}};

std::string Flags(const SceneCursor& cursor) {
  std::string flags;
  for (const PlotMember& member : cursor.members) {
    flags += (flags.empty() ? "" : " ") + member.flag;
  }
  return flags;
}

TEST(Cursors, ThereAreNoLinesWithoutARecordAKindOrAPlace) {
  Study empty(SampleClock);
  PlaceCursor(empty, CursorKind::Single, {.at = 1000});
  EXPECT_TRUE(CursorOf(empty).members.empty());
  Study study = StudyOf({}, {kHarmonics});
  PlaceCursor(study, CursorKind::None, {.at = 1000});
  EXPECT_TRUE(CursorOf(study).members.empty());
  PlaceCursor(study, CursorKind::Harmonic, {});
  EXPECT_TRUE(CursorOf(study).members.empty());
}

TEST(Cursors, ASingleCursorStandsOnTheCurveAndReadsAllTraces) {
  Study study = StudyOf({}, {kHarmonics});
  PlaceCursor(study, CursorKind::Single, {.at = 20 * kBin});
  const SceneCursor cursor = CursorOf(study);
  ASSERT_EQ(cursor.members.size(), 1U);
  EXPECT_EQ(cursor.members[0].flag, "A");
  EXPECT_DOUBLE_EQ(cursor.members[0].y, study.SpectrumOf(Axis::X)->curve->values[20]);
  EXPECT_EQ(cursor.readOut.rows.size(), 3U);
  EXPECT_EQ(cursor.spoken, "Single, 3,913.7 Hz");
}

TEST(Cursors, OverTheOffsetThereIsNoRing) {
  Study study = StudyOf({}, {kHarmonics});
  PlaceCursor(study, CursorKind::Single, {.at = kBin});
  EXPECT_TRUE(std::isnan(CursorOf(study).members.at(0).y));
}

TEST(Cursors, ADeltaCursorSpansItsLines) {
  Study study = StudyOf({}, {kHarmonics});
  PlaceCursor(study, CursorKind::Delta, {.at = 20 * kBin, .second = 40 * kBin});
  const SceneCursor cursor = CursorOf(study);
  EXPECT_EQ(Flags(cursor), "A B");
  EXPECT_TRUE(cursor.isSpan);
  EXPECT_EQ(cursor.spanText, "3,913.7 Hz");
  PlaceCursor(study, CursorKind::Delta, {.at = 20 * kBin});
  EXPECT_EQ(Flags(CursorOf(study)), "A");
  EXPECT_FALSE(CursorOf(study).isSpan);
}

TEST(Cursors, MembersThatAreNotFoundHaveNoRing) {
  Study study = StudyOf({}, {kHarmonics});
  Choose(study, [](StudyChoice& choice) { choice.cursorMembers = 4; });
  PlaceCursor(study, CursorKind::Harmonic, {.at = 20.4 * kBin});
  const SceneCursor cursor = CursorOf(study);
  EXPECT_EQ(Flags(cursor), "f₀ 2× 3× 4×");
  EXPECT_EQ(cursor.members[0].kind, MemberKind::Main);
  EXPECT_EQ(cursor.members[1].kind, MemberKind::Found);
  EXPECT_NEAR(cursor.members[1].x, 40.6 * kBin, 0.02 * kBin);
  EXPECT_EQ(cursor.members[2].kind, MemberKind::Missing);
  EXPECT_TRUE(std::isnan(cursor.members[2].y));
  EXPECT_EQ(cursor.members[3].kind, MemberKind::Found);
}

TEST(Cursors, ASidebandCursorNamesItsCentreAndSides) {
  Study study = StudyOf({}, {kSidebands});
  Choose(study, [](StudyChoice& choice) { choice.cursorMembers = 4; });
  PlaceCursor(study, CursorKind::Sideband, {.at = 100 * kBin, .second = 12.4 * kBin});
  const SceneCursor cursor = CursorOf(study);
  EXPECT_EQ(Flags(cursor), "−2 −1 c +1 +2");
  EXPECT_EQ(cursor.members[1].kind, MemberKind::Found);
  EXPECT_EQ(cursor.members[2].kind, MemberKind::Main);
  EXPECT_EQ(cursor.members[4].kind, MemberKind::Missing);
}

TEST(Cursors, OverTimeHarmonicAndSidebandCursorsAreSingle) {
  Sample sample = kHarmonics;
  sample.kind = RecordKind::Time;
  for (const CursorKind kind : {CursorKind::Harmonic, CursorKind::Sideband}) {
    Study study = StudyOf({.view = View::Time}, {sample});
    PlaceCursor(study, kind, {.at = 0.002, .second = 0.001});
    EXPECT_EQ(ShownKind(study.Choice()), CursorKind::Single);
    EXPECT_EQ(Flags(CursorOf(study)), "A");
    EXPECT_EQ(Dragged(study, 0, 0.003).at, 0.003);
    EXPECT_EQ(Dragged(study, 0, 0.003).second, 0.001);
  }
}

TEST(Cursors, TheRingStandsOnTheDifferenceWhereThatIsShown) {
  Study study = StudyOf({}, {kHarmonics});
  study.TakeReference();
  Sample louder = kHarmonics;
  for (Tone& tone : louder.tones) tone.amplitudeG *= 2;
  louder.second = 1;
  study.Take(RecordOf(louder));
  Choose(study, [](StudyChoice& choice) { choice.difference = true; });
  PlaceCursor(study, CursorKind::Single, {.at = 20 * kBin});
  EXPECT_NEAR(CursorOf(study).members.at(0).y, 20 * std::log10(2), 0.01);
}

TEST(Cursors, OnALogarithmicAxisNothingIsDrawnAtHalfTheSmallestValue) {
  Study study = StudyOf({.up = Scale::Logarithmic}, {kHarmonics});
  PlaceCursor(study, CursorKind::Single, {.at = 200 * kBin});
  const auto& curve = *study.SpectrumOf(Axis::X)->curve;
  ASSERT_EQ(curve.values[200], 0);
  EXPECT_DOUBLE_EQ(CursorOf(study).members.at(0).y, curve.floor[200] / 2);
}

TEST(Cursors, TheRingIsInThePaneOfTheFocus) {
  Study study = StudyOf({.focus = Axis::Z, .stacked = true}, {kHarmonics});
  PlaceCursor(study, CursorKind::Single, {.at = 20 * kBin});
  EXPECT_EQ(CursorOf(study).members.at(0).pane, 2);
  Choose(study, [](StudyChoice& choice) { choice.shown = {true, true, false}; });
  EXPECT_EQ(CursorOf(study).members.at(0).pane, 1);
}

}  // namespace
}  // namespace kestrel::study
