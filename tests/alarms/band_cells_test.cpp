// Cells of the band grid: columns, texts, corrections, problems.
// SPDX-License-Identifier: MIT
#include "alarms/band_cells.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kestrel {
namespace {

constexpr int kFLow = 1;
constexpr int kAlarm1X = 3;
constexpr int kAlarm2Z = 8;

constexpr BandScale Scale(double gLsb) {
  return {.gLsb = gLsb, .gMax = gLsb * 65535};
}
constexpr BandScale kRange5g = Scale(0.0000763);

CheckedEntry Check(int column, const std::string& text, char decimalMark = '.') {
  return CheckEntry(column, text, kRange5g, decimalMark);
}

TEST(BandCellsTest, ColumnsAreTheFieldsInTheOrderOfTheRegisters) {
  const std::vector<int> fields{0, 1, 3, 4, 5, 7, 8, 9};
  for (int column = 1; column <= kBandColumns; ++column) {
    EXPECT_EQ(FieldOf(column), fields[static_cast<std::size_t>(column - 1)]);
  }
  EXPECT_EQ(CellName({2, kFLow}), "Band 2, F-low");
  EXPECT_EQ(CellName({6, kAlarm2Z}), "Band 6, alarm 2 Z");
}

TEST(BandCellsTest, TheTextOfAThresholdStandsForItsCodeAloneInEveryRange) {
  for (const double single : {0.000015259, 0.0000763, 0.0003052, 0.0011921}) {
    for (const double gLsb : {single, 2 * single}) {
      const BandScale scale = Scale(gLsb);
      std::string last;
      for (std::int32_t code = 0; code <= 65535; ++code) {
        const std::string text = CellText(kAlarm1X, code, scale);
        const CheckedEntry entry = CheckEntry(kAlarm1X, text, scale, '.');
        ASSERT_EQ(entry.value, code) << text << " g at " << gLsb << " g per LSB";
        ASSERT_EQ(entry.correction, "") << text;
        ASSERT_NE(text, last);
        last = text;
      }
    }
  }
}

TEST(BandCellsTest, ThresholdsHaveNoMoreDecimalsThanTheRangeNeeds) {
  EXPECT_EQ(CellText(kAlarm1X, 1000, Scale(0.000015259)), "0.01526");
  EXPECT_EQ(CellText(kAlarm1X, 1000, Scale(0.0000763)), "0.07630");
  EXPECT_EQ(CellText(kAlarm1X, 1000, Scale(0.0003052)), "0.3052");
  EXPECT_EQ(CellText(kAlarm1X, 1000, Scale(0.0011921)), "1.192");
}

TEST(BandCellsTest, WithoutARangeAThresholdHasNoText) {
  EXPECT_EQ(CellText(kAlarm1X, 1000, {}), "-");
  EXPECT_EQ(CellText(kFLow, 40, {}), "40");
}

TEST(BandCellsTest, BinsAreTakenAsTyped) {
  for (const char* text : {"40", " 40 ", "+40", "40.0", "4e1"}) {
    EXPECT_EQ(Check(kFLow, text).value, 40) << text;
    EXPECT_EQ(Check(kFLow, text).correction, "") << text;
  }
  EXPECT_EQ(Check(kFLow, "0").value, 0);
  EXPECT_EQ(Check(kFLow, "255").value, 255);
}

TEST(BandCellsTest, ABinStopsAtTheEndsOfTheSpectrum) {
  EXPECT_EQ(Check(kFLow, "300").value, 255);
  EXPECT_EQ(Check(kFLow, "300").correction, "\"300\" is above 255; 255 taken.");
  EXPECT_EQ(Check(kFLow, "-1").value, 0);
  EXPECT_EQ(Check(kFLow, "-1").correction, "\"-1\" is below 0; 0 taken.");
  EXPECT_EQ(Check(kFLow, "1e999").value, 255);
  EXPECT_EQ(Check(kFLow, "255.4").value, 255);
}

TEST(BandCellsTest, ABinIsAWholeNumberRoundedHalfToEven) {
  EXPECT_EQ(Check(kFLow, "12.5").value, 12);
  EXPECT_EQ(Check(kFLow, "13.5").value, 14);
  EXPECT_EQ(Check(kFLow, "12.5").correction, "\"12.5\" is not a whole number; 12 taken.");
}

TEST(BandCellsTest, WhatIsNoNumberCountsAs0) {
  for (const char* text : {"abc", "", " ", "12 bins", "-", "nan", "inf", "1,5", "0x10"}) {
    EXPECT_EQ(Check(kFLow, text).value, 0) << text;
    EXPECT_EQ(Check(kFLow, text).correction,
              "\"" + std::string(text) + "\" is not a number; 0 taken.");
  }
  EXPECT_EQ(Check(kAlarm1X, "abc").correction, "\"abc\" is not a number; 0.00000 g taken.");
}

TEST(BandCellsTest, AThresholdStopsAt0AndAtFullScale) {
  EXPECT_EQ(Check(kAlarm1X, "5.1").value, 65535);
  EXPECT_EQ(Check(kAlarm1X, "5.1").correction,
            "\"5.1\" is above the full scale of the range; 5.00032 g taken.");
  EXPECT_EQ(Check(kAlarm1X, "1e999").value, 65535);
  EXPECT_EQ(Check(kAlarm1X, "-0.1").value, 0);
  EXPECT_EQ(Check(kAlarm1X, "-0.1").correction, "\"-0.1\" is below 0; 0.00000 g taken.");
}

TEST(BandCellsTest, AThresholdBecomesTheNearestCode) {
  EXPECT_EQ(Check(kAlarm1X, "0.1").value, 1311);  // 1310.6
  EXPECT_EQ(Check(kAlarm1X, "0.1").correction, "");
  EXPECT_EQ(Check(kAlarm1X, "1e-9").value, 0);
}

TEST(BandCellsTest, TheUsersDecimalMarkIsAcceptedBesideThePoint) {
  EXPECT_EQ(Check(kAlarm1X, "0,1", ',').value, 1311);
  EXPECT_EQ(Check(kAlarm1X, "0.1", ',').value, 1311);
  EXPECT_EQ(Check(kAlarm1X, "0,1", '.').correction, "\"0,1\" is not a number; 0.00000 g taken.");
}

TEST(BandCellsTest, ALongTextIsQuotedShortAndOnOneLine) {
  EXPECT_EQ(Check(kFLow, std::string(50, 'a')).correction,
            "\"" + std::string(24, 'a') + "...\" is not a number; 0 taken.");
  EXPECT_EQ(Check(kFLow, "a\nb").correction, "\"a b\" is not a number; 0 taken.");
  EXPECT_EQ(Check(kFLow, std::string(23, 'a') + "ü" + "bc").correction,
            "\"" + std::string(23, 'a') + "...\" is not a number; 0 taken.");
}

TEST(BandCellsTest, ABandWithItsEdgesTheWrongWayRoundIsAProblemOfBothEdges) {
  BandTable table;
  table(kFLowField, 2, 1) = 40;
  table(kFHighField, 2, 1) = 39;
  for (const int column : {1, 2}) {
    const auto problem = ProblemOf(table, {2, column}, 1);
    ASSERT_TRUE(problem.has_value());
    EXPECT_TRUE(problem->empty);
  }
  EXPECT_FALSE(ProblemOf(table, {2, kAlarm1X}, 1).has_value());
  EXPECT_FALSE(ProblemOf(table, {2, 1}, 0).has_value());
  EXPECT_EQ(ProblemsOf(table, 1),
            std::vector<std::string>{"Band 2: F-low is above F-high, so it covers no bin."});
  table(kFHighField, 2, 1) = 40;
  EXPECT_TRUE(ProblemsOf(table, 1).empty());
}

TEST(BandCellsTest, AnAlarm1AboveAlarm2IsAProblemOfItsAxis) {
  BandTable table;
  table(Alarm1Field(Axis::Y), 6, 3) = 201;
  table(Alarm2Field(Axis::Y), 6, 3) = 200;
  for (const int column : {4, 7}) {
    const auto problem = ProblemOf(table, {6, column}, 3);
    ASSERT_TRUE(problem.has_value());
    EXPECT_FALSE(problem->empty);
  }
  EXPECT_FALSE(ProblemOf(table, {6, 3}, 3).has_value());
  EXPECT_EQ(ProblemsOf(table, 3),
            std::vector<std::string>{"Band 6: alarm 1 is above alarm 2 on Y."});
}

}  // namespace
}  // namespace kestrel
