// Behaviour of records as values.
// SPDX-License-Identifier: MIT
#include "record/record.h"

#include <gmock/gmock.h>

namespace kestrel {
namespace {

TEST(Record, InformationWordIsDecodedIntoSettings) {
  const RecordSettings settings = SettingsFromWords(0x9C08, 0x1234);
  EXPECT_EQ(settings.option, 2);
  EXPECT_EQ(settings.window, 1);
  EXPECT_EQ(settings.range, 3);
  EXPECT_EQ(settings.averages, 8);
  EXPECT_EQ(settings.recInfo, 0x9C08);
  EXPECT_EQ(settings.recCtrl, 0x1234);
}

TEST(Record, BitNineOfTheInformationWordMeansNothing) {
  EXPECT_EQ(SettingsFromWords(0x0200, 0).averages, 0);
  EXPECT_EQ(SettingsFromWords(0xFFFF, 0).averages, 0x1FF);
}

TEST(Record, WeightOfATimeSampleIsTwiceThatOfAMagnitude) {
  EXPECT_EQ(LsbWeightOf(0, RecordKind::Spectrum), 0.0000153);
  EXPECT_EQ(LsbWeightOf(3, RecordKind::Spectrum), 0.0011921);
  EXPECT_EQ(LsbWeightOf(3, RecordKind::Time), 0.0023842);
  EXPECT_THROW((void)LsbWeightOf(4, RecordKind::Spectrum), std::out_of_range);
}

TEST(Record, ValuesAreAsManyAsTheKindHas) {
  Record record;
  record.Of(Axis::Y).data(255) = 0.5;
  EXPECT_EQ(record.Values(Axis::Y).size(), 256U);
  EXPECT_EQ(record.Values(Axis::Y).back(), 0.5);
  record.kind = RecordKind::Time;
  EXPECT_EQ(record.Values(Axis::Y).size(), 512U);
  EXPECT_EQ(record.Width(), kTimeWidth);
}

TEST(Record, FullScaleFollowsTheRangeCode) {
  EXPECT_THAT((std::array{FullScaleOf(0), FullScaleOf(1), FullScaleOf(2), FullScaleOf(3)}),
              testing::ElementsAre(1, 5, 20, 70));
}

TEST(Record, AnEmptyOneWasNeverTaken) {
  Record record;
  EXPECT_FALSE(record.Taken());
  record.time = std::chrono::system_clock::from_time_t(1);
  EXPECT_TRUE(record.Taken());
}

TEST(Record, RescaledShowsItsWordsInTheRangeThatIsTold) {
  Record record;
  record.kind = RecordKind::Time;
  record.settings.range = 1;
  record.Of(Axis::Y).raw(511) = -300;
  record.Of(Axis::Z).raw(0) = 7;
  const Record scaled = Rescaled(record, 2);
  EXPECT_EQ(scaled.lsbWeight, LsbWeightOf(2, RecordKind::Time));
  EXPECT_EQ(scaled.scaledRange, 2);
  EXPECT_EQ(scaled.settings.range, 1) << "as it was taken";
  EXPECT_EQ(scaled.Of(Axis::Y).data(511), -300 * scaled.lsbWeight);
  EXPECT_EQ(scaled.Of(Axis::Z).data(0), 7 * scaled.lsbWeight);
}

}  // namespace
}  // namespace kestrel
