// Points of a trace thinned, cut to the view, broken at gaps and dashed.
// SPDX-License-Identifier: MIT
#include "chart/trace_points.h"

#include <array>
#include <set>

#include "chart/plot_scene.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace kestrel {
namespace {

constexpr auto kLin = AxisKind::Linear;
const double kNone = std::nan("");

TEST(ReducedToColumns, KeepsEveryExtremeOfEveryColumn) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> height(0, 100);
  PlotLine all;
  for (int i = 0; i < 10000; ++i) all.push_back({i / 100.0, height(random)});
  const PlotLine kept = ReducedToColumns(all);
  EXPECT_LE(kept.size(), 400U);
  const auto extremes = [](const PlotLine& line, int column) {
    PlotRange range{1e9, -1e9};
    for (const PlotPoint& point : line) {
      if (static_cast<int>(point.x) != column) continue;
      range = {std::min(range.low, point.y), std::max(range.high, point.y)};
    }
    return range;
  };
  for (int column = 0; column < 100; ++column) {
    EXPECT_EQ(extremes(kept, column), extremes(all, column));
  }
  EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end(), [](auto& a, auto& b) { return a.x < b.x; }));
}

TEST(ReducedToColumns, LeavesFewPointsAlone) {
  const PlotLine few{{0.1, 3}, {0.2, 5}, {0.9, 4}, {7, 1}};
  EXPECT_EQ(ReducedToColumns(few), few);
}

TEST(LinesInView, AGapIsNeverBridged) {
  const std::vector<double> x{0, 1, 2, 3, 4, 5};
  const std::vector<double> y{1, 2, kNone, 4, 5, INFINITY};
  const auto lines =
      LinesInView(x, y, AxisMap({0, 5}, kLin, 0, 500), AxisMap({0, 10}, kLin, 100, 0));
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], (PlotLine{{0, 90}, {100, 80}}));
  EXPECT_EQ(lines[1], (PlotLine{{300, 60}, {400, 50}}));
}

TEST(LinesInView, HoldsOneNeighbourOnEitherSideOfTheView) {
  std::vector<double> x;
  for (int i = 0; i < 100; ++i) x.push_back(i);
  const auto lines =
      LinesInView(x, x, AxisMap({40.5, 44.5}, kLin, 0, 500), AxisMap({0, 100}, kLin, 100, 0));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].size(), 6U);
  EXPECT_LT(lines[0].front().x, 0);
  EXPECT_GT(lines[0].back().x, 500);
}

TEST(LinesInView, NothingIsNoLine) {
  EXPECT_TRUE(
      LinesInView({}, {}, AxisMap({0, 1}, kLin, 0, 9), AxisMap({0, 1}, kLin, 9, 0)).empty());
}

TEST(Dashes, AlternateAlongTheLine) {
  const PlotLine line{{0, 0}, {10, 0}, {10, 10}};
  const auto dashes = Dashes(line, std::array{3.0, 2.0}, {-1, 11});
  ASSERT_EQ(dashes.size(), 4U);
  EXPECT_EQ(dashes[1].front(), (PlotPoint{5, 0}));
  EXPECT_EQ(dashes[1].back(), (PlotPoint{8, 0}));
  EXPECT_NEAR(dashes[2].front().y, 0, 1e-9);
  EXPECT_NEAR(dashes[3].back().y, 8, 1e-9);
}

TEST(Dashes, WhatLiesFarAwayCostsNothing) {
  const auto dashes = Dashes(PlotLine{{0, -1e6}, {5, 1e6}}, std::array{3.0, 2.0}, {0, 100});
  EXPECT_GE(dashes.size(), 20U);
  EXPECT_LE(dashes.size(), 22U);
}

TEST(Dashes, FollowAPatternOfSeveralLengths) {
  const PlotLine line{{0, 0}, {20, 0}};
  const auto dashes = Dashes(line, std::array{6.0, 2.0, 1.0, 2.0}, {-1, 1});
  ASSERT_EQ(dashes.size(), 4U);
  EXPECT_NEAR(dashes[1].front().x, 8, 1e-9);
  EXPECT_NEAR(dashes[1].back().x, 9, 1e-9);
  EXPECT_NEAR(dashes[2].front().x, 11, 1e-9);
  EXPECT_NEAR(dashes[2].back().x, 17, 1e-9);
  EXPECT_NEAR(dashes[3].front().x, 19, 1e-9);
}

TEST(Dashes, GoOnWhereAPartThatIsNotSeenEnds) {
  const PlotLine line{{0, 0}, {0, 7}, {20, 7}};  // 7 pixels below what is seen
  const auto dashes = Dashes(line, std::array{6.0, 2.0, 1.0, 2.0}, {6.999, 8});
  ASSERT_FALSE(dashes.empty());
  EXPECT_NEAR(dashes[0].front().x, 1, 1e-2);  // 8 along the line: the dot
  EXPECT_NEAR(dashes[0].back().x, 2, 1e-2);
}

TEST(DashPattern, EveryNumberHasItsOwn) {
  EXPECT_TRUE(DashPattern(0).empty());
  std::set<std::vector<double>> patterns;
  for (int dash = 0; dash < kTraceDashes; ++dash) {
    const auto pattern = DashPattern(dash);
    patterns.insert({pattern.begin(), pattern.end()});
  }
  EXPECT_EQ(patterns.size(), std::size_t{kTraceDashes});
}

}  // namespace
}  // namespace kestrel
