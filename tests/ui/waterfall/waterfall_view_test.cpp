// The waterfall: rows where their times are, gaps hatched, colours by the scale, cursors as
// signals. SPDX-License-Identifier: MIT
#include "ui/waterfall/waterfall_view.h"

#include <QDir>
#include <QSignalSpy>

#include "ui/chart/sample_scenes.h"
#include "ui/rendering.h"
#include "ui/waterfall/waterfall_painter.h"

namespace kestrel {
namespace {

constexpr double kStart = 1'763'750'000;  // 21 November 2025

class WaterfallTest : public ::testing::Test {
 protected:
  WaterfallTest() {
    view_.setPalette(Look::Light().Palette());
    view_.resize(700, 460);
    PlotScene scene = EmptyScene();
    view_.Begin(scene.across, SampleBins());
    view_.SetScale({{0.001, 1}, AxisKind::Logarithmic}, QStringLiteral("Acceleration, g peak"));
    view_.SetSpan(600);
  }
  // One line at a bin, in a row every ten seconds.
  void AddRows(int from, int count, int bin) {
    for (int i = from; i < from + count; ++i) {
      std::vector<double> values(256, 0.001);
      values[static_cast<std::size_t>(bin)] = 1;
      ASSERT_TRUE(view_.AddRow(kStart + 10.0 * i, values));
    }
  }
  QColor At(const QImage& picture, int bin, double time) const {
    return picture.pixelColor(static_cast<int>(view_.XOf(bin * kBin)),
                              static_cast<int>(view_.YOf(time)));
  }

  WaterfallView view_;
  const QColor most_ = QColor::fromRgb(MapForLightPaper()[255]);
  const QColor least_ = QColor::fromRgb(MapForLightPaper()[0]);
};

TEST_F(WaterfallTest, ARowIsDrawnAtItsTimeAndItsBin) {
  AddRows(0, 20, 50);
  AddRows(20, 20, 150);
  const QImage picture = RenderOf(view_, 1);
  EXPECT_EQ(At(picture, 50, kStart + 95), most_);
  EXPECT_EQ(At(picture, 150, kStart + 95), least_);
  EXPECT_EQ(At(picture, 150, kStart + 295), most_);
  EXPECT_EQ(At(picture, 50, kStart + 295), least_);
}

TEST_F(WaterfallTest, RowsAddedOneByOneLookAsDrawnAtOnce) {
  AddRows(0, 30, 40);
  RenderOf(view_, 1);
  AddRows(30, 30, 90);
  RenderOf(view_, 1);
  AddRows(60, 30, 140);
  const QImage grown = RenderOf(view_, 1);
  view_.SetFrozen(false);  // everything anew
  EXPECT_EQ(RenderOf(view_, 1), grown);
}

TEST_F(WaterfallTest, TimeWithoutRecordsIsHatchedNotBridged) {
  AddRows(0, 10, 50);
  AddRows(40, 10, 50);
  view_.AddGap({kStart + 90, kStart + 390, "No records: sensor unplugged"});
  const QImage picture = RenderOf(view_, 1);
  EXPECT_EQ(At(picture, 50, kStart + 85), most_);
  EXPECT_EQ(At(picture, 50, kStart + 425), most_);
  for (double time = kStart + 100; time < kStart + 380; time += 7) {
    EXPECT_NE(At(picture, 50, time), most_) << time - kStart;
  }
}

TEST_F(WaterfallTest, ALongPauseIsNoRowEvenWithoutAName) {
  AddRows(0, 10, 50);
  AddRows(40, 10, 50);
  const QImage picture = RenderOf(view_, 1);
  EXPECT_EQ(At(picture, 50, kStart + 250), Look::Light().canvas);
}

TEST_F(WaterfallTest, BinsThatHoldOffsetAreHatched) {
  AddRows(0, 30, 1);
  const QImage picture = RenderOf(view_, 1);
  for (double time = kStart + 10; time < kStart + 280; time += 7) {
    EXPECT_NE(At(picture, 1, time), most_);
  }
}

TEST_F(WaterfallTest, FrozenItStaysWhileRowsAreKept) {
  AddRows(0, 20, 50);
  RenderOf(view_, 1);
  view_.SetFrozen(true);
  const QImage before = RenderOf(view_, 1);
  AddRows(20, 20, 150);
  EXPECT_EQ(RenderOf(view_, 1), before);
  EXPECT_EQ(view_.Rows().Count(), 40U);
  view_.SetFrozen(false);
  EXPECT_EQ(At(RenderOf(view_, 1), 150, kStart + 345), most_);
}

TEST_F(WaterfallTest, AClickChoosesTheRowAndTheColumn) {
  AddRows(0, 30, 50);
  view_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view_));
  QSignalSpy rows(&view_, &WaterfallView::RowChosen);
  QSignalSpy columns(&view_, &WaterfallView::ColumnChosen);
  const QPointF place(view_.XOf(50 * kBin), view_.YOf(kStart + 150));
  QTest::mouseClick(&view_, Qt::LeftButton, {}, place.toPoint());
  ASSERT_EQ(rows.count(), 1);
  EXPECT_EQ(rows[0][0].toInt(), 15);
  EXPECT_EQ(rows[0][1].toDouble(), kStart + 150);
  EXPECT_NEAR(columns[0][0].toDouble(), 50 * kBin, kBin);
  QTest::mouseClick(&view_, Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_EQ(rows.count(), 1);
}

TEST_F(WaterfallTest, TheThemeChangesTheColours) {
  AddRows(0, 20, 50);
  view_.setPalette(Look::Dark().Palette());
  EXPECT_EQ(At(RenderOf(view_, 1), 50, kStart + 95), QColor::fromRgb(MapForDarkPaper()[255]));
}

TEST_F(WaterfallTest, WorksWithoutRowsAtAnySize) {
  for (const QSize size : {QSize(1, 1), QSize(60, 40), QSize(300, 200)}) {
    view_.resize(size);
    EXPECT_FALSE(RenderOf(view_, 1).isNull());
  }
  EXPECT_FALSE(view_.AddRow(kStart, {1, 2}));
}

TEST_F(WaterfallTest, TimeTicksAreRound) {
  for (const double tick : TimeTicks(kStart, kStart + 600, 15)) {
    EXPECT_EQ(std::fmod(tick, 60), 0);
    EXPECT_GE(tick, kStart);
    EXPECT_LE(tick, kStart + 600);
  }
  EXPECT_EQ(TimeTicks(kStart, kStart + 600, 10).size(), 10U);
}

// To be looked at: KESTREL_APPROVE names the folder.
TEST_F(WaterfallTest, APictureToLookAt) {
  for (int i = 0; i < 60; ++i) {
    const double speed = std::min(1.0, 0.5 + i * 0.02);
    const auto values =
        SampleSpectrum(static_cast<unsigned>(i),
                       {{8220 * speed, 0.9}, {16440 * speed, 0.3}, {24660 * speed, 0.1}});
    if (i >= 20 && i <= 26) continue;
    ASSERT_TRUE(view_.AddRow(kStart + 10.0 * i, values));
  }
  view_.AddGap({kStart + 190, kStart + 260, "No records: sensor unplugged"});
  view_.SetCursor(HarmonicCursor());
  view_.SetTimeCursor(kStart + 400);
  const QString folder = qEnvironmentVariable("KESTREL_APPROVE");
  for (const bool isDark : {false, true}) {
    view_.setPalette(isDark ? Look::Dark().Palette() : Look::Light().Palette());
    const QImage picture = RenderOf(view_, 2);
    EXPECT_EQ(picture.size(), view_.size() * 2);
    if (folder.isEmpty()) continue;
    EXPECT_TRUE(
        picture.save(QDir(folder).filePath(isDark ? "waterfall-dark.png" : "waterfall-light.png")));
  }
}

}  // namespace
}  // namespace kestrel
