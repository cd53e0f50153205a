// Many points of one trace: least, largest and median of full columns, single points as they are.
// SPDX-License-Identifier: MIT
#include "chart/spread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace kestrel {
namespace {

const AxisMap kAcross({0, 100}, AxisKind::Linear, 0, 100);
const AxisMap kUp({0, 10}, AxisKind::Linear, 100, 0);

TEST(SpreadInColumns, FewPointsAreTheLineItself) {
  const std::vector<double> x{1.25, 5.5, 5.75, 40};
  const std::vector<double> y{1, 2, 3, 4};
  const Spread spread = SpreadInColumns(x, y, kAcross, kUp);
  EXPECT_TRUE(spread.area.empty());
  ASSERT_EQ(spread.lines.size(), 1U);
  ASSERT_EQ(spread.lines[0].size(), 4U);
  EXPECT_EQ(spread.lines[0][2], (PlotPoint{5.75, 70}));
}

TEST(SpreadInColumns, AFullColumnIsItsMedianAndWhatItReaches) {
  std::mt19937 random(5);
  std::vector<double> x;
  std::vector<double> y;
  for (int i = 0; i < 10'000; ++i) {
    x.push_back(i / 100.0);
    y.push_back(std::uniform_real_distribution(0.0, 10.0)(random));
  }
  const Spread spread = SpreadInColumns(x, y, kAcross, kUp);
  ASSERT_EQ(spread.area.size(), 100U);
  ASSERT_EQ(spread.lines.size(), 1U);
  ASSERT_EQ(spread.lines[0].size(), 100U);
  for (std::size_t column = 0; column < 100; ++column) {
    std::vector<double> values(y.begin() + static_cast<int>(column) * 100,
                               y.begin() + static_cast<int>(column + 1) * 100);
    std::ranges::sort(values);
    EXPECT_DOUBLE_EQ(spread.area[column].x, static_cast<double>(column));
    EXPECT_DOUBLE_EQ(spread.area[column].upper, kUp.ToPixel(values.back()));
    EXPECT_DOUBLE_EQ(spread.area[column].lower, kUp.ToPixel(values.front()));
    EXPECT_NEAR(spread.lines[0][column].y, kUp.ToPixel((values[49] + values[50]) / 2), 1e-9);
  }
}

TEST(SpreadInColumns, NothingIsDrawnAcrossWhatIsNoNumber) {
  const std::vector<double> x{10, 20, 30, 40, 50};
  const Spread spread =
      SpreadInColumns(x, std::vector<double>{1, 2, std::nan(""), 4, 5}, kAcross, kUp);
  ASSERT_EQ(spread.lines.size(), 2U);
  EXPECT_EQ(spread.lines[0].back().x, 20);
  EXPECT_EQ(spread.lines[1].front().x, 40);
}

TEST(SpreadInColumns, TheLineGoesOnToTheFirstPointsOutside) {
  const std::vector<double> x{-50, -5, 50, 120, 170};
  const Spread spread = SpreadInColumns(x, std::vector<double>(5, 1), kAcross, kUp);
  ASSERT_EQ(spread.lines.size(), 1U);
  EXPECT_EQ(spread.lines[0].front().x, -5);
  EXPECT_EQ(spread.lines[0].back().x, 120);
}

TEST(SpreadInColumns, NoPointsAreNothing) {
  EXPECT_TRUE(SpreadInColumns({}, {}, kAcross, kUp).lines.empty());
}

}  // namespace
}  // namespace kestrel
