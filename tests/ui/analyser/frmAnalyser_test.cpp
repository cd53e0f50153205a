// The analyser over the simulated sensor: captures are shown, read and steered from it.
// SPDX-License-Identifier: MIT
#include "ui/analyser/frmAnalyser.h"

#include <QPointer>
#include <QSignalSpy>
#include <QStatusBar>
#include <QWindow>

#include "alarms/band_table.h"
#include "support/given.h"
#include "ui/analyser/analyser_bench.h"

namespace kestrel {
namespace {

using analysis::Quantity;
using study::StudyChoice;

class FrmAnalyser : public AnalyserBench {
 protected:
  // Whether the program ends when the windows that are open have been closed; it has some time.
  static bool EndsByItself() {
    constexpr int kWentOn = 1;
    QTimer late;
    QObject::connect(&late, &QTimer::timeout, [] { QApplication::exit(kWentOn); });
    late.start(500);
    return QApplication::exec() != kWentOn;
  }
  // The peak of an axis nearest to a frequency.
  const analysis::Peak& PeakAt(Axis axis, double hz) {
    const auto& peaks = Study().SpectrumOf(axis)->peaks;
    return *std::min_element(peaks.begin(), peaks.end(), [hz](const auto& a, const auto& b) {
      return std::abs(a.line.hz - hz) < std::abs(b.line.hz - hz);
    });
  }
};

TEST_F(FrmAnalyser, ShowsEachNewRecordAsItComes) {
  Open();
  EXPECT_EQ(Study().Shown(), nullptr);
  Capture();
  ASSERT_NE(Study().Shown(), nullptr);
  EXPECT_EQ(*Study().Shown()->record, core_.record.Get());
  EXPECT_GT(Rows("tblPeaks").rowCount(), 3);
}

TEST_F(FrmAnalyser, ShowsTheRecordsThatWereTakenBeforeItWasOpened) {
  Start();
  ChooseShortCaptures();
  Capture();
  Capture();
  Trigger("mnuAnalyser");
  EXPECT_EQ(Study().Records().Entries().size(), 2U);
  EXPECT_EQ(*Study().Shown()->record, core_.record.Get());
}

// Gear mesh 23 x 986.9 Hz, spindle, and the bearing at 8.33 times its speed.
TEST_F(FrmAnalyser, PeaksAreTheRunningMachinesLinesWithinTheirBounds) {
  Open();
  Choose("cbxFFTAvgs", 8);
  Capture();
  struct Known {
    Axis axis;
    double hz;
    double g;
  };
  for (const Known& known :
       {Known{Axis::X, 23 * 986.9, 0.60}, {Axis::Z, 8.33 * 986.9, 0.58}, {Axis::Y, 986.9, 0.62}}) {
    const analysis::Line& line = PeakAt(known.axis, known.hz).line;
    EXPECT_NEAR(line.hz, known.hz, 1.5 * line.hzBound);
    EXPECT_NEAR(line.peakG, known.g, 0.03 * known.g);
    EXPECT_LT(line.hzBound, 20);
  }
  EXPECT_EQ(Cell("tblPeaks", 0, 0).size(), 1);
  EXPECT_TRUE(Cell("tblPeaks", 0, 2).startsWith(QChar(0x00B1)));
}

TEST_F(FrmAnalyser, F5CapturesAndEscapeStops) {
  Open();
  WindowKey(Qt::Key_F5);
  EXPECT_TRUE(Gets([this] { return Study().Shown() != nullptr; }));
  Choose("cbxFFTAvgs", 250);
  AtCapture([this] {
    EXPECT_EQ(In<QToolButton>("cmdCapture").text(), "Stop");
    WindowKey(Qt::Key_Escape);
  });
  WindowKey(Qt::Key_F5);
  EXPECT_TRUE(Gets([this] { return core_.record.Get().origin.stopped; }));
  EXPECT_TRUE(Gets([this] { return In<QToolButton>("cmdCapture").text() == "Capture"; }));
}

TEST_F(FrmAnalyser, EscapeTakesADragBackAndStopsNothing) {
  loop_.Hurry();
  Open();
  Capture();
  Choose("cbxFFTAvgs", 250);
  const PlotRange before = Plot().Ranges().across;
  const QPoint middle = Plot().Laid().Canvases().center().toPoint();
  AtCapture([&] {
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, middle);
    QTest::mouseMove(&Plot(), middle - QPoint(120, 0));
    QTest::keyClick(&Plot(), Qt::Key_Escape);
    EXPECT_EQ(Plot().Ranges().across.low, before.low);
    EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Stop");
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, middle);
    Press("cmdStart");
  });
  Capture();
}

TEST_F(FrmAnalyser, ARecordInTheMiddleOfADragIsShownAndTheDragGoesOn) {
  Open();
  Capture();
  Plot().ZoomAcross(4);
  const QPoint middle = Plot().Laid().Canvases().center().toPoint();
  QTest::mousePress(&Plot(), Qt::LeftButton, {}, middle);
  QTest::mouseMove(&Plot(), middle - QPoint(40, 0));
  const PlotRange dragged = Plot().Ranges().across;
  const auto before = Study().Shown()->record->time;
  Capture();
  EXPECT_NE(Study().Shown()->record->time, before);
  EXPECT_EQ(Plot().Ranges().across.low, dragged.low);
  QTest::mouseMove(&Plot(), middle - QPoint(80, 0));
  EXPECT_GT(Plot().Ranges().across.low, dragged.low);
  QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, middle - QPoint(80, 0));
}

TEST_F(FrmAnalyser, AStoppedCaptureSaysThatItsDataAreOlder) {
  loop_.Hurry();
  Open();
  Capture();
  Choose("cbxFFTAvgs", 250);
  AtCapture([this] { Press("cmdStart"); });
  Capture();
  ASSERT_TRUE(core_.record.Get().origin.stopped);
  auto& notices = In<QWidget>("analyserNotices");
  EXPECT_TRUE(notices.isVisible());
  bool isTold = false;
  for (const QLabel* label : notices.findChildren<QLabel*>()) {
    isTold = isTold || label->text().contains("stopped");
  }
  EXPECT_TRUE(isTold);
  EXPECT_EQ(Study().Rows().Rows(), 1U) << "no new capture";
}

TEST_F(FrmAnalyser, ClippedValuesAreToldAndARecordOfZerosHasNoPeaks) {
  Open();
  Capture();
  Record clipped = core_.record.Get();
  clipped.time += std::chrono::seconds(1);
  clipped.Of(Axis::X).raw(30) = 65535;
  Model().Take(clipped);
  EXPECT_TRUE(In<QWidget>("analyserNotices").isVisible());
  Record empty = core_.record.Get();
  empty.time += std::chrono::seconds(2);
  for (const Axis axis : kAxes) {
    for (int i = 0; i < 256; ++i) {
      empty.Of(axis).raw(i) = 0;
      empty.Of(axis).data(i) = 0;
    }
  }
  Model().Take(empty);
  EXPECT_EQ(Rows("tblPeaks").rowCount(), 0);
  for (const Quantity quantity : {Quantity::Acceleration, Quantity::Level, Quantity::Velocity,
                                  Quantity::Displacement, Quantity::Density}) {
    Model().Change([quantity](StudyChoice& choice) {
      choice.quantity.quantity = quantity;
      choice.up = study::Scale::Logarithmic;
    });
    EXPECT_FALSE(Analyser().grab().isNull());
  }
}

TEST_F(FrmAnalyser, EachQuantityNamesItsAxisAndTable) {
  Open();
  Capture();
  struct Shown {
    const char* entry;
    const char* title;
    const char* unit;
  };
  for (const Shown& shown : {Shown{"mnuVelocity", "Velocity, mm/s", "mm/s"},
                             {"mnuDisplacement", "Displacement, µm", "µm"},
                             {"mnuDensity", "Acceleration density, g²/Hz", "g²/Hz"},
                             {"mnuAcceleration", "Acceleration, g", "g"}}) {
    Entry("cmdQuantity", shown.entry).trigger();
    ASSERT_FALSE(Plot().Scene().panes.empty()) << shown.entry;
    EXPECT_TRUE(Plot().Scene().panes[0].title.starts_with(shown.title))
        << Plot().Scene().panes[0].title;
    EXPECT_TRUE(Rows("tblPeaks")
                    .headerData(3, Qt::Horizontal, TextTableModel::kPaintedHead)
                    .toString()
                    .startsWith(shown.unit));
    EXPECT_GT(Rows("tblPeaks").rowCount(), 0);
  }
  Click("cmdVerticalDecibel");
  EXPECT_EQ(Plot().Scene().panes[0].title, "Level, dB re 1 g RMS");
  EXPECT_FALSE(In<QWidget>("segAmplitude").isEnabled());
  Click("cmdVerticalLog");
  Click("cmdPeakToPeak");
  EXPECT_EQ(Plot().Scene().panes[0].title, "Acceleration, g peak to peak");
}

TEST_F(FrmAnalyser, AnotherUnitOfTheAxisKeepsWhatIsShown) {
  Open();
  Capture();
  Key(Qt::Key_U);
  EXPECT_EQ(Plot().Scene().across.title, "Frequency, CPM");
  Key(Qt::Key_U);
  EXPECT_EQ(Plot().Scene().across.title, "Frequency, Hz") << "no speed, no orders";
  EXPECT_FALSE(Entry("cmdUnit", "mnuOrders").isEnabled());
  Model().Change([](StudyChoice& choice) { choice.machine.rpm = 60 * 986.9; });
  Entry("cmdUnit", "mnuOrders").trigger();
  EXPECT_EQ(Plot().Scene().across.unit, "×");
}

TEST_F(FrmAnalyser, StackedAxesHaveAPlotEach) {
  Open();
  Capture();
  EXPECT_EQ(Plot().Scene().panes.size(), 1U);
  Click("cmdStacked");
  EXPECT_EQ(Plot().Scene().panes.size(), 3U);
  Key(Qt::Key_Y);
  EXPECT_EQ(Plot().Scene().panes.size(), 2U);
  Key(Qt::Key_O);
  EXPECT_EQ(Plot().Scene().panes.size(), 1U);
}

TEST_F(FrmAnalyser, BandsEditedInAlarmSpectrumReachTheTableWithTheirHeadroom) {
  Open();
  Capture();
  Trigger("mnuAlarmSpectrum");
  auto& grid = Find<QTableView>("grdBands");
  ASSERT_TRUE(Gets([&] { return grid.model()->rowCount() > 0 && grid.isVisible(); }));
  Settle();
  // F-low, F-high, warnings of X, Y, Z, fault of X; thresholds in g.
  const std::array cells{"104", "120", "0.9", "0.2", "0.2", "1.3"};
  QSignalSpy changes(&Model(), &StudyModel::Changed);
  for (int column = 0; column < static_cast<int>(cells.size()); ++column) {
    ASSERT_TRUE(grid.model()->setData(grid.model()->index(3, column),
                                      cells[static_cast<std::size_t>(column)]));
  }
  EXPECT_EQ(changes.count(), static_cast<int>(cells.size())) << "once for each edit";
  Find<QDialog>("frmAlarmSpectrum").close();
  ASSERT_EQ(Rows("tblBands").rowCount(), 1);
  EXPECT_EQ(Cell("tblBands", 0, 0), "4");
  // The gear mesh has about 0.6 g: 3.5 dB below, and up to the scallop of its bin more.
  EXPECT_NEAR(Cell("tblBands", 0, 4).toDouble(), 4.2, 0.9) << Cell("tblBands", 0, 4).toStdString();
}

TEST_F(FrmAnalyser, TheThemeChangesTheWindowAtOnce) {
  Open();
  Capture();
  const auto ground = [this] { return Analyser().palette().color(QPalette::Window); };
  Analyser().findChild<QAction*>("mnuTheme2")->trigger();
  Settle();
  EXPECT_EQ(ground(), Look::Dark().window);
  EXPECT_EQ(Plot().palette().color(QPalette::Base), Look::Dark().Palette().color(QPalette::Base));
  Analyser().findChild<QAction*>("mnuTheme1")->trigger();
  Settle();
  EXPECT_EQ(ground(), Look::Light().window);
  Analyser().findChild<QAction*>("mnuTheme0")->trigger();
  Settle();
  EXPECT_TRUE(Analyser().findChild<QAction*>("mnuTheme0")->isChecked());
}

TEST_F(FrmAnalyser, F6GoesThroughThePanesAndF11LeavesThePlotAlone) {
  Open();
  Capture();
  Plot().setFocus();
  std::set<QWidget*> seen;
  for (int i = 0; i < 8; ++i) {
    WindowKey(Qt::Key_F6);
    seen.insert(Analyser().focusWidget());
  }
  EXPECT_GE(seen.size(), 4U);
  EXPECT_TRUE(seen.count(&Plot()));
  WindowKey(Qt::Key_F11);
  EXPECT_FALSE(In<QWidget>("dockPeaks").isVisible());
  WindowKey(Qt::Key_F11);
  EXPECT_TRUE(In<QWidget>("dockPeaks").isVisible());
}

TEST_F(FrmAnalyser, ViewsAreChosenByKey) {
  Open();
  Capture();
  WindowKey(Qt::Key_3, Qt::ControlModifier);
  EXPECT_EQ(Choice().view, study::View::Waterfall);
  EXPECT_TRUE(In<QWidget>("waterfallArea").isVisible());
  WindowKey(Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(Choice().view, study::View::Time);
  WindowKey(Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(Choice().view, study::View::Spectrum);
  EXPECT_TRUE(Plot().isVisible());
}

TEST_F(FrmAnalyser, ClosesDuringACaptureAndShowsItWhenOpenedAgain) {
  Open();
  AtCapture([this] { Analyser().close(); });
  Capture();
  EXPECT_FALSE(Analyser().isVisible());
  Trigger("mnuAnalyser");
  EXPECT_EQ(*Study().Shown()->record, core_.record.Get());
}

TEST_F(FrmAnalyser, TheMainWindowClosesDuringACaptureThatTheAnalyserBegan) {
  Open();
  AtCapture([this] { Window().close(); });
  WindowKey(Qt::Key_F5);
  EXPECT_TRUE(Gets([this] { return !Window().isVisible(); }));
  windows_.reset();
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmAnalyser, StandsBesideTheMainWindowAndGoesWithIt) {
  const QPointer<frmAnalyser> analyser(&Open());
  EXPECT_EQ(analyser->parentWidget(), nullptr);
  EXPECT_EQ(analyser->windowHandle()->transientParent(), nullptr) << "the main one may be above it";
  Capture();
  Key(Qt::Key_C);
  Key(Qt::Key_M);
  QTimer::singleShot(0, &Window(), &QWidget::close);
  EXPECT_TRUE(EndsByItself()) << "nothing of it keeps the program";
  EXPECT_FALSE(analyser->isVisible());
  windows_.reset();
  EXPECT_EQ(analyser, nullptr);
}

TEST_F(FrmAnalyser, ClosingItAloneLeavesTheProgram) {
  Open();
  QTimer::singleShot(0, &Analyser(), &QWidget::close);
  EXPECT_FALSE(EndsByItself());
  EXPECT_FALSE(Analyser().isVisible());
  EXPECT_TRUE(Window().isVisible());
}

TEST_F(FrmAnalyser, BothCloseWithAQuestionOpen) {
  for (const bool isMain : {false, true}) {
    Open();
    Capture();
    Key(Qt::Key_C);
    Key(Qt::Key_M);
    ASSERT_NE(Analyser().findChild<QDialog*>("askMarker"), nullptr);
    Entry("cmdQuantity", "mnuLowest").trigger();
    isMain ? Window().close() : Analyser().close();
    Settle();
    windows_.reset();
  }
}

TEST_F(FrmAnalyser, AMenuThatIsOpenedOftenKeepsNothingOfEarlierTimes) {
  Open();
  Capture();
  const auto count = [this](const char* button, const char* entry) {
    Entry(button, entry);
    return In<QToolButton>(button).menu()->findChildren<QObject*>().size();
  };
  for (const auto& [button, entry] :
       {std::pair{"cmdQuantity", "mnuMeaningRms"}, std::pair{"cmdTraces", "mnuFocusX"}}) {
    const auto first = count(button, entry);
    for (int i = 0; i < 5; ++i) count(button, entry);
    EXPECT_EQ(count(button, entry), first) << button;
  }
}

TEST_F(FrmAnalyser, ABandOfTheUsersIsAmongTheLevelsAndGoesWithDelete) {
  frmAnalyser& window = Open();
  Capture();
  auto& levels = *window.findChild<QTableView*>("tblLevels");
  const int before = levels.model()->rowCount();
  window.findChild<QToolButton*>("dockLevels_add")->click();
  auto* dialog = window.findChild<QDialog*>("bandDialog");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QLineEdit*>("txtBandName")->setText("Mesh");
  for (auto* button : dialog->findChildren<QPushButton*>()) {
    if (button->text() == "Add") button->click();
  }
  ASSERT_EQ(levels.model()->rowCount(), before + 1);
  EXPECT_TRUE(levels.model()->index(before, 0).data().toString().startsWith("Mesh"));
  levels.selectRow(before);
  QTest::keyClick(&levels, Qt::Key_Delete);
  EXPECT_EQ(levels.model()->rowCount(), before);
  EXPECT_TRUE(window.Model().Choice().bands.empty());
}

}  // namespace
}  // namespace kestrel
