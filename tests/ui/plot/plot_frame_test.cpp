// Labels and numbers around the plot.
// SPDX-License-Identifier: MIT

#include "ui/plot/plot_frame_bench.h"

namespace kestrel {
namespace {

TEST_F(PlotFrameTest, LabelsHaveTheirNamesAndNoAccessibleName) {
  for (const char* name : {"lblYmax", "LbLYmid", "lblYmin", "lblXmin", "lblXmax", "Label5"}) {
    const auto* label = frame.findChild<QLabel*>(name);
    ASSERT_NE(label, nullptr) << name;
    EXPECT_TRUE(label->accessibleName().isEmpty()) << name;
    EXPECT_TRUE(label->isVisible()) << name;
  }
  EXPECT_EQ(frame.findChild<PictureBox*>("pic1"), frame.pic1);
  for (int band = 1; band <= EdgeLabels::kBands; ++band) {
    EXPECT_EQ(frame.findChild<QLabel*>(QString("lblABLow_%1").arg(band)),
              frame.Edges().At(false, band));
    EXPECT_EQ(frame.findChild<QLabel*>(QString("lblABHigh_%1").arg(band)),
              frame.Edges().At(true, band));
  }
}

TEST_F(PlotFrameTest, LabelsStandAtTheEndsAndInTheMiddle) {
  const QRect box = frame.pic1->geometry();
  EXPECT_NEAR(CentreY(frame.lblYmax->geometry()), box.top(), 1);
  EXPECT_NEAR(CentreY(frame.LbLYmid->geometry()), box.top() + box.height() / 2, 1);
  EXPECT_NEAR(CentreY(frame.lblYmin->geometry()), box.bottom(), 1);
  EXPECT_NEAR(CentreX(frame.lblXmin->geometry()), box.left(), 1);
  EXPECT_NEAR(CentreX(frame.lblXmax->geometry()), box.right(), 1);
  EXPECT_NEAR(CentreX(frame.Label5->geometry()), box.center().x(), 1);
  EXPECT_LT(frame.lblYmax->geometry().right(), box.left());
  EXPECT_GT(frame.lblXmin->geometry().top(), box.bottom());
  EXPECT_GT(frame.Label5->geometry().top(), frame.lblXmax->geometry().bottom());
}

TEST_F(PlotFrameTest, NumbersStandAtTheGridLines) {
  for (const bool spectrum : {false, true}) {
    spectrum ? ShowSpectrum() : ShowTime();
    const QImage image = RenderOf(*frame.pic1, 1);
    ASSERT_GE(frame.XNumbers().size(), 6U);
    ASSERT_GE(frame.YNumbers().size(), 6U);
    for (const auto& number : frame.XNumbers()) {
      const int column = CentreX(number.place) - frame.pic1->x();
      EXPECT_NEAR(column, frame.pic1->ToPixels({number.value, 0}).x(), 1);
      EXPECT_NE(image.pixelColor(column, 2), frame.pic1->Paper()) << number.value;
    }
    for (const auto& number : frame.YNumbers()) {
      const int row = CentreY(number.place) - frame.pic1->y();
      EXPECT_NEAR(row, frame.pic1->ToPixels({0, number.value}).y(), 1);
      EXPECT_NE(image.pixelColor(2, row), frame.pic1->Paper()) << number.value;
    }
  }
}

// The marks outside the box continue the grid lines inside it, at any scale.

TEST_F(PlotFrameTest, TickMarksContinueTheGridLines) {
  for (const double ratio : {1.0, 1.5, 2.0, 3.0}) {
    const QImage image = RenderOf(frame, ratio);
    const QRect box = frame.pic1->geometry();
    const int inside = static_cast<int>((box.bottom() - 6) * ratio);
    const int outside = static_cast<int>((box.bottom() + 3) * ratio);
    const QColor ground = frame.palette().color(QPalette::Window);
    int marks = 0;
    for (int x = static_cast<int>((box.left() + 5) * ratio);
         x < static_cast<int>((box.right() - 5) * ratio); ++x) {
      const bool isMark = image.pixelColor(x, outside) != ground;
      const bool isGrid = image.pixelColor(x, inside) != frame.pic1->Paper();
      EXPECT_EQ(isMark, isGrid) << "column " << x << " at scale " << ratio;
      marks += isMark ? 1 : 0;
    }
    EXPECT_GE(marks, 6);

    const int right = static_cast<int>((box.left() + 4) * ratio);
    const int left = static_cast<int>((box.left() - 2) * ratio);
    marks = 0;
    for (int y = static_cast<int>((box.top() + 5) * ratio);
         y < static_cast<int>((box.bottom() - 5) * ratio); ++y) {
      const bool isMark = image.pixelColor(left, y) != ground;
      const bool isGrid = image.pixelColor(right, y) != frame.pic1->Paper();
      EXPECT_EQ(isMark, isGrid) << "row " << y << " at scale " << ratio;
      marks += isMark ? 1 : 0;
    }
    EXPECT_GE(marks, 6);
  }
}

TEST_F(PlotFrameTest, NumbersAndTheUnitArePainted) {
  const QImage image = RenderOf(frame, 1);
  const QColor ground = frame.palette().color(QPalette::Window);
  const auto hasInk = [&](const QRect& place) {
    for (int y = place.top(); y <= place.bottom(); ++y) {
      for (int x = place.left(); x <= place.right(); ++x) {
        if (std::abs(image.pixelColor(x, y).lightness() - ground.lightness()) > 60) return true;
      }
    }
    return false;
  };
  for (const auto* numbers : {&frame.XNumbers(), &frame.YNumbers()}) {
    for (const auto& number : *numbers) EXPECT_TRUE(hasInk(number.place)) << number.value;
  }
  const QRect top = frame.lblYmax->geometry();
  EXPECT_TRUE(hasInk(QRect(0, 0, frame.pic1->x(), top.top() - 1)));
}

TEST_F(PlotFrameTest, NumbersFollowTheScale) {
  ShowSpectrum();
  frame.pic1->Scale(0, 100, 511, 0);
  ASSERT_FALSE(frame.XNumbers().empty());
  ASSERT_FALSE(frame.YNumbers().empty());
  EXPECT_EQ(frame.XNumbers().back().value, 448);
  EXPECT_EQ(frame.YNumbers().back().value, 90);
}

TEST_F(PlotFrameTest, NumbersShowTheirValues) {
  ShowSpectrum();
  std::vector<QString> texts;
  for (const auto& number : frame.XNumbers()) texts.push_back(number.text);
  EXPECT_EQ(texts, (std::vector<QString>{"32", "64", "96", "128", "160", "192", "224"}));
  texts.clear();
  for (const auto& number : frame.YNumbers()) texts.push_back(number.text);
  EXPECT_EQ(texts, (std::vector<QString>{"0.025", "0.05", "0.075", "0.1", "0.15", "0.175", "0.2",
                                         "0.225"}));
}

TEST_F(PlotFrameTest, NothingOverlapsAtAnySizeAndFont) {
  for (const QSize size : {QSize(500, 300), QSize(900, 500), QSize(1600, 900)}) {
    for (const int points : {8, 10, 14, 20}) {
      SetPointSize(points);
      frame.resize(size);
      for (const bool spectrum : {false, true}) {
        spectrum ? ShowSpectrum() : ShowTime();
        SCOPED_TRACE(testing::Message() << size.width() << " wide, " << points << " points, "
                                        << (spectrum ? "spectrum" : "time"));
        ExpectTidy();
        EXPECT_GT(frame.pic1->width(), size.width() / 2);
        EXPECT_GT(frame.pic1->height(), size.height() / 3);
      }
    }
  }
}

TEST_F(PlotFrameTest, MinimumSizeIsTidyToo) {
  frame.resize(frame.minimumSizeHint());
  QApplication::processEvents();
  ExpectTidy();
}

TEST_F(PlotFrameTest, StripGrowsWithALongLabel) {
  const int before = frame.pic1->x();
  frame.lblYmax->setText("1.23456789012345E+15");
  QApplication::processEvents();
  EXPECT_GT(frame.pic1->x(), before);
  ExpectTidy();
}

TEST_F(PlotFrameTest, BoxStaysWhereItIsFromScaleToScale) {
  ShowTime();
  const QRect before = frame.pic1->geometry();
  ShowSpectrum();
  EXPECT_EQ(frame.pic1->geometry(), before);
}

}  // namespace
}  // namespace kestrel
