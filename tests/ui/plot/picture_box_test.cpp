// Positions, traces and grid of the picture box pixel by pixel.
// SPDX-License-Identifier: MIT

#include "ui/plot/picture_box_bench.h"

namespace kestrel {
namespace {

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

// As many device pixels as before, but on another screen.

// Every grid line one device pixel, also where the box begins between two.

}  // namespace
}  // namespace kestrel
