// Thresholds given for one range, when the sensor has another.
// SPDX-License-Identifier: MIT
#include "alarms/band_range.h"

#include <gtest/gtest.h>

#include "alarms/band_edits.h"
#include "alarms/band_history.h"

namespace kestrel {
namespace {

constexpr std::int32_t k1g = 1;
constexpr std::int32_t k5g = 2;
constexpr std::int32_t k20g = 3;
constexpr std::int32_t k70g = 4;
constexpr int kX1 = Alarm1Field(Axis::X);
constexpr int kY2 = Alarm2Field(Axis::Y);

TEST(BandRange, EveryRangeHasItsNameAndItsLsb) {
  EXPECT_EQ(RangeName(k1g), "0 - 1g");
  EXPECT_EQ(RangeName(k70g), "0 - 70g");
  EXPECT_DOUBLE_EQ(ThresholdLsb(k1g), 0.000015259);
  EXPECT_DOUBLE_EQ(ThresholdLsb(k5g), 0.0000763);
  EXPECT_DOUBLE_EQ(ThresholdLsb(k20g), 0.0003052);
  EXPECT_DOUBLE_EQ(ThresholdLsb(k70g), 0.0011921);
  EXPECT_EQ(RangeName(kRangeNotKnown), "");
  EXPECT_EQ(ThresholdLsb(kRangeNotKnown), 0);
}

TEST(BandRange, ACodeOfAnotherRangeIsTheNearestToItsG) {
  for (const std::int32_t from : {k1g, k5g, k20g, k70g}) {
    for (const std::int32_t to : {k1g, k5g, k20g, k70g}) {
      for (std::int32_t code = 1; code <= 0xFFFF; code += 577) {
        const RangeStep step = InRange(code, from, to);
        const double g = code * ThresholdLsb(from);
        if (step.above) {
          EXPECT_EQ(step.code, 0xFFFF);
          EXPECT_GT(g, 65535.5 * ThresholdLsb(to));
        } else {
          EXPECT_NEAR(step.code * ThresholdLsb(to), g, ThresholdLsb(to) / 2 * (1 + 1e-9));
        }
        EXPECT_EQ(step.below, step.code == 0);
        if (from == to) {
          EXPECT_EQ(step.code, code);
        }
      }
    }
  }
}

class Meant : public testing::Test {
 protected:
  void Set(int field, std::int32_t code, std::int32_t range) {
    table(field, 2, 1) = code;
    history.Keep("entry", range);
  }
  [[nodiscard]] std::string Notice(std::int32_t now) const {
    return RangeNoticeText(table, history.Ranges(), now);
  }

  BandTable table;
  BandHistory history{table};
};

TEST_F(Meant, AThresholdOfAnotherRangeIsNamedWithBothItsValues) {
  Set(kX1, 200, k70g);
  EXPECT_EQ(Notice(k70g), "");
  EXPECT_EQ(Notice(k5g),
            "The range is 0 - 5g now. 1 threshold was given for 0 - 70g; as a code of the range it "
            "means something else now: option 1, band 2, alarm 1 X was 0.238 g and is now 0.01526 "
            "g.");
  Set(kY2, 9, k20g);
  EXPECT_TRUE(Notice(k5g).starts_with(
      "The range is 0 - 5g now. 2 thresholds were given for other ranges; as codes"))
      << Notice(k5g);
}

TEST_F(Meant, ZeroMeansTheSameInEveryRangeAndSoDoBins) {
  Set(kX1, 200, k70g);
  Set(kX1, 0, k5g);
  Set(kFLowField, 40, k70g);
  EXPECT_EQ(Notice(k20g), "");
}

TEST_F(Meant, AsLongAsARangeIsNotKnownNothingIsSaid) {
  Set(kX1, 200, kRangeNotKnown);
  EXPECT_EQ(Notice(k5g), "");
  Set(kX1, 201, k70g);
  EXPECT_EQ(Notice(kRangeNotKnown), "");
  Set(kY2, 5, kRangeNotKnown);
  history.MeanUnknownFor(k5g);
  EXPECT_EQ(ValueAt(history.Ranges(), {kY2, 2, 1}), k5g);
  EXPECT_EQ(ValueAt(history.Ranges(), {kX1, 2, 1}), k70g);
}

TEST_F(Meant, UndoAndRedoBringTheRangesOfTheirStepAlone) {
  Set(kX1, 200, k70g);
  Set(kY2, 9, k70g);
  history.MeanFor(k5g);
  history.Undo();
  EXPECT_EQ(ValueAt(history.Ranges(), {kX1, 2, 1}), k5g) << "said after the step";
  history.Redo();
  EXPECT_EQ(ValueAt(history.Ranges(), {kY2, 2, 1}), k70g) << "as it was when it was entered";
}

TEST(KeptInG, EveryThresholdIsRecalculatedFromTheRangeItWasGivenFor) {
  BandTable table;
  BandEdits edits(table);
  table(kX1, 1, 0) = 1000;
  edits.History().Keep("reading", k70g);
  table(kY2, 6, 3) = 1000;
  edits.History().Keep("reading", k20g);
  BandEdits::Context now;
  now.range = k5g;
  const EditOutcome outcome = edits.KeepInG(now);
  EXPECT_TRUE(outcome.changed);
  EXPECT_EQ(table(kX1, 1, 0), 15624);  // 1.1921 g
  EXPECT_EQ(table(kY2, 6, 3), 4000);   // 0.3052 g
  EXPECT_EQ(RangeNoticeText(table, edits.History().Ranges(), k5g), "");
  int option = 0;
  edits.Undo(option);
  EXPECT_EQ(table(kX1, 1, 0), 1000);
  EXPECT_EQ(ValueAt(edits.History().Ranges(), {kX1, 1, 0}), k70g);
  EXPECT_EQ(ValueAt(edits.History().Ranges(), {kY2, 6, 3}), k20g);
}

TEST(KeptInG, WhatIsTypedAgainWithTheSameCodeIsMeantAsItIsTyped) {
  BandTable table;
  BandEdits edits(table);
  table(kX1, 1, 0) = 1000;
  edits.History().Keep("reading", k70g);
  const BandEdits::Context now{.scale = {ThresholdLsb(k5g), ThresholdLsb(k5g) * 65535},
                               .range = k5g};
  edits.Enter({1, ThresholdColumn(1, Axis::X)}, "0.0763", now);
  EXPECT_EQ(table(kX1, 1, 0), 1000);
  EXPECT_EQ(RangeNoticeText(table, edits.History().Ranges(), k5g), "");
}

}  // namespace
}  // namespace kestrel
