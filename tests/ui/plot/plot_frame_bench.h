// A frame around a picture box, on a window of its own.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPalette>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "ui/plot/plot_frame.h"
#include "ui/rendering.h"

namespace kestrel {

class PlotFrameTest : public testing::Test {
 protected:
  PlotFrameTest() {
    frame.resize(900, 500);
    frame.show();
    ShowTime();
  }

  void ShowTime() {
    Label("2", "0", "-2", "511", "sample");
    frame.pic1->Scale(0, 2, 511, -2);
    QApplication::processEvents();
  }

  void ShowSpectrum() {
    Label("0.25", "0.125", "0", "255", "bin");
    frame.pic1->Scale(0, 0.25, 255, 0);
    QApplication::processEvents();
  }

  void Label(const char* top, const char* middle, const char* bottom, const char* right,
             const char* unit) {
    frame.lblYmax->setText(top);
    frame.LbLYmid->setText(middle);
    frame.lblYmin->setText(bottom);
    frame.lblXmax->setText(right);
    frame.Label5->setText(unit);
  }

  void SetPointSize(int size) {
    QFont font = frame.font();
    font.setPointSize(size);
    frame.setFont(font);
    QApplication::processEvents();
  }

  std::vector<QLabel*> Labels() {
    return {frame.lblYmax, frame.LbLYmid, frame.lblYmin,
            frame.lblXmin, frame.lblXmax, frame.Label5};
  }

  // Everything with text on the frame.
  std::vector<QRect> Texts() {
    std::vector<QRect> places;
    for (const QLabel* label : Labels()) places.push_back(label->geometry());
    for (const auto& number : frame.XNumbers()) places.push_back(number.place);
    for (const auto& number : frame.YNumbers()) places.push_back(number.place);
    return places;
  }

  void ExpectTidy() {
    const std::vector<QRect> texts = Texts();
    for (std::size_t i = 0; i < texts.size(); ++i) {
      EXPECT_TRUE(frame.rect().contains(texts[i])) << i;
      EXPECT_FALSE(frame.pic1->geometry().intersects(texts[i])) << i;
      for (std::size_t j = 0; j < i; ++j)
        EXPECT_FALSE(texts[i].intersects(texts[j])) << i << ' ' << j;
    }
    for (const QLabel* label : Labels()) {
      EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()))
          << label->text().toStdString();
      EXPECT_GE(label->height(), label->fontMetrics().height()) << label->text().toStdString();
    }
  }

  PlotFrame frame;
};

inline int CentreX(const QRect& place) {
  return place.left() + place.width() / 2;
}
inline int CentreY(const QRect& place) {
  return place.top() + place.height() / 2;
}

}  // namespace kestrel
