// Axes of a plot: there and back again, zooming, panning, and what range shows given values.
// SPDX-License-Identifier: MIT
#include "chart/axis_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "chart/view_history.h"

namespace kestrel {
namespace {

constexpr auto kLin = AxisKind::Linear;
constexpr auto kLog = AxisKind::Logarithmic;

void ExpectNear(const PlotRange& range, const PlotRange& wished) {
  EXPECT_NEAR(range.low, wished.low, 1e-9);
  EXPECT_NEAR(range.high, wished.high, 1e-9);
}

TEST(AxisMap, MapsThereAndBack) {
  const AxisMap across({0, 50000}, kLin, 40, 1040);
  EXPECT_DOUBLE_EQ(across.ToPixel(25000), 540);
  EXPECT_DOUBLE_EQ(across.FromPixel(540), 25000);
  const AxisMap up({0.001, 10}, kLog, 500, 100);
  EXPECT_DOUBLE_EQ(up.ToPixel(0.1), 300);
  EXPECT_NEAR(up.FromPixel(300), 0.1, 1e-12);
}

TEST(AxisMap, WhatALogarithmicAxisCannotShowLiesBelowIt) {
  const AxisMap up({0.001, 10}, kLog, 500, 100);
  EXPECT_GT(up.ToPixel(0), 1e5);
  EXPECT_GT(up.ToPixel(-3), 1e5);
  EXPECT_TRUE(std::isnan(up.ToPixel(std::nan(""))));
}

TEST(AxisMap, ZoomKeepsTheValueUnderThePointer) {
  for (const auto kind : {kLin, kLog}) {
    const PlotRange before{10, 1000};
    const PlotRange after = Zoomed(before, kind, 200, 2);
    const AxisMap from(before, kind, 0, 800);
    const AxisMap to(after, kind, 0, 800);
    EXPECT_NEAR(from.ToPixel(200), to.ToPixel(200), 1e-9);
    const PlotRange back = Zoomed(after, kind, 200, 0.5);
    EXPECT_NEAR(back.low, 10, 1e-9);
    EXPECT_NEAR(back.high, 1000, 1e-6);
  }
}

TEST(AxisMap, ZoomNeverEndsInARangeThatCannotBeShown) {
  PlotRange range{0, 50000};
  for (int i = 0; i < 500; ++i) range = Zoomed(range, kLin, 12345.678, 1.5);
  EXPECT_TRUE(IsShowable(range, kLin));
  EXPECT_TRUE(range.Holds(12345.678));
  EXPECT_EQ(Zoomed(range, kLin, 1, 0), range);
  EXPECT_EQ(Zoomed(range, kLin, 1, std::nan("")), range);
  EXPECT_EQ(Zoomed({1, 2}, kLog, -1, 2), (PlotRange{1, 2}));
}

TEST(AxisMap, PanMovesByAPartOfTheAxis) {
  EXPECT_EQ(Panned({0, 100}, kLin, 0.25), (PlotRange{25, 125}));
  const PlotRange moved = Panned({1, 100}, kLog, 0.5);
  EXPECT_NEAR(moved.low, 10, 1e-9);
  EXPECT_NEAR(moved.high, 1000, 1e-7);
}

TEST(AxisMap, ARangeIsBroughtWithinItsBounds) {
  EXPECT_EQ(Within({-20, 30}, kLin, {0, 100}), (PlotRange{0, 50}));
  EXPECT_EQ(Within({80, 130}, kLin, {0, 100}), (PlotRange{50, 100}));
  EXPECT_EQ(Within({-20, 130}, kLin, {0, 100}), (PlotRange{0, 100}));
  EXPECT_EQ(Within({20, 30}, kLin, {0, 100}), (PlotRange{20, 30}));
}

TEST(AxisMap, ARangeShowsAllValuesAndEndsOnRoundNumbers) {
  ExpectNear(RangeFor(0.001, 0.62, kLin), {0, 0.7});
  ExpectNear(RangeFor(-0.87, 1.1, kLin), {-1, 1.2});
  ExpectNear(RangeFor(0, 0, kLin), {0, 1});
  const PlotRange log = RangeFor(0.0013, 1.2, kLog);
  EXPECT_NEAR(log.low, 0.001, 1e-15);
  EXPECT_NEAR(log.high, 2, 1e-12);
  const PlotRange deep = RangeFor(0, 0.9, kLog);
  EXPECT_NEAR(std::log10(deep.high / deep.low), 8, 1e-9);
  ExpectNear(RangeFor(-87, -3, AxisKind::Decibel), {-90, 0});
}

TEST(AxisMap, ValuesThatAreNoneGiveAUsualRange) {
  const double none = std::nan("");
  for (const auto kind : {kLin, kLog, AxisKind::Decibel}) {
    EXPECT_TRUE(IsShowable(RangeFor(none, none, kind), kind));
    EXPECT_TRUE(IsShowable(RangeFor(0, 0, kind), kind));
    EXPECT_TRUE(IsShowable(RangeFor(5, 5, kind), kind));
    const double most = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(IsShowable(RangeFor(0, most, kind), kind));
  }
}

TEST(ViewHistory, GoesBackAndForwardAndDropsWhatLayAhead) {
  ViewHistory<int> views;
  for (const int view : {1, 2, 2, 3}) views.Add(view);
  EXPECT_FALSE(views.CanGoForward());
  EXPECT_EQ(views.GoBack(), 2);
  EXPECT_EQ(views.GoBack(), 1);
  EXPECT_FALSE(views.CanGoBack());
  EXPECT_EQ(views.GoForward(), 2);
  views.Add(7);
  EXPECT_FALSE(views.CanGoForward());
  EXPECT_EQ(views.GoBack(), 2);
}

TEST(ViewHistory, KeepsOnlyTheNewest) {
  ViewHistory<int> views(3);
  for (int view = 0; view < 10; ++view) views.Add(view);
  EXPECT_EQ(views.GoBack(), 8);
  EXPECT_EQ(views.GoBack(), 7);
  EXPECT_FALSE(views.CanGoBack());
}

}  // namespace
}  // namespace kestrel
