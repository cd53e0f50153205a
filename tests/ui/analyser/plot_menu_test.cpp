// The menu of the analyser's plots, by the right button and by the menu key.
// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QInputDialog>

#include "record/frequency.h"
#include "ui/analyser/analyser_bench.h"

namespace kestrel {
namespace {

using study::CursorKind;

class PlotMenuTest : public AnalyserBench {
 protected:
  void SetUp() override {
    Open();
    Capture();
  }
  void TearDown() override { Menu().close(); }
  QMenu& Menu() { return In<QMenu>("menuPlot"); }
  // Three quarters along the axis.
  double Hz() { return 0.75 * Plot().Ranges().across.high; }
  QPoint PlaceOf(double x) {
    const PaneLayout pane = Plot().Laid().panes.front();
    return {static_cast<int>(std::lround(pane.across.ToPixel(x))),
            static_cast<int>(pane.canvas.center().y())};
  }
  void RightClick(double x) {
    QTest::mouseClick(&Plot(), Qt::RightButton, {}, PlaceOf(x));
    ASSERT_TRUE(Menu().isVisible());
  }
  static void PressMenuKey(QWidget& widget) {
    QContextMenuEvent key(QContextMenuEvent::Keyboard, widget.rect().center(),
                          widget.mapToGlobal(widget.rect().center()));
    QApplication::sendEvent(&widget, &key);
  }
  QAction& Item(const char* name) {
    auto* action = Menu().findChild<QAction*>(name);
    if (action == nullptr) throw std::runtime_error(std::string("no item ") + name);
    return *action;
  }
};

TEST_F(PlotMenuTest, ACursorBeginsWhereTheMenuWasAskedFor) {
  RightClick(Hz());
  Item("mnuPlotSingle").trigger();
  EXPECT_EQ(Choice().cursor, CursorKind::Single);
  ASSERT_TRUE(Choice().inSpectrum.at);
  EXPECT_NEAR(*Choice().inSpectrum.at, Hz(), 2 * BinWidth(0));
  const auto at = Choice().inSpectrum.at;
  RightClick(Hz() / 2);
  EXPECT_TRUE(Item("mnuPlotSingle").isChecked());
  Item("mnuPlotNoCursor").trigger();
  EXPECT_EQ(Choice().cursor, CursorKind::None);
  RightClick(Hz() / 2);
  Item("mnuPlotDelta").trigger();
  EXPECT_EQ(Choice().cursor, CursorKind::Delta);
  EXPECT_NE(Choice().inSpectrum.at, at);
}

TEST_F(PlotMenuTest, AMarkerStandsWhereTheMenuWasAskedForWithoutACursor) {
  RightClick(Hz());
  EXPECT_TRUE(Item("mnuPlotMarker").text().contains("Hz"));
  Item("mnuPlotMarker").trigger();
  auto* dialog = Analyser().findChild<QInputDialog*>("askMarker");
  ASSERT_NE(dialog, nullptr);
  dialog->setTextValue("here");
  dialog->accept();
  ASSERT_EQ(Choice().markers.size(), 1U);
  EXPECT_NEAR(Choice().markers[0].hz, Hz(), 2 * BinWidth(0));
}

TEST_F(PlotMenuTest, ViewsGoBackForwardAndToAllWithTheReasonWhereTheyCannot) {
  RightClick(Hz());
  for (const char* item : {"mnuPlotBack", "mnuPlotForward", "mnuPlotShowAll"}) {
    EXPECT_FALSE(Item(item).isEnabled()) << item;
    EXPECT_TRUE(Item(item).text().contains("(")) << item;
  }
  Menu().close();
  Plot().ZoomAcross(4);
  const double zoomed = Plot().Ranges().across.high;
  RightClick(Plot().Ranges().across.low);
  Item("mnuPlotBack").trigger();
  EXPECT_TRUE(Plot().ShowsAll());
  RightClick(Hz());
  Item("mnuPlotForward").trigger();
  EXPECT_EQ(Plot().Ranges().across.high, zoomed);
  RightClick(Plot().Ranges().across.low);
  Item("mnuPlotShowAll").trigger();
  EXPECT_TRUE(Plot().ShowsAll());
}

TEST_F(PlotMenuTest, ThePictureIsCopiedAndWritten) {
  QApplication::clipboard()->clear();
  RightClick(Hz());
  Item("mnuPlotCopy").trigger();
  EXPECT_FALSE(QApplication::clipboard()->image().isNull());
  RightClick(Hz());
  Item("mnuPlotExport").trigger();
  auto* dialog = Analyser().findChild<QFileDialog*>("askExport");
  ASSERT_NE(dialog, nullptr);
  dialog->close();
}

TEST_F(PlotMenuTest, TheMenuKeyMeansTheCursorsPlace) {
  Key(Qt::Key_C);
  PressMenuKey(Plot());
  ASSERT_TRUE(Menu().isVisible());
  Item("mnuPlotMarker").trigger();
  auto* dialog = Analyser().findChild<QInputDialog*>("askMarker");
  ASSERT_NE(dialog, nullptr);
  dialog->setTextValue("cursor");
  dialog->accept();
  EXPECT_NEAR(Choice().markers.at(0).hz, *Choice().inSpectrum.at, BinWidth(0));
}

TEST_F(PlotMenuTest, ARightDragZoomsAndOpensNone) {
  const QPoint from = PlaceOf(Hz() / 2);
  QTest::mousePress(&Plot(), Qt::RightButton, {}, from);
  QTest::mouseMove(&Plot(), from + QPoint(120, 60));
  QTest::mouseRelease(&Plot(), Qt::RightButton, {}, from + QPoint(120, 60));
  EXPECT_FALSE(Menu().isVisible());
  EXPECT_FALSE(Plot().ShowsAll());
}

TEST_F(PlotMenuTest, OverTimeThereAreTwoCursorsAndNoMarker) {
  Choose("cbxRecMode", 2);
  Capture();
  Analyser().ChooseView(study::View::Time);
  Settle();
  RightClick(Plot().Ranges().across.high / 2);
  EXPECT_EQ(Menu().findChild<QAction*>("mnuPlotMarker"), nullptr);
  EXPECT_FALSE(Item("mnuPlotHarmonic").isEnabled());
  Item("mnuPlotDelta").trigger();
  EXPECT_EQ(Choice().cursor, CursorKind::Delta);
  EXPECT_TRUE(Choice().inTime.at);
}

TEST_F(PlotMenuTest, TheWaterfallsMapAndSpectrumHaveItToo) {
  Analyser().ChooseView(study::View::Waterfall);
  Settle();
  auto& map = In<QWidget>("waterfallView");
  PressMenuKey(map);
  ASSERT_TRUE(Menu().isVisible());
  Item("mnuPlotHarmonic").trigger();
  EXPECT_EQ(Choice().cursor, CursorKind::Harmonic);
  Menu().close();
  PressMenuKey(In<QWidget>("waterfallSpectrum"));
  ASSERT_TRUE(Menu().isVisible());
  EXPECT_TRUE(Item("mnuPlotHarmonic").isChecked());
}

}  // namespace
}  // namespace kestrel
