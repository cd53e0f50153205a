// A picture box and the colours in it.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QImage>
#include <QMouseEvent>
#include <QPalette>
#include <cmath>
#include <limits>
#include <optional>

#include "ui/plot/picture_box.h"
#include "ui/rendering.h"

namespace kestrel {

inline constexpr double kRed = 0x3232CD;  // 0xBBGGRR
inline constexpr double kGreen = 0x32CD32;
inline constexpr double kBlue = 0xCD3232;

inline QPalette DarkPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(0x2B, 0x2D, 0x30));
  palette.setColor(QPalette::WindowText, QColor(0xDF, 0xE1, 0xE5));
  return palette;
}

inline bool IsReddish(QColor colour) {
  return colour.red() > colour.green() + 60;
}
inline bool IsGreenish(QColor colour) {
  return colour.green() > colour.red() + 60;
}
inline bool IsBluish(QColor colour) {
  return colour.blue() > colour.red() + 60;
}
inline bool IsColoured(QColor colour) {
  return IsReddish(colour) || IsGreenish(colour) || IsBluish(colour);
}

inline int ColouredPixels(const QImage& image) {
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

}  // namespace kestrel
