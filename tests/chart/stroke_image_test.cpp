// Strokes against a brute force: every pixel's coverage counted from many points in it.
// SPDX-License-Identifier: MIT
#include "chart/stroke_image.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace kestrel {
namespace {

constexpr std::uint32_t kWhite = 0xffffffffU;

struct Canvas {
  Canvas(int w, int h) : pixels(static_cast<std::size_t>(w * h), kWhite), width(w), height(h) {}
  PixelRows Rows() { return {pixels.data(), width, height, width}; }
  // 0 untouched to 1 covered, of a black stroke on white.
  [[nodiscard]] double Cover(int x, int y) const {
    return 1 - static_cast<double>(pixels[static_cast<std::size_t>(y * width + x)] & 0xFFU) / 255;
  }

  std::vector<std::uint32_t> pixels;
  int width;
  int height;
};

double DistanceTo(const PlotLine& line, double x, double y) {
  double least = 1e9;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const PlotPoint a = line[i];
    const PlotPoint b = line[std::min(i + 1, line.size() - 1)];
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double part =
        square > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / square, 0.0, 1.0) : 0;
    least = std::min(least, std::hypot(x - a.x - part * dx, y - a.y - part * dy));
  }
  return least;
}

double TrueCover(const PlotLine& line, double width, int x, int y) {
  constexpr int kParts = 16;
  int inside = 0;
  for (int i = 0; i < kParts; ++i) {
    for (int j = 0; j < kParts; ++j) {
      const double px = x + (i + 0.5) / kParts;
      const double py = y + (j + 0.5) / kParts;
      inside += DistanceTo(line, px, py) <= width / 2 ? 1 : 0;
    }
  }
  return static_cast<double>(inside) / (kParts * kParts);
}

// The largest and the mean difference over all pixels that are covered or should be.
void ExpectTrue(const PlotLine& line, double width, const char* what) {
  Canvas canvas(48, 40);
  DrawStrokes(canvas.Rows(), {{.lines = {line}, .colour = 0, .width = width}});
  double largest = 0;
  double sum = 0;
  int count = 0;
  for (int y = 0; y < canvas.height; ++y) {
    for (int x = 0; x < canvas.width; ++x) {
      const double wished = TrueCover(line, width, x, y);
      const double off = std::abs(canvas.Cover(x, y) - wished);
      if (off > largest) largest = off;
      if (wished > 0) {
        sum += off;
        ++count;
      }
    }
  }
  EXPECT_LT(largest, 0.2) << what;
  EXPECT_LT(sum / std::max(count, 1), 0.03) << what;
}

TEST(StrokeImage, CoversWhatARoundPenCovers) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> height(-10, 50);
  std::uniform_real_distribution<double> step(0.3, 9);
  for (int round = 0; round < 6; ++round) {
    PlotLine line;
    for (double x = -5; x < 53; x += step(random)) line.push_back({x, height(random)});
    ExpectTrue(line, round % 3 == 0 ? 1.0 : round % 3 == 1 ? 1.5 : 4.5, "random line");
  }
}

TEST(StrokeImage, LevelUprightAndLonePointsAreDrawnWhole) {
  ExpectTrue({{4, 10.3}, {40, 10.3}}, 1.5, "level");
  ExpectTrue({{20.2, 5}, {20.2, 30}}, 1.5, "upright");
  ExpectTrue({{20.2, 5}, {20.2, 30}, {30, 12}}, 3, "upright, then falling");
  ExpectTrue({{20.5, 20.5}}, 3, "a point");
}

TEST(StrokeImage, SteepLinesAreCoveredAsTrulyAsFlatOnes) {
  for (const double slope : {9.5, 150.0}) {
    for (const double width : {1.5, 12.0}) {
      ExpectTrue({{20.3, -30}, {20.3 + 300 / slope, 270}}, width, "falling");
      ExpectTrue({{20.3, 270}, {20.3 + 300 / slope, -30}}, width, "rising");
    }
  }
  ExpectTrue({{20.3, 9.75}, {22.6, 33.5}}, 1.5, "short");
}

TEST(StrokeImage, AStrokeIsAsWideAsItsPen) {
  Canvas canvas(20, 40);
  DrawStrokes(canvas.Rows(), {{.lines = {{{-10, 20.25}, {30, 20.25}}}, .width = 1.5}});
  double sum = 0;
  for (int y = 0; y < canvas.height; ++y) sum += canvas.Cover(10, y);
  EXPECT_NEAR(sum, 1.5, 0.02);
}

TEST(StrokeImage, NothingIsDrawnOutsideThePicture) {
  std::vector<std::uint32_t> memory(64 * 50, 0x12345678U);
  const PixelRows inner{memory.data() + 64 * 5 + 7, 40, 40, 64};
  DrawStrokes(inner, {{.lines = {{{-500, -1e6}, {12, 1e6}, {13, -1e6}, {700, 20}}},
                       .isFilled = true,
                       .fill = {.base = 1e6}}});
  int touched = 0;
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 64; ++x) {
      const bool isInside = x >= 7 && x < 47 && y >= 5 && y < 45;
      const bool isTouched = memory[static_cast<std::size_t>(y * 64 + x)] != 0x12345678U;
      EXPECT_TRUE(isInside || !isTouched) << x << "," << y;
      touched += isTouched ? 1 : 0;
    }
  }
  EXPECT_GT(touched, 100);
}

TEST(StrokeImage, TheFillReachesTheBaseAndFades) {
  Canvas canvas(32, 100);
  DrawStrokes(canvas.Rows(),
              {{.lines = {{{0, 20}, {32, 20}}}, .isFilled = true, .fill = {100, 0, 100, 0.4, 0}}});
  EXPECT_EQ(canvas.Cover(16, 10), 0);
  EXPECT_NEAR(canvas.Cover(16, 30), 0.28, 0.02);
  EXPECT_NEAR(canvas.Cover(16, 70), 0.12, 0.02);
  EXPECT_NEAR(canvas.Cover(16, 99), 0, 0.01);
}

TEST(StrokeImage, LaterStrokesLieOverEarlierOnes) {
  Canvas canvas(32, 32);
  const std::vector<PlotLine> level{{{0, 16}, {32, 16}}};
  DrawStrokes(canvas.Rows(), {{.lines = level, .colour = 0xFF0000, .width = 4},
                              {.lines = level, .colour = 0x0000FF, .width = 2}});
  EXPECT_EQ(canvas.pixels[16 * 32 + 10], 0xFF0000FFU);
  EXPECT_EQ(canvas.pixels[17 * 32 + 10], 0xFFFF0000U);
}

TEST(StrokeImage, ManyStrokesLookAsTheSameDrawnOneByOne) {
  std::mt19937 random(9);
  std::uniform_real_distribution<double> height(0, 60);
  std::vector<Stroke> strokes;
  for (int i = 0; i < 20; ++i) {
    Stroke stroke{.lines = {{}}, .colour = static_cast<std::uint32_t>(i) * 0x0A0B0CU};
    for (double x = 0; x < 70; x += 5) stroke.lines[0].push_back({x, height(random)});
    stroke.isFilled = i % 5 == 0;
    stroke.fill.base = 60;
    strokes.push_back(stroke);
  }
  Canvas together(70, 61);
  Canvas single(70, 61);
  DrawStrokes(together.Rows(), strokes);
  for (const Stroke& stroke : strokes) DrawStrokes(single.Rows(), {stroke});
  EXPECT_EQ(together.pixels, single.pixels);
}

TEST(StrokeImage, AnAreaIsShadedBetweenItsLines) {
  Canvas canvas(8, 20);
  DrawArea(canvas.Rows(), {{2, 5, 10}, {3, -4, 99}, {9, 0, 20}}, 0, 0.5);
  EXPECT_NEAR(canvas.Cover(2, 7), 0.5, 0.01);
  EXPECT_EQ(canvas.Cover(2, 4), 0);
  EXPECT_EQ(canvas.Cover(2, 10), 0);
  EXPECT_NEAR(canvas.Cover(3, 19), 0.5, 0.01);
}

}  // namespace
}  // namespace kestrel
