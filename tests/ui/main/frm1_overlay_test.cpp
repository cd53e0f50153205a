// The alarm bands on the main window's plot.
// SPDX-License-Identifier: MIT
// The alarm bands on the main window's plot.

#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "ui/overlay_window_bench.h"

namespace kestrel {
namespace {

using Frm1Overlay = OverlayWindowBench;

TEST_F(Frm1Overlay, ThresholdsAreDrawnInGOnTheScaleOfTheSpectrum) {
  StartWithBands();
  ASSERT_DOUBLE_EQ(gRecCtrl->gLsb(), kGPerLsb);
  const QImage image = Picture();
  for (int band = 1; band <= 6; ++band) {
    const int column = Column(40 * band - 25);
    for (const int line : {0, 1}) {
      EXPECT_EQ(image.pixel(column, Row(168 * kGPerLsb) + line), kAmber);
      EXPECT_EQ(image.pixel(column, Row(503 * kGPerLsb) + line), kRed);
    }
    EXPECT_NE(image.pixel(Column(40 * band), Row(168 * kGPerLsb)), kAmber) << "between two bands";
  }
}

TEST_F(Frm1Overlay, EdgesRunFromTopToBottomWithALabelEach) {
  StartWithBands();
  const QImage image = Picture();
  const QRgb edge = image.pixel(Column(50), 3);
  for (int band = 1; band <= 6; ++band) {
    SCOPED_TRACE(band);
    for (const int bin : {40 * band - 30, 40 * band - 10}) {
      for (const int y : {0, Row(0.5), Plot().height() - 1}) {
        EXPECT_EQ(image.pixel(Column(bin), y), edge);
      }
    }
    const QString number = QString::number(band);
    QLabel& low = Label(("lblABLow_" + number).toUtf8().constData());
    QLabel& high = Label(("lblABHigh_" + number).toUtf8().constData());
    EXPECT_EQ(low.text(), number + "L");
    EXPECT_EQ(high.text(), number + "H");
    EXPECT_TRUE(low.isVisible());
    EXPECT_NEAR(low.x(), Plot().x() + Column(40 * band - 30), 2);
    EXPECT_NEAR(high.x(), Plot().x() + Column(40 * band - 10), 2);
  }
}

TEST_F(Frm1Overlay, WithoutAnEditorThereAreNoBands) {
  StartWithBands();
  Window().Overlay().SetOwner(nullptr);
  const QImage image = Picture();
  EXPECT_EQ(CountOf(image, kAmber), 0);
  EXPECT_EQ(CountOf(image, kRed), 0);
  EXPECT_FALSE(Label("lblABLow_1").isVisible());
  Press("cmdPlotScale");
  EXPECT_EQ(CountOf(Picture(), kAmber), 0);
}

TEST_F(Frm1Overlay, AScaleStepDrawsTheBandsOnTheNewScale) {
  StartWithBands();
  Press("cmdPlotScale");
  ASSERT_EQ(Find<QPushButton>("cmdPlotScale").text(), "0.5");
  const QImage image = Picture();
  EXPECT_EQ(image.pixel(Column(60), Row(168 * kGPerLsb / 0.5)), kAmber);
  EXPECT_EQ(CountOf(image, kRed), 0) << "0.6 g is beyond the scale";
  EXPECT_EQ(Label("lblABLow_2").text(), "2L");
  EXPECT_EQ(Window().Overlay().Drag().Tolerance().y, 0.5 / 200);
}

TEST_F(Frm1Overlay, WhileItIsOffAScaleStepDrawsNoBands) {
  StartWithBands();
  owner_.axis = std::nullopt;
  Window().Overlay().ClearLines();
  Press("cmdPlotScale");
  EXPECT_EQ(CountOf(Picture(), kAmber), 0);
  EXPECT_EQ(Window().Overlay().Drag().Tolerance().y, 1.0 / 200) << "PlotBands was not called";
}

TEST_F(Frm1Overlay, LabelsComeBackAfterTheTracesWereChosenAnew) {
  StartWithBands();
  Find<QCheckBox>("ckYtrace").click();
  EXPECT_EQ(Label("lblABLow_2").text(), "2L");
  EXPECT_EQ(Label("lblABHigh_6").text(), "6H");
  owner_.axis = std::nullopt;
  Find<QCheckBox>("ckYtrace").click();
  EXPECT_EQ(Label("lblABLow_2").text(), "");
}

TEST_F(Frm1Overlay, ATimeRecordHidesTheBandsAndTheNextSpectrumBringsThemBack) {
  StartWithBands();
  Choose("cbxRecMode", 2);
  Press("cmdStart");
  ASSERT_EQ(Buff.width, kTimeWidth);
  EXPECT_EQ(CountOf(Picture(), kAmber), 0);
  EXPECT_FALSE(Label("lblABLow_2").isVisible());
  Hover(50, 0.5);
  EXPECT_EQ(Mode(), DragMode::Idle);
  Choose("cbxRecMode", 0);
  Press("cmdStart");
  ASSERT_EQ(Buff.width, kFftWidth);
  EXPECT_EQ(Picture().pixel(Column(60), Row(168 * kGPerLsb)), kAmber);
  EXPECT_TRUE(Label("lblABLow_2").isVisible());
}

TEST_F(Frm1Overlay, ReadBufferAndGetRecordKeepTheBands) {
  StartWithBands();
  for (const char* button : {"cmdReadBuffer", "cmdGetRecord"}) {
    Press(button);
    EXPECT_EQ(Picture().pixel(Column(60), Row(168 * kGPerLsb)), kAmber) << button;
    EXPECT_EQ(Label("lblABLow_2").text(), "2L") << button;
  }
}

}  // namespace
}  // namespace kestrel
