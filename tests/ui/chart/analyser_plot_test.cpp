// The plot as it is drawn: traces where their values are, grid on the pixel, hatches, layers.
// SPDX-License-Identifier: MIT
#include "ui/chart/analyser_plot.h"

#include <QAccessible>
#include <QSignalSpy>

#include "ui/chart/label_painter.h"
#include "ui/chart/sample_scenes.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

bool IsNear(QColor a, QColor b, int within) {
  return std::abs(a.red() - b.red()) <= within && std::abs(a.green() - b.green()) <= within &&
         std::abs(a.blue() - b.blue()) <= within;
}

// At the pixel or beside it: a line may pass between two.
bool HasInk(const QImage& picture, QPoint pixel, QColor ink, int within) {
  for (int dx = -1; dx <= 1; ++dx) {
    for (int dy = -1; dy <= 1; ++dy) {
      if (IsNear(picture.pixelColor(pixel + QPoint(dx, dy)), ink, within)) return true;
    }
  }
  return false;
}

class AnalyserPlotTest : public ::testing::TestWithParam<double> {
 protected:
  AnalyserPlotTest() {
    plot_.setPalette(Look::Light().Palette());
    plot_.resize(800, 500);
  }
  QImage Picture(double ratio = 1) { return RenderOf(plot_, ratio); }
  // In device pixels.
  QPointF Place(double x, double y, double ratio = 1, std::size_t pane = 0) {
    const PaneLayout laid = plot_.Laid().panes[pane];
    return QPointF(laid.across.ToPixel(x), laid.up.ToPixel(y)) * ratio;
  }
  static PlotScene OneTrace(std::vector<double> x, std::vector<double> y) {
    PlotScene scene = EmptyScene();
    scene.across.validFrom = -INFINITY;
    SceneTrace trace;
    trace.ink = PlotInk::Z;
    trace.x = std::move(x);
    trace.y = std::move(y);
    scene.panes[0].traces = {trace};
    return scene;
  }

  AnalyserPlot plot_;
};

using AnalyserPlotAtScale = AnalyserPlotTest;

TEST_P(AnalyserPlotAtScale, ATracePassesWhereItsValuesAre) {
  const double ratio = GetParam();
  const PlotScene scene = OneTrace({0, 10000, 20000, 30000, 50000}, {0.1, 0.9, 0.3, 0.3, 0.7});
  plot_.SetScene(scene);
  const QImage picture = Picture(ratio);
  const QColor ink = Look::Light().Ink(PlotInk::Z);
  for (int i = 1; i < 200; ++i) {
    const double x = i * 250.0;
    const auto& trace = scene.panes[0].traces[0];
    const auto after = std::upper_bound(trace.x.begin(), trace.x.end(), x);
    const auto k = static_cast<std::size_t>(after - trace.x.begin());
    if (k >= trace.x.size()) continue;
    const double part = (x - trace.x[k - 1]) / (trace.x[k] - trace.x[k - 1]);
    const QPointF place = Place(x, trace.y[k - 1] + part * (trace.y[k] - trace.y[k - 1]), ratio);
    const QPoint pixel(static_cast<int>(place.x()), static_cast<int>(place.y()));
    EXPECT_TRUE(HasInk(picture, pixel, ink, 110)) << x;
    EXPECT_FALSE(
        IsNear(picture.pixelColor(pixel + QPoint(0, static_cast<int>(25 * ratio))), ink, 60))
        << x;
  }
}

TEST_P(AnalyserPlotAtScale, TheGridIsOneDevicePixelOnThePixel) {
  const double ratio = GetParam();
  plot_.SetScene(OneTrace({}, {}));
  const QImage picture = Picture(ratio);
  const PlotLayout laid = plot_.Laid();
  ASSERT_GE(laid.acrossTicks.size(), 5U);
  for (const AxisTick& tick : laid.acrossTicks) {
    if (tick.value == 0 || tick.value == 50000) continue;  // the frame
    const int x =
        static_cast<int>(std::floor(laid.panes[0].across.ToPixel(tick.value) * ratio + 1e-6));
    const int y = static_cast<int>((laid.panes[0].canvas.top() + 37) * ratio);
    EXPECT_EQ(picture.pixelColor(x, y), Look::Light().grid) << tick.value;
    EXPECT_EQ(picture.pixelColor(x - 1, y), Look::Light().canvas) << tick.value;
    EXPECT_EQ(picture.pixelColor(x + 1, y), Look::Light().canvas) << tick.value;
  }
}

INSTANTIATE_TEST_SUITE_P(Scales, AnalyserPlotAtScale, ::testing::Values(1, 1.25, 1.5, 2, 3));

TEST_F(AnalyserPlotTest, BinsThatHoldOffsetAreHatchedAndTheirTraceIsGrey) {
  PlotScene scene = OneTrace({0, 4000, 8000, 12000, 50000}, {0.5, 0.5, 0.5, 0.5, 0.5});
  scene.across.validFrom = 8000;
  plot_.SetScene(scene);
  const QImage picture = Picture();
  const QPointF grey = Place(2000, 0.5);
  const QPointF live = Place(30000, 0.5);
  EXPECT_TRUE(IsNear(picture.pixelColor(grey.toPoint() - QPoint(0, 0)), Look::Light().axis, 60));
  EXPECT_TRUE(IsNear(picture.pixelColor(live.toPoint()), Look::Light().Ink(PlotInk::Z), 100));
  int hatched = 0;
  int ground = 0;
  const QPointF corner = Place(500, 0.3);
  for (int dx = 0; dx < 20; ++dx) {
    for (int dy = 0; dy < 20; ++dy) {
      const QColor pixel = picture.pixelColor(corner.toPoint() + QPoint(dx, dy));
      ground += pixel == Look::Light().hatchGround ? 1 : 0;
      hatched += pixel.lightness() < Look::Light().hatchGround.lightness() - 15 ? 1 : 0;
    }
  }
  EXPECT_GT(hatched, 20);
  EXPECT_GT(ground, 100);
}

TEST_F(AnalyserPlotTest, AGapIsNotBridged) {
  plot_.SetScene(OneTrace({0, 10000, 20000, 30000, 50000}, {0.5, 0.5, kNoValue, 0.5, 0.5}));
  const QImage picture = Picture();
  const QColor ink = Look::Light().Ink(PlotInk::Z);
  EXPECT_TRUE(IsNear(picture.pixelColor(Place(5100, 0.5).toPoint()), ink, 120));
  EXPECT_TRUE(IsNear(picture.pixelColor(Place(40100, 0.5).toPoint()), ink, 120));
  for (double x = 11000; x < 29000; x += 777) {
    EXPECT_FALSE(IsNear(picture.pixelColor(Place(x, 0.5).toPoint()), ink, 120)) << x;
  }
}

TEST_F(AnalyserPlotTest, ZerosOnALogarithmicAxisAreBelowItNotOnIt) {
  PlotScene scene = OneTrace({0, 10000, 20000, 30000}, {0, 0, 0, 0});
  scene.panes[0].up = AxisKind::Logarithmic;
  plot_.SetScene(scene);
  const QImage picture = Picture();
  const QRect canvas = plot_.Laid().panes[0].canvas.toAlignedRect().adjusted(1, 1, -1, -1);
  for (int y = canvas.top(); y < canvas.bottom(); ++y) {
    for (int x = canvas.left(); x < canvas.right(); x += 7) {
      ASSERT_FALSE(IsNear(picture.pixelColor(x, y), Look::Light().Ink(PlotInk::Z), 60));
    }
  }
}

TEST_F(AnalyserPlotTest, RecordsOfAnySizeAreDrawn) {
  for (const auto& scene :
       {OneTrace({}, {}), OneTrace({5000}, {0.5}), OneTrace({1, 2}, {kNoValue, kNoValue}),
        OneTrace({0, 1, 2}, {1e300, -1e300, 1e300}), OneTrace({0, 1, 2}, {1, 2}), PlotScene{}}) {
    for (const auto kind : {AxisKind::Linear, AxisKind::Logarithmic, AxisKind::Decibel}) {
      PlotScene shown = scene;
      for (PlotPane& pane : shown.panes) pane.up = kind;
      shown.across.kind = kind == AxisKind::Decibel ? AxisKind::Linear : kind;
      plot_.SetScene(shown);
      EXPECT_FALSE(Picture().isNull());
    }
  }
  plot_.SetScene(OneTrace({5000}, {0.5}));
  EXPECT_TRUE(
      IsNear(Picture().pixelColor(Place(5000, 0.5).toPoint()), Look::Light().Ink(PlotInk::Z), 40));
}

TEST_F(AnalyserPlotTest, AMovingCursorDrawsNoTraceAgain) {
  plot_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&plot_));
  plot_.SetScene(OverlaidScene());
  QCoreApplication::processEvents();
  const int traces = plot_.TracePaints();
  PaintedRegion painted(plot_);
  SceneCursor cursor = DeltaCursor();
  cursor.isSpan = false;
  plot_.SetCursor(cursor);
  QCoreApplication::processEvents();
  cursor.members[0].x += 500;
  painted.region = {};
  plot_.SetCursor(cursor);
  QTest::mouseMove(&plot_, QPoint(500, 250));
  QCoreApplication::processEvents();
  EXPECT_FALSE(painted.region.isEmpty());
  EXPECT_EQ(plot_.TracePaints(), traces);
}

TEST_F(AnalyserPlotTest, WhatIsPaintedInPartsLooksAsPaintedWhole) {
  if (plot_.devicePixelRatioF() != 1) GTEST_SKIP() << "screens are photographed at scale 1 only";
  plot_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&plot_));
  plot_.SetScene(OverlaidScene());
  plot_.SetCursor(HarmonicCursor());
  for (int i = 0; i < 30; ++i) {
    SceneCursor cursor = i % 2 == 0 ? HarmonicCursor() : DeltaCursor();
    for (PlotMember& member : cursor.members) member.x *= 0.7 + 0.01 * i;
    plot_.SetCursor(cursor);
    QTest::mouseMove(&plot_, QPoint(100 + 20 * i, 150 + 7 * i));
    QCoreApplication::processEvents();
  }
  const QImage parts = plot_.screen()->grabWindow(plot_.winId()).toImage();
  const QImage whole = plot_.grab().toImage();
  ASSERT_EQ(parts.size(), whole.size());
  int different = 0;
  for (int y = 0; y < parts.height(); ++y) {
    for (int x = 0; x < parts.width(); ++x) {
      different += IsNear(parts.pixelColor(x, y), whole.pixelColor(x, y), 2) ? 0 : 1;
    }
  }
  EXPECT_EQ(different, 0);
}

TEST_F(AnalyserPlotTest, LabelsNeverCollideAndNeverLeaveTheCanvas) {
  const Look look = Look::Light();
  const LookFonts fonts(plot_.font());
  std::mt19937 random(11);
  std::uniform_real_distribution<double> x(0, 50000);
  std::uniform_real_distribution<double> y(0.01, 1);
  int placed = 0;
  for (int round = 0; round < 100; ++round) {
    PlotScene scene = OverlaidScene();
    scene.panes[0].peaks.clear();
    for (int i = 0; i < 25; ++i) {
      scene.panes[0].peaks.push_back({x(random), y(random), "22,698.2 Hz", "X 0.601 g peak"});
    }
    const PlotLayout laid = LaidOut(scene, FittingRanges(scene), fonts, {800, 500}, 1);
    const auto places = PeakLabelPlaces({scene, laid, look, fonts}, 0);
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!places[i]) continue;
      ++placed;
      const LabelBox& box = places[i]->box;
      EXPECT_TRUE(laid.panes[0].canvas.contains(QRectF(box.left, box.top, box.width, box.height)));
      for (std::size_t k = 0; k < i; ++k) {
        EXPECT_FALSE(places[k] && box.Overlaps(places[k]->box));
      }
    }
  }
  EXPECT_GT(placed, 500);
}

TEST_F(AnalyserPlotTest, TheLargestPeakHasALabelOfTwoLines) {
  const Look look = Look::Light();
  const LookFonts fonts(plot_.font());
  PlotScene scene = OverlaidScene();
  const PlotLayout laid = LaidOut(scene, FittingRanges(scene), fonts, {800, 500}, 1);
  const auto places = PeakLabelPlaces({scene, laid, look, fonts}, 0);
  ASSERT_TRUE(places[0]);
  EXPECT_EQ(places[0]->lines, 2);
}

TEST_F(AnalyserPlotTest, FollowsTheTheme) {
  plot_.SetScene(OverlaidScene());
  const QPoint middle = plot_.Laid().panes[0].canvas.center().toPoint();
  const int light = Picture().pixelColor(middle).lightness();
  plot_.setPalette(Look::Dark().Palette());
  const int dark = Picture().pixelColor(middle).lightness();
  EXPECT_GT(light, 200);
  EXPECT_LT(dark, 60);
}

TEST_F(AnalyserPlotTest, TellsItsRecordAndItsCursorToAssistiveTechnology) {
  plot_.SetScene(OverlaidScene());
  plot_.SetCursor(HarmonicCursor());
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&plot_);
  ASSERT_NE(told, nullptr);
  EXPECT_EQ(told->role(), QAccessible::Chart);
  EXPECT_TRUE(told->text(QAccessible::Name).startsWith(u"Spectrum, 0 to 70 g"));
  EXPECT_EQ(told->text(QAccessible::Value), QStringLiteral("8,220.9 Hz, Z 0.581 g"));
  QAccessibleValueInterface* value = told->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->currentValue().toDouble(), 8220.9);
  EXPECT_EQ(value->maximumValue().toDouble(), 50000);
  QSignalSpy placed(&plot_, &AnalyserPlot::CursorPlaced);
  value->setCurrentValue(1234.5);
  ASSERT_EQ(placed.count(), 1);
  EXPECT_EQ(placed[0][0].toDouble(), 1234.5);
}

}  // namespace
}  // namespace kestrel
