// Blocks of cells from and to a spreadsheet's clipboard.
// SPDX-License-Identifier: MIT
#include "alarms/band_clipboard.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(BandClipboardTest, RowsEndWithAnyLineEnd) {
  const TextBlock expected{{"1", "2"}, {"3", "4"}};
  EXPECT_EQ(ParseTextBlock("1\t2\n3\t4"), expected);
  EXPECT_EQ(ParseTextBlock("1\t2\n3\t4\n"), expected);
  EXPECT_EQ(ParseTextBlock("1\t2\r\n3\t4\r\n"), expected);
  EXPECT_EQ(ParseTextBlock("1\t2\r3\t4"), expected);
}

TEST(BandClipboardTest, QuotesAreTakenOff) {
  EXPECT_EQ(ParseTextBlock("\"0,5\"\t2"), (TextBlock{{"0,5", "2"}}));
  EXPECT_EQ(ParseTextBlock("\"a \"\"b\"\"\tc\nd\"\te"), (TextBlock{{"a \"b\"\tc\nd", "e"}}));
  EXPECT_EQ(ParseTextBlock("5\"\t2"), (TextBlock{{"5\"", "2"}}));
  EXPECT_EQ(ParseTextBlock("\"5\t2"), (TextBlock{{"\"5", "2"}}));
}

TEST(BandClipboardTest, EmptyCellsAndRowsKeepTheirPlace) {
  EXPECT_EQ(ParseTextBlock("\t1\t"), (TextBlock{{"", "1", ""}}));
  EXPECT_EQ(ParseTextBlock("\n1"), (TextBlock{{""}, {"1"}}));
  EXPECT_TRUE(ParseTextBlock("").empty());
}

TEST(BandClipboardTest, ABlockBecomesTabsAndLineFeedsInTheUsersDecimalMark) {
  BandTable table;
  table(kFHighField, 1, 2) = 52;
  table(kFHighField, 2, 2) = 60;
  table(Alarm1Field(Axis::X), 1, 2) = 1000;
  const CellBlock block{{1, 2}, {2, 3}};
  const BandScale scale{.gLsb = 0.0003052, .gMax = 0.0003052 * 65535};
  EXPECT_EQ(BlockText(table, block, 2, scale, '.'), "52\t0.3052\n60\t0.0000");
  EXPECT_EQ(BlockText(table, block, 2, scale, ','), "52\t0,3052\n60\t0,0000");
  EXPECT_EQ(BlockText(table, block, 2, {}, '.'), "52\t\n60\t");
}

}  // namespace
}  // namespace kestrel
