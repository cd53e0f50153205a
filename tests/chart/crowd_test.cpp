// Many records shaded: least, largest and median of every column, gaps left out.
// SPDX-License-Identifier: MIT
#include "chart/crowd.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestrel {
namespace {

constexpr auto kLin = AxisKind::Linear;

TEST(CrowdInColumns, TellsLeastLargestAndMedian) {
  const std::vector<double> x{0, 10};
  const std::vector<std::vector<double>> records{{1, 1}, {5, 5}, {2, 2}};
  const auto crowd = CrowdInColumns(x, records, AxisMap({0, 10}, kLin, 0, 100),
                                    AxisMap({0, 10}, kLin, 100, 0), 100);
  ASSERT_EQ(crowd.area.size(), 100U);
  for (std::size_t i = 0; i < 100; ++i) {
    EXPECT_NEAR(crowd.area[i].upper, 50, 1e-9);
    EXPECT_NEAR(crowd.area[i].lower, 90, 1e-9);
    EXPECT_NEAR(crowd.median[i].y, 80, 1e-9);
  }
}

TEST(CrowdInColumns, SlopesBetweenPoints) {
  const auto crowd =
      CrowdInColumns(std::vector<double>{0, 10}, std::vector<std::vector<double>>{{0, 10}},
                     AxisMap({0, 10}, kLin, 0, 100), AxisMap({0, 10}, kLin, 100, 0), 100);
  EXPECT_NEAR(crowd.median[24].y, 75.5, 1e-9);
}

TEST(CrowdInColumns, ThePeakOfAColumnCounts) {
  std::vector<double> x;
  std::vector<double> y(1000, 1);
  for (int i = 0; i < 1000; ++i) x.push_back(i);
  y[555] = 9;
  const auto crowd =
      CrowdInColumns(x, std::vector<std::vector<double>>{y}, AxisMap({0, 1000}, kLin, 0, 100),
                     AxisMap({0, 10}, kLin, 100, 0), 100);
  EXPECT_NEAR(crowd.area[55].upper, 10, 1e-9);
  EXPECT_NEAR(crowd.area[54].upper, 90, 1e-9);
}

TEST(CrowdInColumns, MissingValuesCountNot) {
  const double none = std::nan("");
  const std::vector<std::vector<double>> records{{none, none}, {5, 5}, {2}};
  const auto crowd =
      CrowdInColumns(std::vector<double>{0, 10}, records, AxisMap({0, 10}, kLin, 0, 100),
                     AxisMap({0, 10}, kLin, 100, 0), 100);
  EXPECT_NEAR(crowd.area[50].upper, 50, 1e-9);
  EXPECT_NEAR(crowd.area[50].lower, 50, 1e-9);
  EXPECT_TRUE(CrowdInColumns({}, records, {}, {}, 100).area.empty());
}

}  // namespace
}  // namespace kestrel
