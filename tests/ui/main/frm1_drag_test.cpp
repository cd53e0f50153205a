// Dragging the alarm bands on the main window's plot.
// SPDX-License-Identifier: MIT

#include <QWindow>

#include "ui/overlay_window_bench.h"

namespace kestrel {
namespace {

using Edges = FakeOverlayOwner::Edges;
using Frm1Drag = OverlayWindowBench;

TEST_F(Frm1Drag, TheLineUnderThePointerIsHighlighted) {
  StartWithBands();
  const QImage plain = Picture();
  Hover(50, 0.4);
  EXPECT_EQ(Picture().pixel(Column(50), 3), kCyan);
  EXPECT_EQ(Plot().cursor().shape(), Qt::SizeHorCursor);
  EXPECT_FALSE(Plot().toolTip().isEmpty());
  Hover(60, 168 * kGPerLsb);
  EXPECT_EQ(Picture().pixel(Column(52), Row(168 * kGPerLsb)), kCyan);
  EXPECT_EQ(Picture().pixel(Column(50), 3), plain.pixel(Column(50), 3));
  EXPECT_EQ(Plot().cursor().shape(), Qt::SizeVerCursor);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&Plot(), &leave);
  EXPECT_EQ(Picture(), plain);
  EXPECT_EQ(Plot().cursor().shape(), Qt::ArrowCursor);
  EXPECT_TRUE(Plot().toolTip().isEmpty());
}

TEST_F(Frm1Drag, ABandIsDraggedAndItsNewBinsGoToTheEditor) {
  StartWithBands();
  Grab(50, 0.4);
  Pull(61, 0.4);
  EXPECT_NEAR(Line(1, 2).x1, 61, 0.01);
  EXPECT_NEAR(Label("lblABLow_2").x(), Plot().x() + Column(61), 2);
  EXPECT_EQ(Text("lblCursorX"), "61");
  EXPECT_EQ(Text("lblCursorY"), "0.400");
  Release(61, 0.4);
  EXPECT_EQ(owner_.edges, std::vector{(Edges{2, 61, 81})});
  EXPECT_EQ(Line(1, 2).x1, 61);
  EXPECT_EQ(Line(2, 2).x1, 81);
  EXPECT_TRUE(messages_.Texts().empty());
}

// The way the window system delivers it: through the lines and labels that lie over the plot.
TEST_F(Frm1Drag, ADragThroughTheWindowReachesThePlot) {
  StartWithBands();
  QWindow* window = Window().windowHandle();
  const QPoint label = Label("lblABLow_2").geometry().center();
  const auto place = [&](double x) {
    const QPoint at(Column(x), label.y() - Plot().y());
    return Plot().mapTo(&Window(), at);
  };
  QTest::mouseMove(window, place(50));
  QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, place(50));
  EXPECT_EQ(Mode(), DragMode::DraggingEdge);
  QTest::mouseMove(window, place(55));
  QTest::mouseMove(window, place(61));
  QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, place(61));
  ASSERT_EQ(owner_.edges.size(), 1U);
  EXPECT_EQ(owner_.edges[0].band, 2);
  EXPECT_NEAR(owner_.edges[0].fLow, 61, 1);
  EXPECT_EQ(owner_.edges[0].fHigh - owner_.edges[0].fLow, 20);
}

TEST_F(Frm1Drag, AnEdgeIsDraggedToBin255AndTheReadOutIsThePointers) {
  StartWithBands();
  Grab(50, 0.4);
  Pull(248, 0.4);
  EXPECT_NEAR(Line(1, 2).x1, 248, 0.01);
  EXPECT_EQ(Line(2, 2).x1, 255);
  EXPECT_EQ(Text("lblCursorX"), "248");
  Pull(255, 0.4);
  EXPECT_EQ(Line(1, 2).x1, 255);
  EXPECT_EQ(Text("lblCursorX"), "255");
  EXPECT_EQ(Text("LblFreq"), "49,899 Hz");
  Pull(300, 0.4);
  EXPECT_EQ(Text("lblCursorX"), "255") << "the record ends there";
  Release(300, 0.4);
  EXPECT_EQ(owner_.edges, std::vector{(Edges{2, 255, 255})});
}

TEST_F(Frm1Drag, WithShiftTheReadOutIsThePointersToo) {
  StartWithBands();
  Grab(50, 0.4);
  Pull(90, 0.4, Qt::ShiftModifier);
  EXPECT_EQ(Line(1, 2).x1, 70) << "not past its partner";
  EXPECT_EQ(Text("lblCursorX"), "90");
}

TEST_F(Frm1Drag, WithShiftOneEdgeIsDragged) {
  StartWithBands();
  Grab(70, 0.4);
  Pull(79, 0.4, Qt::ShiftModifier);
  EXPECT_EQ(Plot().cursor().shape(), Qt::SplitHCursor);
  Release(79, 0.4);
  EXPECT_EQ(owner_.edges, std::vector{(Edges{2, 50, 79})});
}

TEST_F(Frm1Drag, ALevelIsDraggedAndTheReadOutShowsIt) {
  StartWithBands();
  Grab(60, 168 * kGPerLsb);
  Pull(65, 0.4);
  EXPECT_EQ(Text("lblCursorX"), "65");
  EXPECT_EQ(Text("lblCursorY"), "0.400");
  Pull(65, -0.2);
  EXPECT_EQ(Text("lblCursorY"), "-0.200") << "the pointer's, while the level stays at 0";
  EXPECT_EQ(Line(3, 2).y1, 0);
  Pull(65, 0.4);
  Release(65, 0.4);
  ASSERT_EQ(owner_.levels.size(), 1U);
  EXPECT_EQ(owner_.levels[0].band, 2);
  EXPECT_EQ(owner_.levels[0].alarm, 1);
  EXPECT_NEAR(owner_.levels[0].g, 0.4, 1e-9);
}

TEST_F(Frm1Drag, HoverAndDragDrawNoTraceAgainAndAskTheSensorNothing) {
  StartWithBands();
  const int drawn = Plot().TracePaintCount();
  int transfers = 0;  // the watch over the adapter goes on and makes none
  usb_.OnBlock([&](auto) { ++transfers; });
  Hover(50, 0.4);
  QApplication::processEvents();
  Grab(50, 0.4);
  for (int x = 51; x < 200; x += 7) {
    Pull(x, 0.4);
    QApplication::processEvents();
  }
  Release(200, 0.4);
  QApplication::processEvents();
  EXPECT_EQ(Plot().TracePaintCount(), drawn);
  EXPECT_EQ(transfers, 0);
  EXPECT_EQ(owner_.edges.size(), 1U);
}

TEST_F(Frm1Drag, EscapeEndsADrag) {
  StartWithBands();
  Grab(50, 0.4);
  Pull(90, 0.4);
  QTest::keyClick(&Plot(), Qt::Key_Escape);
  ExpectDragUndone();
  EXPECT_NEAR(Label("lblABLow_2").x(), Plot().x() + Column(50), 2);
  Pull(95, 0.4);
  Release(95, 0.4);
  ExpectDragUndone();
}

TEST_F(Frm1Drag, TheEscapeThatEndsADragStopsNoCaptureButTheNextOneDoes) {
  StartWithBands();
  Choose("cbxFFTAvgs", 255);
  QString afterFirst;
  QString afterHeld;
  QString afterSecond;
  During(80, [&] {
    Grab(50, 0.4);
    Pull(90, 0.4);
    QTest::keyClick(&Plot(), Qt::Key_Escape);
    ExpectDragUndone();
    afterFirst = Find<QPushButton>("cmdStart").text();
    Release(90, 0.4);
    Grab(50, 0.4);
    Pull(90, 0.4);
    QTest::keyPress(&Find<QPushButton>("cmdStart"), Qt::Key_Escape);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&Plot(), &held);
    QTest::keyRelease(&Plot(), Qt::Key_Escape);
    ExpectDragUndone();
    afterHeld = Find<QPushButton>("cmdStart").text();
    QTest::keyClick(&Plot(), Qt::Key_Escape);
    afterSecond = Find<QPushButton>("cmdStart").text();
  });
  Press("cmdStart");
  EXPECT_EQ(afterFirst, "Stop");
  EXPECT_EQ(afterHeld, "Stop");
  EXPECT_EQ(afterSecond, "Start");
}

TEST_F(Frm1Drag, ADragEndsWhenTheCaptureIsDrawn) {
  StartWithBands();
  During(20, [&] {
    Grab(50, 0.4);
    Pull(90, 0.4);
    EXPECT_EQ(Mode(), DragMode::DraggingEdge);
  });
  Press("cmdStart");
  ExpectDragUndone();
  Release(90, 0.4);
  ExpectDragUndone();
}

TEST_F(Frm1Drag, ADragEndsWithTheWindowsActivityOrAScaleStepOrAnotherTraceChoice) {
  StartWithBands();
  const std::function<void()> interruptions[] = {
      [&] {
        QEvent deactivate(QEvent::WindowDeactivate);
        QApplication::sendEvent(&Window(), &deactivate);
      },
      [&] { Press("cmdPlotScale"); },
      [&] { Find<QCheckBox>("ckXtrace").click(); },
      [&] { Hover(100, 0.4); },
  };
  for (const auto& interrupt : interruptions) {
    Grab(50, 0.4);
    Pull(90, 0.4);
    ASSERT_EQ(Mode(), DragMode::DraggingEdge);
    interrupt();
    ExpectDragUndone();
    Release(90, 0.4);
    ExpectDragUndone();
  }
}

TEST_F(Frm1Drag, ADropWhileTheProgramIsOccupiedIsRefusedAndTheDragEnds) {
  StartWithBands();
  Grab(50, 0.4);
  Pull(90, 0.4);
  {
    const HandlerEdge::Occupation occupied(Window().Edge());
    Release(90, 0.4);
  }
  ExpectDragUndone();
}

TEST_F(Frm1Drag, AnErrorOfTheEditorIsShownAndTheProgramGoesOn) {
  class Failing : public FakeOverlayOwner {
    void TakeDraggedEdges(int /*band*/, int /*fLow*/, int /*fHigh*/) override {
      throw RuntimeError(kOverflow);
    }
  } failing;
  StartWithBands();
  Window().Overlay().SetOwner(&failing);
  Window().Overlay().PlotBands();
  Grab(50, 0.4);
  Pull(90, 0.4);
  Release(90, 0.4);
  EXPECT_EQ(messages_.Texts(), std::vector<std::string>{"pic1_MouseUp\nOverflow"});
  ExpectDragUndone();
  Window().Overlay().SetOwner(nullptr);
}

TEST_F(Frm1Drag, ADragRepaintsTheLinesStripsOnly) {
  StartWithBands();
  Grab(50, 0.9);
  Pull(60, 0.9);
  QApplication::processEvents();
  PaintedRegion painted(LinesWidget());
  Pull(65, 0.9);
  QApplication::processEvents();
  const int middle = Row(0.4);
  for (const int bin : {60, 65, 80, 85}) {
    EXPECT_TRUE(painted.region.contains(QPoint(Column(bin), middle))) << bin;
  }
  for (const int bin : {20, 72, 110, 200}) {
    EXPECT_FALSE(painted.region.contains(QPoint(Column(bin), middle))) << bin;
  }
}

}  // namespace
}  // namespace kestrel
