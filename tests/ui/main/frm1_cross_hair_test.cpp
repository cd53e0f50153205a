// The cross-hair and what stands beside the pointer on the main window's plot.
// SPDX-License-Identifier: MIT

#include "ui/main/frm1_cursor_bench.h"

namespace kestrel {
namespace {

TEST_F(Frm1Cursor, BesideThePointerStandTheTracesOwnValues) {
  Start();
  auto& values = Find<QLabel>("lblHoverValues");
  MovePointer(10, 0.5);
  EXPECT_FALSE(values.isVisible()) << "there is no record yet";
  ChooseShortCaptures();
  Press("cmdStart");
  MovePointer(10, 0.5);
  ASSERT_TRUE(values.isVisible());
  const auto g = [](double value) { return QString::fromStdString(FixedNumber(value, 4)) + " g"; };
  EXPECT_EQ(values.text(), "Bin 10, 1,957 Hz\nX  " + g(DataX(10)) + "\nY  " + g(DataY(10)) +
                               "\nZ  " + g(DataZ(10)));
  EXPECT_EQ(Text("lblCursorY"), "0.500") << "the pointer's own place";
  EXPECT_TRUE(Plot().rect().contains(values.geometry()));
  Find<QCheckBox>("ckYtrace").click();
  MovePointer(250, 0.5);
  EXPECT_EQ(values.text(), "Bin 250, 48,921 Hz\nX  " + g(DataX(250)) + "\nZ  " + g(DataZ(250)));
  EXPECT_TRUE(Plot().rect().contains(values.geometry()));
  LeavePlot();
  EXPECT_FALSE(values.isVisible());
  MovePointer(250, 0.5);
  Press("cmdStart");
  EXPECT_FALSE(values.isVisible()) << "of a record that is gone";
}

TEST_F(Frm1Cursor, MovingDrawsNoTraceAgain) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  QApplication::processEvents();
  const int before = Plot().TracePaintCount();
  for (int x = 0; x < 256; x += 5) {
    MovePointer(x, x / 255.0);
    QApplication::processEvents();
  }
  Plot().setFocus();
  for (int i = 0; i < 20; ++i) Key(Qt::Key_Right);
  QApplication::processEvents();
  LeavePlot();
  QApplication::processEvents();
  EXPECT_EQ(Plot().TracePaintCount(), before);
}

TEST_F(Frm1Cursor, ACrossHairFollowsThePointerAndGoesWithIt) {
  Start();
  const QImage plain = Picture();
  MovePointer(100, 0.5);
  const QImage crossed = Picture();
  ASSERT_EQ(plain.size(), crossed.size());
  const QPoint at = Plot().ToPixels({100, 0.5}).toPoint();
  int column = 0;
  int row = 0;
  int elsewhere = 0;
  for (int y = 0; y < plain.height(); ++y) {
    for (int x = 0; x < plain.width(); ++x) {
      if (plain.pixel(x, y) == crossed.pixel(x, y)) continue;
      if (x == at.x()) ++column;
      if (y == at.y()) ++row;
      if (x != at.x() && y != at.y()) ++elsewhere;
    }
  }
  EXPECT_GE(column, plain.height() * 9 / 10);
  EXPECT_GE(row, plain.width() * 9 / 10);
  EXPECT_EQ(elsewhere, 0);
  MovePointer(200, 0.1);
  EXPECT_EQ(Picture().pixel(at.x(), 7), plain.pixel(at.x(), 7)) << "the strip it left";
  LeavePlot();
  EXPECT_EQ(Picture(), plain);
}

TEST_F(Frm1Cursor, AMoveRepaintsTheStripsItLeavesAndGoesToAndNoMore) {
  Start();
  MovePointer(100, 0.5);
  QApplication::processEvents();
  const QPoint from = Plot().ToPixels({100, 0.5}).toPoint();
  const QPoint to = Plot().ToPixels({200, 0.1}).toPoint();
  PaintedRegion painted(CrossHairWidget());
  MovePointer(200, 0.1);
  QApplication::processEvents();
  const QRect box = Plot().rect();
  const auto seen = [this](const QRect& strip) { return Plot().visibleRegion() & strip; };
  for (const QPoint& at : {from, to}) {
    EXPECT_TRUE(seen(QRect(at.x(), 0, 1, box.height())).subtracted(painted.region).isEmpty());
    EXPECT_TRUE(seen(QRect(0, at.y(), box.width(), 1)).subtracted(painted.region).isEmpty());
  }
  EXPECT_FALSE(painted.region.contains((from + to) / 2));
  painted.region = {};
  LeavePlot();
  QApplication::processEvents();
  EXPECT_TRUE(seen(QRect(to.x(), 0, 1, box.height())).subtracted(painted.region).isEmpty());
  EXPECT_FALSE(painted.region.contains(from));
}

}  // namespace
}  // namespace kestrel
