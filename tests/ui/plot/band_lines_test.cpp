// The bands' lines pixel by pixel.
// SPDX-License-Identifier: MIT
#include "ui/plot/band_lines.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <cmath>

#include "app/program_state.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

constexpr QRgb kEdge = 0xFF823C96;
constexpr QRgb kAmber = 0xFFFFE600;
constexpr QRgb kRed = 0xFFE60000;
constexpr QRgb kCyan = 0xFF00FFFF;

double Colour(QRgb rgb) {
  return Rgb(qRed(rgb), qGreen(rgb), qBlue(rgb));
}

class BandLinesTest : public testing::Test {
 protected:
  BandLinesTest() {
    box.resize(510, 200);
    box.Scale(0, 1, 255, 0);
    lines.setGeometry(box.rect());
  }

  static OverlayLine Edge(double x, QRgb colour = kEdge) {
    return {.x1 = x, .y1 = 0, .x2 = x, .y2 = 1, .colour = Colour(colour), .visible = true};
  }
  static OverlayLine Level(double x1, double x2, double g, QRgb colour) {
    return {.x1 = x1, .y1 = g, .x2 = x2, .y2 = g, .colour = Colour(colour), .visible = true};
  }
  void Show(int group, int band, const OverlayLine& line) {
    lines.SetLine(LineIndex(group, band), line);
  }

  // The run of pixels of a colour in a row or column: its first pixel and its length.
  static std::pair<int, int> RunInRow(const QImage& image, int y, QRgb colour) {
    return Run(image.width(), [&](int x) { return image.pixel(x, y) == colour; });
  }
  static std::pair<int, int> RunInColumn(const QImage& image, int x, QRgb colour) {
    return Run(image.height(), [&](int y) { return image.pixel(x, y) == colour; });
  }

  PictureBox box;
  BandLines lines{&box};

 private:
  template <typename Is>
  static std::pair<int, int> Run(int size, Is is) {
    int first = -1;
    int length = 0;
    for (int i = 0; i < size; ++i) {
      if (!is(i)) continue;
      if (first < 0) first = i;
      ++length;
    }
    EXPECT_TRUE(first < 0 || is(first + length - 1)) << "in pieces";
    return {first, length};
  }
};

TEST_F(BandLinesTest, LinesAreSharpAndInTheirPlaceAtAnyScale) {
  Show(kLowEdge, 1, Edge(50));
  Show(kAlarm1Level, 1, Level(50, 200, 0.25, kAmber));
  Show(kAlarm2Level, 1, Level(50, 200, 0.75, kRed));
  for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    SCOPED_TRACE(ratio);
    const QImage image = RenderOf(box, ratio);
    const int width = image.width();
    const int height = image.height();
    const int unit = std::max(1, static_cast<int>(ratio));
    const auto column = [&](double x) { return static_cast<int>(std::floor(x / 255 * width)); };
    const auto row = [&](double g) { return static_cast<int>(std::floor((1 - g) * height)); };
    EXPECT_EQ(RunInRow(image, row(0.5), kEdge), std::pair(column(50), unit));
    EXPECT_EQ(RunInColumn(image, column(120), kAmber), std::pair(row(0.25), 2 * unit));
    EXPECT_EQ(RunInColumn(image, column(120), kRed), std::pair(row(0.75), 2 * unit));
    const auto [start, length] = RunInRow(image, row(0.25), kAmber);
    EXPECT_EQ(start, column(50));
    EXPECT_EQ(start + length, column(200) + unit);
    EXPECT_EQ(RunInColumn(image, column(50), kEdge).first, 0) << "from the top";
  }
}

TEST_F(BandLinesTest, LevelsAndHighlightsHaveADarkCasing) {
  Show(kAlarm1Level, 1, Level(50, 200, 0.25, kAmber));
  OverlayLine edge = Edge(230, kCyan);
  edge.highlighted = true;
  Show(kHighEdge, 1, edge);
  const QImage image = RenderOf(box, 1);
  for (const int y : {149, 152}) EXPECT_LT(qGray(image.pixel(240, y)), 60) << y;
  EXPECT_GT(qGray(image.pixel(240, 148)), 180);
  EXPECT_GT(qGray(image.pixel(240, 153)), 180);
  EXPECT_EQ(RunInRow(image, 100, kCyan), std::pair(460, 2));
  for (const int x : {459, 462}) EXPECT_LT(qGray(image.pixel(x, 90)), 60) << x;
}

TEST_F(BandLinesTest, AHighlightedLineLiesOverTheOthersInItsPlace) {
  OverlayLine first = Edge(100, kCyan);
  first.highlighted = true;
  Show(kLowEdge, 1, first);
  for (int band = 2; band <= 6; ++band) Show(kLowEdge, band, Edge(100));
  EXPECT_EQ(RenderOf(box, 1).pixel(200, 90), kCyan);
}

TEST_F(BandLinesTest, LinesAtTheBordersAreSeenAndThoseBeyondAreNot) {
  Show(kLowEdge, 1, Edge(0));
  Show(kHighEdge, 1, Edge(255));
  Show(kAlarm1Level, 1, Level(20, 100, 0, kAmber));
  Show(kAlarm2Level, 1, Level(20, 100, 1, kRed));
  QImage image = RenderOf(box, 1);
  EXPECT_EQ(image.pixel(0, 90), kEdge);
  EXPECT_EQ(image.pixel(509, 90), kEdge);
  EXPECT_EQ(image.pixel(100, 199), kAmber);
  EXPECT_EQ(image.pixel(100, 0), kRed);
  const QImage plain = [] {
    PictureBox empty;
    empty.resize(510, 200);
    empty.Scale(0, 1, 255, 0);
    return RenderOf(empty, 1);
  }();
  Show(kLowEdge, 1, Edge(-1));
  Show(kHighEdge, 1, Edge(1e12));
  Show(kAlarm1Level, 1, Level(20, 100, -0.01, kAmber));
  Show(kAlarm2Level, 1, Level(20, 100, 1e12, kRed));
  Show(kAlarm2Level, 2, Level(260, 300, 0.5, kRed));
  EXPECT_EQ(RenderOf(box, 1), plain);
}

TEST_F(BandLinesTest, ALevelBetweenExchangedEdgesIsDrawn) {
  Show(kAlarm1Level, 1, Level(200, 50, 0.25, kAmber));
  EXPECT_EQ(RunInRow(RenderOf(box, 1), 150, kAmber), std::pair(100, 301));
}

TEST_F(BandLinesTest, HiddenLinesAreNotDrawn) {
  const QImage plain = RenderOf(box, 1);
  OverlayLine hidden = Edge(100);
  hidden.visible = false;
  Show(kLowEdge, 1, hidden);
  EXPECT_EQ(RenderOf(box, 1), plain);
}

TEST_F(BandLinesTest, TheyFollowScaleAndSizeOfTheBox) {
  Show(kAlarm1Level, 1, Level(50, 200, 0.25, kAmber));
  box.Scale(0, 0.5, 255, 0);
  EXPECT_EQ(RunInColumn(RenderOf(box, 1), 240, kAmber), std::pair(100, 2));
  box.resize(255, 100);
  QApplication::sendPostedEvents();
  QResizeEvent resized(box.size(), {510, 200});
  QApplication::sendEvent(&box, &resized);
  EXPECT_EQ(RunInColumn(RenderOf(box, 1), 120, kAmber), std::pair(50, 2));
}

TEST_F(BandLinesTest, AMoveRepaintsTheStripsItLeavesAndGoesToAndNoMore) {
  box.show();
  Show(kLowEdge, 1, Edge(50));
  Show(kAlarm1Level, 1, Level(50, 200, 0.25, kAmber));
  QApplication::processEvents();
  const int before = box.TracePaintCount();
  PaintedRegion painted(lines);
  Show(kLowEdge, 1, Edge(150));
  QApplication::processEvents();
  for (const int x : {100, 300}) {
    EXPECT_TRUE(QRegion(x - 1, 0, 3, 200).subtracted(painted.region).isEmpty()) << x;
  }
  for (const int x : {50, 200, 400}) EXPECT_FALSE(painted.region.contains(QPoint(x, 90))) << x;
  painted.region = {};
  Show(kAlarm1Level, 1, Level(50, 200, 0.5, kAmber));
  QApplication::processEvents();
  for (const int y : {100, 150}) {
    EXPECT_TRUE(QRegion(99, y - 1, 303, 4).subtracted(painted.region).isEmpty()) << y;
  }
  for (const int y : {50, 125, 180}) EXPECT_FALSE(painted.region.contains(QPoint(250, y))) << y;
  EXPECT_EQ(box.TracePaintCount(), before);
}

TEST_F(BandLinesTest, ThePointerReachesTheBoxThroughThem) {
  EXPECT_TRUE(lines.testAttribute(Qt::WA_TransparentForMouseEvents));
  EXPECT_EQ(box.childAt(100, 100), nullptr);
}

}  // namespace
}  // namespace kestrel
