// The labels at the edges of alarm bands.
// SPDX-License-Identifier: MIT

#include "ui/plot/plot_frame_bench.h"

namespace kestrel {
namespace {

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
