// Positions, traces and grid of the picture box pixel by pixel.
// SPDX-License-Identifier: MIT
#include "ui/plot/picture_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QImage>
#include <QMouseEvent>
#include <QPalette>
#include <cmath>
#include <limits>
#include <optional>

#include "ui/rendering.h"

namespace kestrel {
namespace {

constexpr double kRed = 0x3232CD;  // 0xBBGGRR
constexpr double kGreen = 0x32CD32;
constexpr double kBlue = 0xCD3232;

QPalette DarkPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(0x2B, 0x2D, 0x30));
  palette.setColor(QPalette::WindowText, QColor(0xDF, 0xE1, 0xE5));
  return palette;
}

bool IsReddish(QColor colour) {
  return colour.red() > colour.green() + 60;
}
bool IsGreenish(QColor colour) {
  return colour.green() > colour.red() + 60;
}
bool IsBluish(QColor colour) {
  return colour.blue() > colour.red() + 60;
}
bool IsColoured(QColor colour) {
  return IsReddish(colour) || IsGreenish(colour) || IsBluish(colour);
}

int ColouredPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += IsColoured(image.pixelColor(x, y)) ? 1 : 0;
  }
  return count;
}

class PictureBoxTest : public testing::Test {
 protected:
  PictureBoxTest() {
    box.resize(400, 200);
    box.Scale(0, 10, 100, -10);
  }

  QImage Grab() { return Render(1); }

  QImage Render(qreal ratio) { return RenderOf(box, ratio); }

  PictureBox box;
};

TEST_F(PictureBoxTest, CornersMapToCorners) {
  EXPECT_EQ(box.ToPixels({0, 10}), QPointF(0, 0));
  EXPECT_EQ(box.ToPixels({100, -10}), QPointF(400, 200));
  EXPECT_EQ(box.ToPixels({50, 0}), QPointF(200, 100));
  EXPECT_EQ(box.FromPixels({0, 0}), QPointF(0, 10));
  EXPECT_EQ(box.FromPixels({400, 200}), QPointF(100, -10));
  EXPECT_EQ(box.FromPixels({100, 50}), QPointF(25, 5));
}

TEST_F(PictureBoxTest, PositionsBeyondTheScaleGoOn) {
  EXPECT_EQ(box.ToPixels({150, 20}), QPointF(600, -100));
  EXPECT_EQ(box.FromPixels({-4, 210}), QPointF(-1, -11));
}

TEST_F(PictureBoxTest, ScaleHeightIsPositive) {
  EXPECT_EQ(box.ScaleHeight(), 20);
  box.Scale(0, -3, 1, 4);
  EXPECT_EQ(box.ScaleHeight(), 7);
  EXPECT_EQ(box.ScaleWidth(), 1);
  box.Scale(5, 1, -6, 0);
  EXPECT_EQ(box.ScaleWidth(), 11);
}

TEST_F(PictureBoxTest, AScaleWithoutHeightDoesNotDivideByZero) {
  box.Scale(0, 0, 100, 0);
  box.Line(0, 0, 1, 100, 1, kRed);
  EXPECT_EQ(box.ScaleHeight(), 0);
  EXPECT_EQ(box.ToPixels({50, 3}), QPointF(200, 0));
  EXPECT_EQ(box.FromPixels({200, 77}), QPointF(50, 0));
  EXPECT_EQ(Grab().size(), QSize(400, 200));
}

TEST_F(PictureBoxTest, AScaleThatIsNoNumberIsRefused) {
  box.Scale(0, std::nan(""), 100, 0);
  EXPECT_EQ(box.ToPixels({100, -10}), QPointF(400, 200));
}

TEST_F(PictureBoxTest, LinesColourThePixelsTheyCross) {
  box.Line(0, 0, 5, 100, 5, kRed);       // row 50
  box.Line(1, 25, 10, 25, -10, kGreen);  // column 100
  box.Line(2, 75, 10, 75, -10, kBlue);
  const QImage image = Grab();
  for (const int x : {10, 150, 250, 390}) {
    EXPECT_TRUE(IsReddish(image.pixelColor(x, 50)) || IsReddish(image.pixelColor(x, 49))) << x;
    EXPECT_FALSE(IsColoured(image.pixelColor(x, 47))) << x;
    EXPECT_FALSE(IsColoured(image.pixelColor(x, 52))) << x;
  }
  for (const int y : {5, 80, 190}) {
    EXPECT_TRUE(IsGreenish(image.pixelColor(100, y)) || IsGreenish(image.pixelColor(99, y))) << y;
    EXPECT_TRUE(IsBluish(image.pixelColor(300, y)) || IsBluish(image.pixelColor(299, y))) << y;
  }
}

TEST_F(PictureBoxTest, InterleavedTracesAllShow) {
  for (int i = 0; i < 100; ++i) {
    box.Line(0, i, 5, i + 1, 5, kRed);
    box.Line(1, i, 2, i + 1, 2, kGreen);
    box.Line(2, i, -5, i + 1, -5, kBlue);
  }
  const QImage image = Grab();
  for (int x = 1; x < 399; ++x) {
    EXPECT_TRUE(IsReddish(image.pixelColor(x, 50)) || IsReddish(image.pixelColor(x, 49))) << x;
    EXPECT_TRUE(IsGreenish(image.pixelColor(x, 80)) || IsGreenish(image.pixelColor(x, 79))) << x;
    EXPECT_TRUE(IsBluish(image.pixelColor(x, 150)) || IsBluish(image.pixelColor(x, 149))) << x;
  }
}

TEST_F(PictureBoxTest, SeparateLinesOfOneColourStaySeparate) {
  box.Line(0, 0, 5, 20, 5, kRed);
  box.Line(0, 80, 5, 100, 5, kRed);
  const QImage image = Grab();
  EXPECT_TRUE(IsReddish(image.pixelColor(40, 50)) || IsReddish(image.pixelColor(40, 49)));
  for (int x = 90; x < 310; ++x) EXPECT_FALSE(IsColoured(image.pixelColor(x, 50))) << x;
}

TEST_F(PictureBoxTest, ValuesBeyondTheScaleRunOffTheBox) {
  QWidget parent;
  parent.resize(500, 400);
  box.setParent(&parent);
  box.setGeometry(50, 100, 400, 200);
  box.Line(0, 0, 0, 50, 1000, kRed);
  box.Line(0, 50, 1000, 150, -30, kRed);
  const QImage image = RenderOf(parent, 1);
  const QRect inside = box.geometry();
  int within = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (!IsColoured(image.pixelColor(x, y))) continue;
      EXPECT_TRUE(inside.contains(x, y)) << x << ' ' << y;
      ++within;
    }
  }
  EXPECT_GT(within, 100);
  box.setParent(nullptr);
}

// The slope of a line stays right however far beyond the box it leads.
TEST_F(PictureBoxTest, AFarEndKeepsTheSlope) {
  box.Line(0, 0, -10, 250, 990, kRed);
  const QImage image = Grab();
  for (const int x : {5, 10, 15}) {
    const int y = 200 - 10 * x;
    EXPECT_TRUE(IsReddish(image.pixelColor(x, y)) || IsReddish(image.pixelColor(x - 1, y))) << x;
  }
}

TEST_F(PictureBoxTest, ExtremeAndMissingValuesAreHarmless) {
  constexpr double kHuge = std::numeric_limits<double>::max();
  box.Line(0, 0, std::nan(""), 100, 0, kRed);
  box.Line(0, 0, 0, 100, std::numeric_limits<double>::infinity(), kRed);
  EXPECT_EQ(ColouredPixels(Grab()), 0);
  box.Line(0, 50, -kHuge, 50, kHuge, kRed);
  EXPECT_TRUE(IsReddish(Grab().pixelColor(200, 60)) || IsReddish(Grab().pixelColor(199, 60)));
}

TEST_F(PictureBoxTest, ClsRemovesEverything) {
  box.Line(0, 0, 0, 100, 9, kRed);
  EXPECT_GT(ColouredPixels(Grab()), 100);
  box.Cls();
  EXPECT_EQ(ColouredPixels(Grab()), 0);
}

TEST_F(PictureBoxTest, TracesArePaintedAnewOnlyAfterAChange) {
  box.Line(0, 0, 0, 100, 9, kRed);
  const auto paints = [&](auto change) {
    Grab();
    const int before = box.TracePaintCount();
    change();
    Grab();
    return box.TracePaintCount() - before;
  };
  EXPECT_EQ(paints([&] { box.update(); }), 0);
  EXPECT_EQ(paints([&] { box.Scale(0, 10, 100, -10); }), 0);  // the scale it has already
  EXPECT_EQ(paints([&] { box.Scale(0, 5, 100, -5); }), 1);
  EXPECT_EQ(paints([&] { box.Line(0, 0, 0, 100, 1, kRed); }), 1);
  EXPECT_EQ(paints([&] { box.Cls(); }), 1);
  EXPECT_EQ(paints([&] { box.resize(300, 150); }), 1);
  EXPECT_EQ(paints([&] { box.setPalette(DarkPalette()); }), 1);
  EXPECT_EQ(paints([&] { box.setFont(QFont("Sans Serif", 20)); }), 1);
  EXPECT_EQ(paints([&] { Render(2); }), 2);  // to the other screen and back
}

TEST_F(PictureBoxTest, ManyLinesArePaintedOnce) {
  Grab();
  const int before = box.TracePaintCount();
  for (int i = 0; i < 100; ++i) box.Line(0, i, 0, i + 1, 1, kRed);
  Grab();
  EXPECT_EQ(box.TracePaintCount() - before, 1);
}

// A line 1 wide fills whole device pixels: nothing of it is a blurred copy of a coarser picture.
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

// As many device pixels as before, but on another screen.
TEST_F(PictureBoxTest, LinesTakeTheWidthOfTheScreenTheyAreOn) {
  box.Line(0, 0, 5, 100, 5, kRed);
  Render(2);
  box.resize(800, 400);
  const QImage moved = Render(1);
  box.Line(0, 0, 500, 1, 500, kRed);  // above the box, only to have it painted anew
  EXPECT_EQ(moved, Render(1));
}

// Every grid line one device pixel, also where the box begins between two.
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
