// Marks, ranges and clipboard of the grid of the bands.
// SPDX-License-Identifier: MIT

#include "ui/bands/band_grid_bench.h"

namespace kestrel {
namespace {

TEST_F(BandGridTest, ABlockGoesToTheClipboardAndBack) {
  Enter(1, kFLow, "10");
  Enter(1, kFHigh, "20");
  Enter(2, kFLow, "30");
  Enter(2, kFHigh, "40");
  Select({{1, kFLow}, {2, kFHigh}});
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Clipboard(), "10\t20\n30\t40");
  GoTo(4, kFLow);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Shown(4, kFLow) + Shown(4, kFHigh) + Shown(5, kFLow) + Shown(5, kFHigh), "10203040");
  EXPECT_EQ(Message(), "4 values pasted.");
}

TEST_F(BandGridTest, ThresholdsSurviveTheWayThroughTheClipboardInTheUsersDecimalMark) {
  locale_.decimalMark = ',';
  Given(AlarmBandTable)(Alarm1Field(Axis::X), 1, 0) = 12345;
  editor_->Refresh();
  Select({{1, kAlarm1X}, {1, kAlarm1X}});
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(Clipboard().contains(',')) << Clipboard().toStdString();
  Select({{2, kAlarm1X}, {6, kAlarm2Z}});
  Key(Qt::Key_V, Qt::ControlModifier);
  for (std::size_t i = 2; i < 8; ++i) EXPECT_EQ(Values(6, 0)[i], 12345);
}

TEST_F(BandGridTest, ValuesTheSensorDoesNotHoldAreMarkedUntilTheyAreWritten) {
  EXPECT_EQ(State(), "The sensor holds these bands.");
  Enter(2, kFHigh, "20");
  EXPECT_EQ(Marks(2, kFHigh), BandGridModel::NotWritten);
  EXPECT_EQ(Marks(2, kFLow), 0);
  EXPECT_EQ(State(), "Not yet written to the sensor: 1 value.");
  EXPECT_NE(Data(2, kFHigh, Qt::ToolTipRole).find("not yet written, the sensor holds 0"),
            std::string::npos);
  ShowOption(1);
  EXPECT_EQ(State(), "Not yet written to the sensor: 1 value, 1 at other sample-rate options.");
  ShowOption(0);
  Enter(2, kFHigh, "0");
  EXPECT_EQ(Marks(2, kFHigh), 0);
}

TEST_F(BandGridTest, ABandThatCoversNoBinAndAnAlarm1AboveAlarm2AreMarkedAndTold) {
  Enter(3, kFLow, "9");
  EXPECT_EQ(Marks(3, kFLow) & BandGridModel::EmptyBand, BandGridModel::EmptyBand);
  EXPECT_EQ(Marks(3, kFHigh), BandGridModel::EmptyBand);
  Enter(4, kAlarm1X, "0.1");
  EXPECT_EQ(Marks(4, kAlarm1X) & BandGridModel::Doubtful, BandGridModel::Doubtful);
  EXPECT_EQ(State(),
            "Not yet written to the sensor: 2 values. Band 3: F-low is above F-high, so it covers "
            "no bin. Band 4: alarm 1 is above alarm 2 on X.");
  EXPECT_NE(Data(3, kFHigh, Qt::ToolTipRole).find("F-low is above F-high"), std::string::npos);
}

class BandGridMarks : public BandGridTest {
 protected:
  int Inked(int band, int column, const QRectF& part) {
    GoTo(6, kAlarm2Z);
    const QRect cell = Grid().visualRect(Grid().model()->index(band - 1, column - 1));
    const QImage picture =
        Grid().viewport()->grab(cell).toImage().convertToFormat(QImage::Format_Grayscale8);
    const int ground = picture.pixelColor(2, 2).value();
    const QRect all = picture.rect().adjusted(1, 1, -2, -2);  // without the lines of the grid
    int inked = 0;
    for (int y = all.top(); y <= all.bottom(); ++y) {
      for (int x = all.left(); x <= all.right(); ++x) {
        if (!part.contains(x * 1.0 / picture.width(), y * 1.0 / picture.height())) continue;
        inked += std::abs(picture.pixelColor(x, y).value() - ground) > 60 ? 1 : 0;
      }
    }
    return inked;
  }
  void Put(int field, int value) {
    Given(AlarmBandTable)(field, 1, 0) = value;
    editor_->Refresh();
  }
};

TEST_F(BandGridMarks, EveryMarkIsSeenWithoutColours) {
  const QPalette light = QApplication::palette();
  for (const QPalette& theme : {light, DarkPalette()}) {
    QApplication::setPalette(theme);
    Given(AlarmBandTable) = {};
    editor_->Refresh();
    const QRectF all(0, 0, 1, 1);
    const QRectF left(0, 0, 0.15, 1);
    const QRectF corner(0.85, 0, 0.15, 0.2);
    const int plain = Inked(1, 6, all);
    EXPECT_EQ(Inked(1, kFHigh, left), 0);
    EXPECT_EQ(Inked(1, kAlarm1X, corner), 0);
    Put(Alarm1Field(Axis::X), 1);
    EXPECT_GT(Inked(1, 6, all), plain + 5) << "a wave";
    EXPECT_GT(Inked(1, kAlarm1X, corner), 0) << "a folded corner";
    Put(kFLowField, 1);
    EXPECT_GT(Inked(1, kFHigh, left), 4) << "an exclamation mark";
  }
  QApplication::setPalette(light);
}

TEST_F(BandGridTest, WithoutARangeThresholdsShowADashAndRefuseEditsWithTheReason) {
  MakeRecCtrl(core_.registers);
  editor_->Refresh();
  EXPECT_EQ(Shown(1, kAlarm1X), "-");
  EXPECT_EQ(Get<QLabel>("lblRange").text(), "Range not known");
  GoTo(1, kAlarm1X);
  Type("5");
  EXPECT_EQ(Editor(1, kAlarm1X), nullptr);
  EXPECT_EQ(Message(), kNoRange);
  Enter(1, kFLow, "5");
  EXPECT_EQ(Values(1, 0), (Row{5}));
}

TEST_F(BandGridTest, ThresholdsFollowTheRangeAndKeepTheirCodes) {
  Choose("cbxSignalRange", 0);
  editor_->Refresh();
  Enter(1, kAlarm1X, "0.5");
  const std::int32_t code = Values(1, 0)[2];
  EXPECT_EQ(Shown(1, kAlarm1X), CellText(kAlarm1X, code, CurrentScale()));
  const std::string before = Shown(1, kAlarm1X);
  Choose("cbxSignalRange", 1);
  editor_->Refresh();
  EXPECT_EQ(Values(1, 0)[2], code);
  EXPECT_EQ(Shown(1, kAlarm1X), CellText(kAlarm1X, code, CurrentScale()));
  EXPECT_NE(Shown(1, kAlarm1X), before);
}

}  // namespace
}  // namespace kestrel
