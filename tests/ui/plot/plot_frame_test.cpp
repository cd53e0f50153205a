// Labels and numbers around the plot.
// SPDX-License-Identifier: MIT
#include "ui/plot/plot_frame.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPalette>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "ui/rendering.h"

namespace kestrel {
namespace {

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

int CentreX(const QRect& place) {
  return place.left() + place.width() / 2;
}
int CentreY(const QRect& place) {
  return place.top() + place.height() / 2;
}

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

TEST_F(PlotFrameTest, EdgeLabelStandsAtItsPlaceAndFollowsTheBox) {
  ShowSpectrum();
  QLabel* label = frame.Edges().At(false, 2);
  frame.Edges().SetText(false, 2, "2");
  frame.Edges().PlaceAt(false, 2, 100);
  const auto expected = [&] { return frame.pic1->x() + frame.pic1->ToPixels({100, 0}).x(); };
  EXPECT_TRUE(label->isVisible());
  EXPECT_NEAR(label->x(), expected(), 2);
  frame.resize(600, 400);
  QApplication::processEvents();
  EXPECT_NEAR(label->x(), expected(), 2);
  EXPECT_TRUE(label->testAttribute(Qt::WA_TransparentForMouseEvents));
}

TEST_F(PlotFrameTest, EdgeLabelsStayInsideTheBox) {
  ShowSpectrum();
  for (const double x : {-50.0, 0.0, 255.0, 400.0}) {
    frame.Edges().SetText(true, 6, "high 6");
    frame.Edges().PlaceAt(true, 6, x);
    EXPECT_TRUE(frame.pic1->geometry().contains(frame.Edges().At(true, 6)->geometry())) << x;
  }
}

TEST_F(PlotFrameTest, EdgesSharedByTwoBandsDoNotCoverEachOther) {
  ShowSpectrum();
  frame.Edges().SetText(true, 1, "1");
  frame.Edges().PlaceAt(true, 1, 50);
  frame.Edges().SetText(false, 2, "2");
  frame.Edges().PlaceAt(false, 2, 51);
  EXPECT_FALSE(
      frame.Edges().At(true, 1)->geometry().intersects(frame.Edges().At(false, 2)->geometry()));
}

TEST_F(PlotFrameTest, EdgeLabelsInOnePlaceAreAllLegible) {
  ShowSpectrum();
  for (int band = 1; band <= 6; ++band) {
    for (const bool high : {false, true}) {
      frame.Edges().SetText(high, band, QString::number(band));
      frame.Edges().PlaceAt(high, band, 0);
    }
  }
  std::vector<QRect> places;
  for (const bool high : {false, true}) {
    for (int band = 1; band <= 6; ++band) {
      const QRect place = frame.Edges().At(high, band)->geometry();
      EXPECT_TRUE(frame.pic1->geometry().contains(place));
      EXPECT_EQ(place.left(), frame.Edges().At(false, 1)->x());
      for (const QRect& other : places) EXPECT_FALSE(place.intersects(other));
      places.push_back(place);
    }
  }
}

TEST_F(PlotFrameTest, EdgeLabelIsHiddenWhileBlankOrNotPlaced) {
  QLabel* label = frame.Edges().At(true, 3);
  frame.Edges().SetText(true, 3, "3");
  EXPECT_TRUE(label->isHidden());
  frame.Edges().PlaceAt(true, 3, 10);
  EXPECT_FALSE(label->isHidden());
  frame.Edges().SetText(true, 3, " ");
  EXPECT_TRUE(label->isHidden());
  label->setText("3");
  frame.Edges().PlaceAt(true, 3, 10);
  EXPECT_FALSE(label->isHidden());
  label->setText("");
  QApplication::processEvents();
  EXPECT_TRUE(label->isHidden());
}

TEST_F(PlotFrameTest, EdgeLabelsReadWellInADarkTheme) {
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(0x2B, 0x2D, 0x30));
  dark.setColor(QPalette::WindowText, QColor(0xDF, 0xE1, 0xE5));
  frame.setPalette(dark);
  QApplication::processEvents();
  EXPECT_GT(frame.lblYmax->palette().color(QPalette::WindowText).lightness(), 180);
  const QPalette edge = frame.Edges().At(true, 1)->palette();
  EXPECT_LT(edge.color(QPalette::WindowText).lightness(), 60);
  EXPECT_GT(edge.color(QPalette::Window).lightness(), 200);
}

}  // namespace
}  // namespace kestrel
