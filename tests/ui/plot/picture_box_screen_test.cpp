// The picture box at screen scales and in themes, and its pointer.
// SPDX-License-Identifier: MIT

#include "ui/plot/picture_box_bench.h"

namespace kestrel {
namespace {

TEST_F(PictureBoxTest, IsSharpAtTwiceTheScale) {
  box.Line(0, 0, -5, 100, 5, kRed);
  const QImage image = Render(2);
  ASSERT_EQ(image.size(), QSize(800, 400));
  int differing = 0;
  for (int y = 0; y + 1 < image.height(); y += 2) {
    for (int x = 0; x + 1 < image.width(); x += 2) {
      const QRgb first = image.pixel(x, y);
      if (first != image.pixel(x + 1, y) || first != image.pixel(x, y + 1)) ++differing;
    }
  }
  EXPECT_GT(differing, 300);
}

TEST_F(PictureBoxTest, LinesKeepTheirWidthAtTwiceTheScale) {
  const QColor red(205, 50, 50);
  box.Line(0, 0, 5, 100, 5, kRed);     // rows 99 and 100
  box.Line(0, 30, -10, 30, 10, kRed);  // columns 239 and 240
  const QImage image = Render(2);
  for (const int at : {11, 177, 333}) {
    for (const int on : {0, 1}) {
      EXPECT_EQ(image.pixelColor(at, 99 + on), red) << at;
      EXPECT_EQ(image.pixelColor(239 + on, at), red) << at;
    }
    for (const int off : {97, 102}) {
      EXPECT_FALSE(IsColoured(image.pixelColor(at, off))) << at;
      EXPECT_FALSE(IsColoured(image.pixelColor(140 + off, at))) << at;
    }
  }
}

TEST_F(PictureBoxTest, LinesTakeTheWidthOfTheScreenTheyAreOn) {
  box.Line(0, 0, 5, 100, 5, kRed);
  Render(2);
  box.resize(800, 400);
  const QImage moved = Render(1);
  box.Line(0, 0, 500, 1, 500, kRed);  // above the box, only to have it painted anew
  EXPECT_EQ(moved, Render(1));
}

TEST_F(PictureBoxTest, GridLinesAreEvenAtABrokenScale) {
  QWidget parent;
  parent.resize(500, 400);
  box.setParent(&parent);
  box.setGeometry(33, 51, 401, 203);
  const QImage image = RenderOf(parent, 1.5);
  const int left = 50;  // 33 * 1.5, rounded up
  const int top = 77;
  int lines = 0;
  for (int x = left + 1; x < left + 600; ++x) {
    if (image.pixelColor(x, top + 4) == box.Paper()) continue;
    ++lines;
    EXPECT_EQ(image.pixelColor(x - 1, top + 4), box.Paper()) << x;
  }
  EXPECT_EQ(lines, static_cast<int>(box.XTicks().size()) - 2);
  box.setParent(nullptr);
}

TEST_F(PictureBoxTest, PaperIsLightInEveryTheme) {
  box.setPalette(QPalette(Qt::black, QColor(0xEF, 0xEF, 0xEF)));
  EXPECT_EQ(Grab().pixelColor(5, 5), QColor(Qt::white));
  box.setPalette(DarkPalette());
  EXPECT_EQ(Grab().pixelColor(5, 5), QColor(0xE4, 0xE7, 0xEA));
}

TEST_F(PictureBoxTest, ZeroLineIsStrongerThanTheGrid) {
  const QImage image = Grab();
  const int x = 3;
  const int zero = image.pixelColor(x, box.GridRow(0, 200, 1)).lightness();
  for (const double tick : box.YTicks()) {
    if (std::abs(tick) == 10 || tick == 0) continue;
    const int grid = image.pixelColor(x, box.GridRow(tick, 200, 1)).lightness();
    EXPECT_LT(grid, box.Paper().lightness()) << tick;
    EXPECT_LT(zero, grid - 30) << tick;
  }
}

TEST_F(PictureBoxTest, HintShowsOnlyWhileNothingIsDrawn) {
  const QImage without = Grab();
  box.SetHint("No record yet.");
  const QImage with = Grab();
  EXPECT_NE(with, without);
  box.Line(0, 0, 500, 1, 500, kRed);  // above the box
  EXPECT_EQ(Grab(), without);
  box.Cls();
  EXPECT_EQ(Grab(), with);
  box.SetHint({});
  EXPECT_EQ(Grab(), without);
}

TEST_F(PictureBoxTest, PointerIsReportedInTheScalesCoordinates) {
  std::optional<QPointF> moved;
  std::optional<QPointF> pressed;
  std::optional<QPointF> released;
  int left = 0;
  QObject::connect(&box, &PictureBox::PointerMoved, [&](double x, double y) { moved = {x, y}; });
  QObject::connect(&box, &PictureBox::PointerPressed, [&](double x, double y) {
    pressed = {x, y};
  });
  QObject::connect(&box, &PictureBox::PointerReleased, [&](double x, double y) {
    released = {x, y};
  });
  QObject::connect(&box, &PictureBox::PointerLeft, [&] { ++left; });
  const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButton button) {
    QMouseEvent event(type, at, box.mapToGlobal(at), button, button, Qt::NoModifier);
    QApplication::sendEvent(&box, &event);
  };
  EXPECT_TRUE(box.hasMouseTracking());
  send(QEvent::MouseMove, {100, 50}, Qt::NoButton);
  EXPECT_EQ(moved, QPointF(25, 5));
  send(QEvent::MouseButtonPress, {200, 100}, Qt::LeftButton);
  EXPECT_EQ(pressed, QPointF(50, 0));
  send(QEvent::MouseButtonRelease, {500, 200}, Qt::LeftButton);
  EXPECT_EQ(released, QPointF(125, -10));
  pressed.reset();
  send(QEvent::MouseButtonPress, {200, 100}, Qt::RightButton);
  EXPECT_FALSE(pressed.has_value());
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&box, &leave);
  EXPECT_EQ(left, 1);
}

TEST_F(PictureBoxTest, ButtonAndShiftAreReportedWithThePointer) {
  struct State {
    bool held = false;
    bool shift = false;
    bool operator==(const State&) const = default;
  };
  State moved;
  State pressed;
  QObject::connect(&box, &PictureBox::PointerMoved, [&](double, double, bool isHeld, bool isShift) {
    moved = {isHeld, isShift};
  });
  QObject::connect(&box, &PictureBox::PointerPressed, [&](double, double, bool isShift) {
    pressed = {true, isShift};
  });
  for (const bool shift : {false, true}) {
    const Qt::KeyboardModifiers keys = shift ? Qt::ShiftModifier : Qt::NoModifier;
    for (const Qt::MouseButton held : {Qt::NoButton, Qt::LeftButton, Qt::RightButton}) {
      QMouseEvent move(QEvent::MouseMove, {9, 9}, box.mapToGlobal(QPointF(9, 9)), Qt::NoButton,
                       held, keys);
      QApplication::sendEvent(&box, &move);
      EXPECT_EQ(moved, (State{held == Qt::LeftButton, shift}));
    }
    QMouseEvent press(QEvent::MouseButtonPress, {9, 9}, box.mapToGlobal(QPointF(9, 9)),
                      Qt::LeftButton, Qt::LeftButton, keys);
    QApplication::sendEvent(&box, &press);
    EXPECT_EQ(pressed, (State{true, shift}));
  }
}

TEST_F(PictureBoxTest, ThePointerIsLostWithTheWindowOrTheGrab) {
  int lost = 0;
  QObject::connect(&box, &PictureBox::PointerLost, [&] { ++lost; });
  for (const auto type : {QEvent::WindowDeactivate, QEvent::UngrabMouse, QEvent::Hide}) {
    QEvent event(type);
    QApplication::sendEvent(&box, &event);
  }
  EXPECT_EQ(lost, 3);
}

}  // namespace
}  // namespace kestrel
