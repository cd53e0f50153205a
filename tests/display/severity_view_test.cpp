// Severity of the shelf: an estimate only of captures that cover the band and belong together.
// SPDX-License-Identifier: MIT
#include "display/severity_view.h"

#include <gmock/gmock.h>

#include "record/frequency.h"
#include "study/records.h"

namespace kestrel::study {
namespace {

using ::testing::HasSubstr;

// 50 Hz at 0.05 g RMS in every option that holds it.
RecordPointer Steady(int second, int option, int window = 1) {
  const int bin = static_cast<int>(std::lround(50 / BinWidth(option)));
  std::vector<std::pair<int, int>> lines;
  if (bin > 3 && bin < 250) lines = {{bin - 1, 116}, {bin, 232}, {bin + 1, 116}};
  return SpectrumRecord(second, lines, option, window);
}

TEST(SeverityView, BeforeTheFirstSpectrumNothingIsTold) {
  const SeverityView view = SeverityOf(StudyWithSeconds());
  EXPECT_FALSE(view.IsTold());
  EXPECT_EQ(view.options.size(), 4U);
  EXPECT_EQ(view.missing, (std::vector{3, 2, 1}));
  EXPECT_THAT(view.heading, HasSubstr("No zone"));
}

TEST(SeverityView, OneOptionDoesNotCoverTheBandAndSaysWhichAreMissing) {
  Study study = StudyWithSeconds();
  study.Take(Steady(0, 0));
  const SeverityView view = SeverityOf(study);
  EXPECT_FALSE(view.IsTold());
  EXPECT_EQ(view.missing, (std::vector{3, 2, 1}));
  EXPECT_THAT(view.note, HasSubstr("Capture at options 3, 2 and 1"));
  EXPECT_EQ(view.options[3].record, study.Records().Entries().front().record);
  EXPECT_EQ(view.options[0].record, nullptr);
}

TEST(SeverityView, ThreeOptionsTogetherGiveAnEstimate) {
  Study study = StudyWithSeconds();
  for (const int option : {3, 2, 1}) study.Take(Steady(100 * option, option));
  const SeverityView view = SeverityOf(study);
  ASSERT_TRUE(view.IsTold());
  // The line's RMS in mm/s, weighted at 50 Hz.
  const double g = 232 * LsbWeightOf(2, RecordKind::Spectrum) / std::numbers::sqrt2;
  EXPECT_NEAR(view.axes[0]->mmPerS, g * analysis::kVelocityOfG / 50, 0.1 * view.axes[0]->mmPerS);
  EXPECT_THAT(view.note, HasSubstr("An estimate, not a certificate"));
  EXPECT_THAT(view.note, HasSubstr("within 4 minutes"));
  EXPECT_TRUE(view.missing.empty());
}

TEST(SeverityView, ACaptureOfLongAgoOrOfAnotherWindowIsLeftOutAndNamed) {
  Study study = StudyWithSeconds();
  study.Take(Steady(0, 3));
  study.Take(Steady(3700, 2));
  study.Take(Steady(3710, 1));
  SeverityView view = SeverityOf(study);
  EXPECT_FALSE(view.IsTold());
  EXPECT_THAT(view.note, HasSubstr("Option 3 of 0 s is left out, more than an hour older."));
  study.Take(Steady(3720, 3, 2));
  study.Take(Steady(3730, 3));
  EXPECT_TRUE(SeverityOf(study).IsTold());
  study.Take(Steady(3740, 3, 0));
  view = SeverityOf(study);
  EXPECT_FALSE(view.IsTold());
  EXPECT_THAT(view.note, HasSubstr("other window"));
}

TEST(SeverityView, TheNewestOfEachOptionIsUsed) {
  Study study = StudyWithSeconds();
  for (const int option : {3, 2, 1}) study.Take(Steady(option, option));
  const double before = SeverityOf(study).axes[0]->mmPerS;
  for (const int option : {3, 2, 1}) study.Take(SpectrumRecord(10 + option, {}, option));
  EXPECT_LT(SeverityOf(study).axes[0]->mmPerS, before / 10);
}

TEST(SeverityView, LimitsThatAreNoneGiveNoZone) {
  Study study = StudyWithSeconds();
  for (const int option : {3, 2, 1}) study.Take(Steady(option, option));
  StudyChoice choice;
  choice.zones = {"own", 3, 2, 1};
  study.Choose(choice);
  const SeverityView view = SeverityOf(study);
  EXPECT_FALSE(view.IsTold());
  EXPECT_THAT(view.note, HasSubstr("must be above 0 and rise"));
}

TEST(SeverityView, CapturesThatDisagreeAreSaidToBeUncertain) {
  Study study = StudyWithSeconds();
  study.Take(Steady(0, 3));
  study.Take(SpectrumRecord(1, {{15, 5000}, {16, 9000}, {17, 5000}}, 2));
  study.Take(Steady(2, 1));
  const SeverityView view = SeverityOf(study);
  ASSERT_TRUE(view.IsTold());
  EXPECT_TRUE(view.axes[0]->uncertain);
  EXPECT_THAT(view.note, HasSubstr("X, Y, Z are uncertain"));
}

}  // namespace
}  // namespace kestrel::study
