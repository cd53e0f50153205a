// Mouse and keys over the plot: zoom, pan, rubber band, snapping, history, and what is handed on.
// SPDX-License-Identifier: MIT
#include <QSignalSpy>
#include <QWheelEvent>

#include "ui/chart/analyser_plot.h"
#include "ui/chart/sample_scenes.h"

namespace kestrel {
namespace {

class AnalyserPlotInput : public ::testing::Test {
 protected:
  AnalyserPlotInput() {
    plot_.resize(800, 500);
    plot_.SetScene(OverlaidScene(AxisKind::Linear));
    plot_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&plot_));
  }
  QPoint At(double x, double y, std::size_t pane = 0) const {
    const PaneLayout laid = plot_.Laid().panes[pane];
    return QPointF(laid.across.ToPixel(x), laid.up.ToPixel(y)).toPoint();
  }
  void Turn(QPoint place, QPoint angle, Qt::KeyboardModifiers modifiers = {}) {
    QWheelEvent turn(place, plot_.mapToGlobal(place), {}, angle, Qt::NoButton, modifiers,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&plot_, &turn);
  }
  void DragFrom(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton,
                Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(&plot_, button, modifiers, from);
    for (int part = 1; part <= 4; ++part) {
      const QPointF place = QPointF(from) + QPointF(to - from) * part / 4;
      QMouseEvent move(QEvent::MouseMove, place, plot_.mapToGlobal(place), Qt::NoButton, button,
                       modifiers);
      QCoreApplication::sendEvent(&plot_, &move);
    }
    QTest::mouseRelease(&plot_, button, modifiers, to);
  }
  void Point(QPointF place) {
    QMouseEvent move(QEvent::MouseMove, place, plot_.mapToGlobal(place), Qt::NoButton, {}, {});
    QCoreApplication::sendEvent(&plot_, &move);
  }
  double Value(QPoint place) const { return plot_.Laid().panes[0].across.FromPixel(place.x()); }

  AnalyserPlot plot_;
};

TEST_F(AnalyserPlotInput, TheWheelZoomsAtThePointer) {
  const QPoint place = At(20000, 0.3);
  const double before = Value(place);
  Turn(place, {0, 240});
  EXPECT_NEAR(plot_.Ranges().across.Span(), 50000 / 1.5625, 1);
  EXPECT_NEAR(Value(place), before, 1);
  Turn(place, {0, -2400});
  EXPECT_EQ(plot_.Ranges().across, (PlotRange{0, 50000}));
}

TEST_F(AnalyserPlotInput, ShiftAndWheelZoomVertically) {
  const PlotRange before = plot_.Ranges().up[0];
  Turn(At(20000, 0.3), {0, 120}, Qt::ShiftModifier);
  EXPECT_EQ(plot_.Ranges().across, (PlotRange{0, 50000}));
  EXPECT_NEAR(plot_.Ranges().up[0].Span(), before.Span() / 1.25, 1e-9);
}

TEST_F(AnalyserPlotInput, TheWheelOverTheVerticalAxisZoomsThatAxis) {
  const PlotRange before = plot_.Ranges().up[0];
  Turn(QPoint(10, At(0, 0.3).y()), {0, 120});
  EXPECT_EQ(plot_.Ranges().across, (PlotRange{0, 50000}));
  EXPECT_LT(plot_.Ranges().up[0].Span(), before.Span());
}

TEST_F(AnalyserPlotInput, ADragMovesWhatIsUnderThePointerAlong) {
  Turn(At(20000, 0.3), {0, 600});
  const QPoint from = At(20000, 0.3);
  const double held = Value(from);
  const QPoint to = from + QPoint(-80, 30);
  const PlotRange up = plot_.Ranges().up[0];
  DragFrom(from, to);
  EXPECT_NEAR(Value(to), held, 20);
  EXPECT_GT(plot_.Ranges().up[0].low, up.low);
  EXPECT_NEAR(plot_.Ranges().up[0].Span(), up.Span(), 1e-9);
}

TEST_F(AnalyserPlotInput, ADragOnAnAxisMovesThatAxisAlone) {
  Turn(At(20000, 0.3), {0, 600});
  const PlotRanges before = plot_.Ranges();
  const int below = static_cast<int>(plot_.Laid().acrossAxis.center().y());
  DragFrom(QPoint(400, below), QPoint(300, below - 40));
  EXPECT_GT(plot_.Ranges().across.low, before.across.low);
  EXPECT_EQ(plot_.Ranges().up, before.up);
  const PlotRange across = plot_.Ranges().across;
  DragFrom(QPoint(10, 200), QPoint(60, 240));
  EXPECT_EQ(plot_.Ranges().across, across);
  EXPECT_GT(plot_.Ranges().up[0].low, before.up[0].low);
}

TEST_F(AnalyserPlotInput, ARubberBandShowsWhatItHolds) {
  for (const bool isRight : {true, false}) {
    plot_.ShowAll();
    DragFrom(At(10000, 0.4), At(30000, 0.1), isRight ? Qt::RightButton : Qt::LeftButton,
             isRight ? Qt::NoModifier : Qt::ControlModifier);
    EXPECT_NEAR(plot_.Ranges().across.low, 10000, 100);
    EXPECT_NEAR(plot_.Ranges().across.high, 30000, 100);
    EXPECT_NEAR(plot_.Ranges().up[0].low, 0.1, 0.005);
    EXPECT_NEAR(plot_.Ranges().up[0].high, 0.4, 0.005);
  }
}

TEST_F(AnalyserPlotInput, EscapeEndsADragWhereItBegan) {
  Turn(At(20000, 0.3), {0, 600});
  const PlotRange before = plot_.Ranges().across;
  QTest::mousePress(&plot_, Qt::LeftButton, {}, QPoint(400, 200));
  QMouseEvent move(QEvent::MouseMove, QPointF(300, 200), plot_.mapToGlobal(QPointF(300, 200)),
                   Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(&plot_, &move);
  EXPECT_NE(plot_.Ranges().across, before);
  QTest::keyClick(&plot_, Qt::Key_Escape);
  EXPECT_EQ(plot_.Ranges().across, before);
}

TEST_F(AnalyserPlotInput, ANewRecordInTheMiddleOfADragLeavesTheViewAlone) {
  Turn(At(20000, 0.3), {0, 600});
  QTest::mousePress(&plot_, Qt::LeftButton, {}, QPoint(400, 200));
  for (const int x : {380, 340}) {
    QMouseEvent move(QEvent::MouseMove, QPointF(x, 200), plot_.mapToGlobal(QPointF(x, 200)),
                     Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&plot_, &move);
    const PlotRange before = plot_.Ranges().across;
    plot_.SetScene(OverlaidScene(AxisKind::Linear));
    EXPECT_EQ(plot_.Ranges().across, before);
  }
  plot_.SetScene(EmptyScene());
  QTest::mouseRelease(&plot_, Qt::LeftButton, {}, QPoint(340, 200));
  plot_.SetScene(PlotScene{});
  QTest::mouseMove(&plot_, QPoint(300, 200));
  EXPECT_TRUE(plot_.Scene().panes.empty());
}

TEST_F(AnalyserPlotInput, ADoubleClickNearAPeakSnapsAndElsewhereShowsAll) {
  QSignalSpy snapped(&plot_, &AnalyserPlot::SnapAsked);
  Turn(At(20000, 0.3), {0, 120});
  QTest::mouseDClick(&plot_, Qt::LeftButton, {}, At(22698.2, 0.601) + QPoint(5, 4));
  ASSERT_EQ(snapped.count(), 1);
  EXPECT_EQ(snapped[0][0].toDouble(), 22698.2);
  EXPECT_FALSE(plot_.ShowsAll());
  QTest::mouseRelease(&plot_, Qt::LeftButton);
  QTest::mouseDClick(&plot_, Qt::LeftButton, {}, At(22698.2, 0.601) + QPoint(15, 9));
  EXPECT_EQ(snapped.count(), 1);
  EXPECT_TRUE(plot_.ShowsAll());
}

TEST_F(AnalyserPlotInput, AClickPlacesTheCursorOnASample) {
  QSignalSpy placed(&plot_, &AnalyserPlot::CursorPlaced);
  QTest::mouseClick(&plot_, Qt::LeftButton, {}, At(100.3 * kBin, 0.2));
  ASSERT_EQ(placed.count(), 1);
  EXPECT_NEAR(placed[0][0].toDouble(), 100 * kBin, 2 * kBin);
  EXPECT_DOUBLE_EQ(std::fmod(placed[0][0].toDouble() / kBin + 0.5, 1), 0.5);
}

TEST_F(AnalyserPlotInput, ACursorsLineCanBeDragged) {
  plot_.SetCursor(DeltaCursor());
  QSignalSpy dragged(&plot_, &AnalyserPlot::MemberDragged);
  const PlotRange before = plot_.Ranges().across;
  DragFrom(At(24664, 0.4), At(30000, 0.4));
  ASSERT_GT(dragged.count(), 0);
  EXPECT_EQ(dragged.last()[0].toInt(), 1);
  EXPECT_NEAR(dragged.last()[1].toDouble(), 30000, 100);
  EXPECT_EQ(plot_.Ranges().across, before);
}

TEST_F(AnalyserPlotInput, ViewsAreGoneThroughBackAndForward) {
  EXPECT_FALSE(plot_.CanGoBack());
  plot_.ShowAcross({10000, 20000});
  plot_.ShowAcross({12000, 14000});
  QTest::keyClick(&plot_, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(plot_.Ranges().across, (PlotRange{10000, 20000}));
  QTest::keyClick(&plot_, Qt::Key_Left, Qt::AltModifier);
  EXPECT_TRUE(plot_.ShowsAll());
  EXPECT_FALSE(plot_.CanGoBack());
  QTest::keyClick(&plot_, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(plot_.Ranges().across, (PlotRange{10000, 20000}));
  EXPECT_TRUE(plot_.CanGoForward());
}

TEST_F(AnalyserPlotInput, KeysZoomAboutTheCursorAndShowAll) {
  plot_.SetCursor(HarmonicCursor());
  QTest::keyClick(&plot_, Qt::Key_Plus);
  EXPECT_NEAR(plot_.Ranges().across.Span(), 50000 / 1.5, 1);
  const AxisMap before({0, 50000}, AxisKind::Linear, 0, 1);
  const AxisMap after(plot_.Ranges().across, AxisKind::Linear, 0, 1);
  EXPECT_NEAR(after.ToPixel(8220.9), before.ToPixel(8220.9), 1e-9);
  QTest::keyClick(&plot_, Qt::Key_A);
  EXPECT_TRUE(plot_.ShowsAll());
  const PlotRange up = plot_.Ranges().up[0];
  QTest::keyClick(&plot_, Qt::Key_Minus, Qt::ShiftModifier);
  EXPECT_NEAR(plot_.Ranges().up[0].Span(), up.Span() * 1.5, 1e-9);
}

TEST_F(AnalyserPlotInput, ArrowsStepTheCursor) {
  QSignalSpy steps(&plot_, &AnalyserPlot::StepAsked);
  QTest::keyClick(&plot_, Qt::Key_Right);
  QTest::keyClick(&plot_, Qt::Key_Left, Qt::ShiftModifier);
  QTest::keyClick(&plot_, Qt::Key_Right, Qt::ControlModifier);
  ASSERT_EQ(steps.count(), 3);
  EXPECT_EQ(steps[0][0].toDouble(), 1);
  EXPECT_EQ(steps[1][0].toDouble(), -10);
  EXPECT_EQ(steps[2][0].toDouble(), 0.1);
}

TEST_F(AnalyserPlotInput, EveryOtherKeyIsHandedOnAsACommand) {
  std::vector<PlotCommand> asked;
  QObject::connect(&plot_, &AnalyserPlot::CommandAsked,
                   [&](PlotCommand command) { asked.push_back(command); });
  const std::vector<std::pair<Qt::Key, PlotCommand>> plain{
      {Qt::Key_X, PlotCommand::ShowX},
      {Qt::Key_O, PlotCommand::Stack},
      {Qt::Key_H, PlotCommand::CursorHarmonic},
      {Qt::Key_P, PlotCommand::SnapToPeak},
      {Qt::Key_PageDown, PlotCommand::LargerPeak},
      {Qt::Key_G, PlotCommand::Vertical},
      {Qt::Key_Space, PlotCommand::Freeze},
      {Qt::Key_Home, PlotCommand::FirstValid}};
  for (const auto& [key, command] : plain) {
    asked.clear();
    QTest::keyClick(&plot_, key);
    EXPECT_EQ(asked, std::vector{command}) << key;
  }
  asked.clear();
  QTest::keyClick(&plot_, Qt::Key_Z, Qt::ShiftModifier);
  QTest::keyClick(&plot_, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(asked, (std::vector{PlotCommand::FocusZ, PlotCommand::Copy}));
  asked.clear();
  QTest::keyClick(&plot_, Qt::Key_Q);
  EXPECT_TRUE(asked.empty());
}

TEST_F(AnalyserPlotInput, StackedPanesShareTheirHorizontalAxis) {
  plot_.SetScene(StackedScene());
  const auto before = plot_.Ranges().up;
  Turn(At(20000, 0.1, 1), {0, 240});
  const PlotLayout laid = plot_.Laid();
  ASSERT_EQ(laid.panes.size(), 3U);
  for (const PaneLayout& pane : laid.panes) {
    EXPECT_EQ(pane.across.Range(), plot_.Ranges().across);
    EXPECT_EQ(pane.canvas.left(), laid.panes[0].canvas.left());
  }
  Turn(At(20000, 0.1, 1), {0, 240}, Qt::ShiftModifier);
  EXPECT_EQ(plot_.Ranges().up[0], before[0]);
  EXPECT_NE(plot_.Ranges().up[1], before[1]);
}

TEST_F(AnalyserPlotInput, ThePointerReadsTheNearestSampleOut) {
  QSignalSpy moved(&plot_, &AnalyserPlot::PointerMoved);
  QSignalSpy left(&plot_, &AnalyserPlot::PointerLeft);
  Point(At(50.2 * kBin, 0.4));
  ASSERT_EQ(moved.count(), 1);
  ASSERT_TRUE(plot_.PointerX());
  EXPECT_NEAR(*plot_.PointerX(), 50 * kBin, 2 * kBin);
  Point(QPoint(5, 5));
  EXPECT_EQ(left.count(), 1);
}

TEST_F(AnalyserPlotInput, AnAxisOfAnotherKindForgetsWhatWasZoomedOnTheOld) {
  Turn(At(20000, 0.3), {0, 240}, Qt::ShiftModifier);
  const PlotRange linear = plot_.Ranges().up[0];
  plot_.SetScene(OverlaidScene(AxisKind::Decibel));
  EXPECT_NE(plot_.Ranges().up[0], linear);
  PlotScene time = EmptyScene();
  time.across.unit = "ms";
  time.across.whole = {0, 0.00511};
  plot_.SetScene(time);
  EXPECT_EQ(plot_.Ranges().across, time.across.whole);
  EXPECT_FALSE(plot_.CanGoBack());
}

}  // namespace
}  // namespace kestrel
