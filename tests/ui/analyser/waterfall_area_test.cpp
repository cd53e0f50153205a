// The waterfall of a study: its map, the spectrum of a row, the level of a column.
// SPDX-License-Identifier: MIT
#include "ui/analyser/waterfall_area.h"

#include <QDir>

#include "ui/made_up_records.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

using study::CursorKind;

class WaterfallAreaTest : public ::testing::Test {
 protected:
  WaterfallAreaTest() {
    area_.setPalette(Look::Light().Palette());
    area_.resize(900, 700);
    model_.Change([](study::StudyChoice& choice) {
      choice.view = study::View::Waterfall;
      choice.focus = Axis::Z;
    });
    area_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&area_));
  }
  void TakeRows(int from, int count, int word = 1000, int option = 0) {
    for (int i = from; i < from + count; ++i) {
      TakeRecord(model_, MadeUpSpectrum(10 * i, {{40, word + i}, {80, word / 2}}, option));
    }
  }
  double ShownSecond() const {
    return std::chrono::duration<double>(area_.ShownTime()->time_since_epoch()).count() -
           kMadeUpStart;
  }
  QString Note() const {
    auto* note = area_.findChild<QLabel*>(QStringLiteral("waterfallNote"));
    return note->isVisible() ? note->text() : QString();
  }
  const SceneTrace& Trace() { return area_.Plot().Scene().panes.at(0).traces.at(0); }
  void Click(double hz, int second) {
    const QPointF place(area_.Map().XOf(hz), area_.Map().YOf(kMadeUpStart + second));
    QTest::mouseClick(&area_.Map(), Qt::LeftButton, {}, place.toPoint());
  }

  StudyModel model_;
  WaterfallArea area_{model_};
  const double bin_ = BinWidth(0);
  const double step_ = LsbWeightOf(2, RecordKind::Spectrum);
};

TEST_F(WaterfallAreaTest, SaysWhatWillStandThereBeforeTheFirstRecord) {
  EXPECT_FALSE(area_.ShownTime());
  EXPECT_NE(area_.Plot().Scene().hint, "");
  EXPECT_FALSE(RenderOf(area_, 1).isNull());
}

TEST_F(WaterfallAreaTest, TheNewestSpectrumStandsAboveTheMap) {
  TakeRows(0, 5);
  EXPECT_EQ(ShownSecond(), 40);
  EXPECT_DOUBLE_EQ(Trace().y[40], 1004 * step_);
  EXPECT_EQ(area_.Map().Rows().Count(), 5U);
  TakeRows(5, 1);
  EXPECT_EQ(ShownSecond(), 50);
  EXPECT_DOUBLE_EQ(Trace().y[40], 1005 * step_);
}

TEST_F(WaterfallAreaTest, ANewRecordAddsARowAndDrawsNoOtherAnew) {
  TakeRows(0, 20);
  const int rebuilds = area_.Rebuilds();
  TakeRows(20, 20);
  EXPECT_EQ(area_.Map().Rows().Count(), 40U);
  EXPECT_EQ(area_.Rebuilds(), rebuilds);
}

TEST_F(WaterfallAreaTest, TheMapHoldsTheChosenQuantityOfTheFocusAxis) {
  TakeRows(0, 3);
  EXPECT_FLOAT_EQ(area_.Map().Rows().Row(0)[40], static_cast<float>(1000 * step_));
  model_.Change([](auto& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  const double hz = 40 * bin_;
  EXPECT_FLOAT_EQ(area_.Map().Rows().Row(0)[40],
                  static_cast<float>(1000 * step_ * analysis::kVelocityOfG / hz));
  EXPECT_EQ(area_.Map().Rows().Count(), 3U);
  model_.Change([](auto& choice) { choice.focus = Axis::X; });
  EXPECT_FLOAT_EQ(area_.Map().Rows().Row(0)[40],
                  static_cast<float>(3 * step_ * analysis::kVelocityOfG / hz));
  model_.Change([](auto& choice) { choice.quantity.quantity = analysis::Quantity::Level; });
  EXPECT_EQ(area_.Map().Scale().kind, AxisKind::Decibel);
}

TEST_F(WaterfallAreaTest, TheColoursFollowTheVerticalAxis) {
  TakeRows(0, 3);
  EXPECT_EQ(area_.Map().Scale().kind, AxisKind::Linear);
  EXPECT_EQ(area_.Map().Scale().range.low, 0);
  model_.Change([](auto& choice) { choice.up = study::Scale::Logarithmic; });
  EXPECT_EQ(area_.Map().Scale().kind, AxisKind::Logarithmic);
  EXPECT_GT(area_.Map().Scale().range.low, 0);
  EXPECT_GE(area_.Map().Scale().range.high, 1002 * step_);
}

TEST_F(WaterfallAreaTest, ALouderRecordStaysWithinTheColours) {
  TakeRows(0, 3);
  TakeRows(3, 1, 30000);
  EXPECT_GE(area_.Map().Scale().range.high, 30003 * step_);
}

TEST_F(WaterfallAreaTest, AClickShowsTheRowAndTheLevelOverTimeOfTheColumn) {
  TakeRows(0, 30);
  Click(40 * bin_, 150);
  EXPECT_EQ(ShownSecond(), 150);
  EXPECT_DOUBLE_EQ(Trace().y[40], 1015 * step_);
  EXPECT_EQ(model_.Choice().cursor, CursorKind::Single);
  EXPECT_NEAR(*model_.Choice().inSpectrum.at, 40 * bin_, bin_ / 2);
  EXPECT_EQ(area_.Column().Column().bin, 40U);
  EXPECT_EQ(area_.Column().Column().hint, "");
  ASSERT_EQ(area_.Column().Lines().size(), 1U);
  EXPECT_EQ(area_.Column().Lines()[0].size(), 30U);
  TakeRows(30, 1);
  EXPECT_EQ(ShownSecond(), 150);
  QTest::mouseClick(area_.findChild<QToolButton*>(QStringLiteral("waterfallFollow")),
                    Qt::LeftButton);
  EXPECT_EQ(ShownSecond(), 300);
}

TEST_F(WaterfallAreaTest, ArrowKeysMoveInBothDirections) {
  TakeRows(0, 30);
  Click(40 * bin_, 150);
  area_.Map().setFocus();
  QTest::keyClick(&area_.Map(), Qt::Key_Up);
  EXPECT_EQ(ShownSecond(), 160);
  QTest::keyClick(&area_.Map(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(ShownSecond(), 60);
  QTest::keyClick(&area_.Map(), Qt::Key_Right);
  EXPECT_NEAR(*model_.Choice().inSpectrum.at, 41 * bin_, 0.01);
  for (int i = 0; i < 5; ++i) QTest::keyClick(&area_.Map(), Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_TRUE(area_.IsFollowing());
  EXPECT_EQ(ShownSecond(), 290);
}

TEST_F(WaterfallAreaTest, KeysThatItDoesNotUseReachWhoeverHoldsIt) {
  class Holder : public QWidget {
   public:
    QList<int> keys;

   protected:
    void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
  };
  Holder holder;
  auto* area = new WaterfallArea(model_, &holder);
  for (const Qt::Key key : {Qt::Key_C, Qt::Key_D, Qt::Key_H, Qt::Key_S, Qt::Key_N}) {
    QTest::keyClick(&area->Map(), key);
  }
  EXPECT_EQ(holder.keys, (QList<int>{Qt::Key_C, Qt::Key_D, Qt::Key_H, Qt::Key_S, Qt::Key_N}));
}

TEST_F(WaterfallAreaTest, TheHarmonicCursorIsThatOfTheRow) {
  TakeRows(0, 10);
  model_.MoveCursor(CursorKind::Harmonic, {.at = 40 * bin_});
  const auto& members = area_.Plot().Cursor().members;
  ASSERT_GE(members.size(), 3U);
  EXPECT_EQ(members[0].flag, "f₀");
  EXPECT_EQ(members[1].kind, MemberKind::Found);
  EXPECT_NEAR(members[1].x, 80 * bin_, bin_);
  EXPECT_EQ(members[2].kind, MemberKind::Missing);
}

TEST_F(WaterfallAreaTest, AGapIsNamedAndTheLevelDoesNotBridgeIt) {
  TakeRows(0, 10);
  model_.AddGap("sensor unplugged");
  TakeRows(40, 10);
  Click(40 * bin_, 450);
  EXPECT_EQ(area_.Column().Lines().size(), 2U);
  RenderOf(area_, 1);
}

TEST_F(WaterfallAreaTest, ALongPauseIsNotBridgedEither) {
  TakeRows(0, 10);
  TakeRows(40, 10);
  Click(40 * bin_, 450);
  EXPECT_EQ(area_.Column().Lines().size(), 2U);
}

TEST_F(WaterfallAreaTest, RecordsOfAnotherOptionBeginANewMapAndALineSaysSo) {
  TakeRows(0, 4);
  EXPECT_EQ(Note(), "");
  TakeRows(4, 2, 1000, 3);
  EXPECT_EQ(area_.Map().Rows().Count(), 2U);
  EXPECT_EQ(Note(), "4 spectra of other sample-rate options: this map is that of option 3.");
  TakeRows(6, 1);
  EXPECT_EQ(area_.Map().Rows().Count(), 5U);
  EXPECT_EQ(Note(), "2 spectra of other sample-rate options: this map is that of option 0.");
}

TEST_F(WaterfallAreaTest, AClockSetBackIsSaid) {
  TakeRows(5, 2);
  TakeRows(0, 1);
  EXPECT_EQ(area_.Map().Rows().Count(), 2U);
  EXPECT_EQ(Note(), "1 spectrum not later than the one before: the clock was set back.");
}

TEST_F(WaterfallAreaTest, FrozenItKeepsRowAndMapWhileRecordsGoOn) {
  TakeRows(0, 10);
  model_.Hold(true);
  const QImage before = RenderOf(area_.Map(), 1);
  TakeRows(10, 5);
  EXPECT_EQ(ShownSecond(), 90);
  EXPECT_EQ(RenderOf(area_.Map(), 1), before);
  TakeRows(15, 1, 1000, 2);
  EXPECT_EQ(RenderOf(area_.Map(), 1), before);
  model_.Hold(false);
  EXPECT_EQ(ShownSecond(), 150);
}

TEST_F(WaterfallAreaTest, BinsThatHoldOffsetHaveNoLevel) {
  TakeRows(0, 5);
  model_.MoveCursor(CursorKind::Single, {.at = 0.0});
  EXPECT_NE(area_.Column().Column().hint, "");
  EXPECT_TRUE(area_.Column().Lines().empty());
}

TEST_F(WaterfallAreaTest, ThresholdsOfTheBandStandBesideTheLevel) {
  TakeRows(0, 5);
  study::SensorBands bands{};
  bands[Index(Axis::Z)][2] = {.lowBin = 35, .highBin = 45, .warning = 2000, .fault = 4000};
  model_.SetSensorBands({{0, bands}});
  Click(40 * bin_, 20);
  EXPECT_DOUBLE_EQ(area_.Column().Column().thresholds.warning, 2000 * step_);
  EXPECT_DOUBLE_EQ(area_.Column().Column().thresholds.fault, 4000 * step_);
  EXPECT_GE(area_.Column().Range().high, 4000 * step_);
  RenderOf(area_, 1);
}

TEST_F(WaterfallAreaTest, ZoomingTheSpectrumZoomsTheMap) {
  TakeRows(0, 5);
  area_.Plot().ShowAcross({5000, 10000});
  EXPECT_NEAR(area_.Map().XOf(5000), area_.Map().Canvas().left(), 0.5);
  EXPECT_NEAR(area_.Map().XOf(10000), area_.Map().Canvas().right(), 0.5);
  QCoreApplication::processEvents();
  const QRectF plot = area_.Plot().Laid().Canvases();
  const double left = area_.Plot().mapTo(&area_, QPoint()).x() + plot.left();
  EXPECT_NEAR(left, area_.Map().Canvas().left() + area_.Map().x(), 1);
}

TEST_F(WaterfallAreaTest, ARecordScaledForAnotherRangeHasItsOwnValues) {
  Record record = MadeUpSpectrum(0, {{40, 1000}});
  record.scaledRange = 0;
  record.lsbWeight = LsbWeightOf(0, RecordKind::Spectrum);
  TakeRecord(model_, record);
  EXPECT_FLOAT_EQ(area_.Map().Rows().Row(0)[40], static_cast<float>(1000 * step_));
  EXPECT_DOUBLE_EQ(Trace().y[40], 1000 * step_);
}

TEST_F(WaterfallAreaTest, RecordsOfNothingAndOfFullScaleAreShown) {
  TakeRecord(model_, MadeUpSpectrum(0, {}));
  for (const Axis axis : kAxes) {
    Record record = MadeUpSpectrum(10, {});
    record.Of(axis) = {};
    for (int bin = 0; bin < 256; ++bin) record.Of(Axis::Z).raw(bin) = axis == Axis::Z ? 0 : 65535;
    record.time = MadeUpTime(10 + static_cast<int>(Index(axis)) * 10);
    TakeRecord(model_, record);
    for (const auto up : {study::Scale::Linear, study::Scale::Logarithmic}) {
      model_.Change([&](auto& choice) { choice.up = up; });
      EXPECT_FALSE(RenderOf(area_, 1).isNull());
    }
  }
  EXPECT_EQ(area_.Map().Rows().Count(), 4U);
}

TEST_F(WaterfallAreaTest, HiddenItWaitsAndThenShowsAll) {
  area_.hide();
  TakeRows(0, 10);
  EXPECT_EQ(area_.Map().Rows().Count(), 0U);
  area_.show();
  EXPECT_EQ(area_.Map().Rows().Count(), 10U);
}

// To be looked at: KESTREL_APPROVE names the folder.
TEST_F(WaterfallAreaTest, APictureToLookAt) {
  for (int i = 0; i < 60; ++i) {
    if (i == 20) model_.AddGap("sensor unplugged");
    if (i >= 20 && i <= 26) continue;
    const int speed = std::min(40, 20 + i);
    TakeRecord(model_, MadeUpSpectrum(10 * i, {{speed, 1200}, {2 * speed, 500}, {3 * speed, 200}}));
  }
  study::SensorBands bands{};
  bands[Index(Axis::Z)][2] = {.lowBin = 35, .highBin = 45, .warning = 1000, .fault = 1300};
  model_.SetSensorBands({{0, bands}});
  model_.Change([](auto& choice) { choice.up = study::Scale::Logarithmic; });
  Click(40 * bin_, 400);
  model_.MoveCursor(CursorKind::Harmonic, model_.Choice().inSpectrum);
  const QString folder = qEnvironmentVariable("KESTREL_APPROVE");
  for (const bool isDark : {false, true}) {
    area_.setPalette(isDark ? Look::Dark().Palette() : Look::Light().Palette());
    QCoreApplication::processEvents();
    const QImage picture = RenderOf(area_, 1);
    EXPECT_EQ(picture.size(), area_.size());
    if (folder.isEmpty()) continue;
    EXPECT_TRUE(picture.save(QDir(folder).filePath(isDark ? "area-dark.png" : "area-light.png")));
  }
}

}  // namespace
}  // namespace kestrel
