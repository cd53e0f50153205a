// The alarm editor and the bands on the plot.
// SPDX-License-Identifier: MIT

#include "alarms/alarm_file.h"
#include "ui/bands/alarm_editor_bench.h"
#include "ui/main/adapter_watcher.h"

namespace kestrel {
namespace {

TEST_F(FrmAlarmSpectrum, TheOverlayFollowsTheOptionButtons) {
  Open();
  overlay_.Take();
  EXPECT_EQ(editor_->OverlayAxis(), std::nullopt);
  const std::pair<const char*, Axis> choices[] = {
      {"opX", Axis::X}, {"opY", Axis::Y}, {"opZ", Axis::Z}};
  for (const auto& [name, axis] : choices) {
    auto& option = Get<QRadioButton>(name);
    QTest::mousePress(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
    EXPECT_TRUE(overlay_.Take().empty()) << "on release";
    QTest::mouseRelease(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
    EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
    EXPECT_EQ(editor_->OverlayAxis(), axis);
  }
  QTest::mouseClick(&Get<QRadioButton>("opOFF"), Qt::LeftButton, {}, QPoint(8, 8));
  EXPECT_EQ(overlay_.Take(), (Words{"ClearLines", "PlotRecord"}));
  EXPECT_EQ(editor_->OverlayAxis(), std::nullopt);
}

TEST_F(FrmAlarmSpectrum, TheOverlayIsChosenByKeysToo) {
  Open();
  overlay_.Take();
  Get<QRadioButton>("opOFF").setFocus();
  Key(Qt::Key_Down);
  EXPECT_EQ(editor_->OverlayAxis(), Axis::X);
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
  QTest::keyClick(editor_, Qt::Key_Z, Qt::AltModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !overlay_.asked.empty(); })) << "the press shows";
  EXPECT_EQ(editor_->OverlayAxis(), Axis::Z);
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
}

TEST_F(FrmAlarmSpectrum, PlotBandsDrawsAtOnce) {
  Open();
  Get<QRadioButton>("opY").click();
  overlay_.Take();
  Click("cmdPlotBands");
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
}

TEST_F(FrmAlarmSpectrum, TheLinesOnThePlotFollowEveryChangeWhileTheyAreShown) {
  Open();
  overlay_.Take();
  Enter(1, kFLow, "5");
  EXPECT_TRUE(overlay_.Take().empty()) << "off";
  Get<QRadioButton>("opX").click();
  overlay_.Take();
  Enter(1, kFLow, "6");
  EXPECT_EQ(overlay_.Take(), Words{"RedrawBands"});
  Click("cmdUndo");
  EXPECT_EQ(overlay_.Take(), Words{"RedrawBands"});
  ShowOption(1);
  EXPECT_EQ(overlay_.Take(), Words{"RedrawBands"});
  EXPECT_EQ(editor_->OverlayOption(), 1);
  Click("cmdReadAll");
  EXPECT_EQ(overlay_.Take(), Words{"RedrawBands"});
}

TEST_F(FrmAlarmSpectrum, ADragOnThePlotIsOneStepOfTheTable) {
  Open();
  ShowOption(1);
  Get<QRadioButton>("opY").click();
  overlay_.Take();
  editor_->TakeDraggedEdges(2, 60, 70);
  EXPECT_EQ(Shown(2, kFLow), "60");
  EXPECT_EQ(Values(2, 1), (Row{60, 70}));
  EXPECT_EQ(Message(), "Band 2: F-low 60, F-high 70 taken from the plot.");
  EXPECT_EQ(overlay_.Take(), Words{"RedrawBands"});
  editor_->TakeDraggedLevel(2, 2, 10 * gRecCtrl->gLsb());
  EXPECT_EQ(Values(2, 1), (Row{60, 70, 0, 0, 0, 0, 10}));
  EXPECT_EQ(overlay_.Take(), Words{"RedrawBands"});
  Click("cmdUndo");
  EXPECT_EQ(Values(2, 1), (Row{60, 70}));
  Click("cmdUndo");
  EXPECT_EQ(Values(2, 1), Row{});
}

TEST_F(FrmAlarmSpectrum, ARecordOfAnotherOptionIsToldWhileTheOverlayIsOn) {
  Open();
  const std::string usual = Hint();
  EXPECT_TRUE(usual.starts_with("On the plot: drag an edge to move the band, with Shift"));
  Record record;
  record.settings.option = 2;
  NameRecord(record);
  editor_->Refresh();
  EXPECT_EQ(Hint(), usual);
  Get<QRadioButton>("opX").click();
  EXPECT_EQ(Hint(), usual +
                        " The record on the plot has sample-rate option 2, the bands shown are "
                        "those of option 0.");
  ShowOption(2);
  EXPECT_EQ(Hint(), usual);
}

TEST_F(FrmAlarmSpectrum, ClosingRemovesLinesAndLabels) {
  Open();
  const std::function<void()> ways[] = {[this] { editor_->close(); }, [this] { Click("cmdClose"); },
                                        [this] {
                                          Get<QPushButton>("cmdClose").setFocus();
                                          Key(Qt::Key_Escape);
                                        }};
  for (const auto& way : ways) {
    Open();
    Get<QRadioButton>("opX").click();
    overlay_.Take();
    way();
    EXPECT_FALSE(editor_->isVisible());
    EXPECT_EQ(overlay_.Take(), (Words{"ClearABLabels", "ClearLines"}));
    EXPECT_EQ(editor_->OverlayAxis(), std::nullopt);
  }
}

// The real plot, over the simulated sensor.
TEST_F(FrmAlarmSpectrum, AnEditMovesTheLinesOnThePlotAndAsksTheSensorNothing) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  OpenByMenu();
  Get<QRadioButton>("opX").click();
  const BandOverlay& plot = Window().Overlay();
  files_.contents[kProposedFile] = AlarmFileText(BandTable{});
  ChooseFile(kProposed);
  delete Window().findChild<AdapterWatcher*>();
  usb_.FailFrom(0);
  const auto low = [&] { return plot.Lines()(kLowEdge, 2).x1; };
  const std::function<void()> edits[] = {
      [this] { Enter(2, kFLow, "40"); }, [this] { editor_->TakeDraggedEdges(2, 60, 70); },
      [this] { Click("cmdUndo"); },      [this] { Click("cmdRedo"); },
      [this] { ShowOption(1); },         [this] { ShowOption(0); },
      [this] { Click("cmdReadFile"); }};
  const double places[] = {40, 60, 40, 60, 0, 60, 0};
  for (std::size_t i = 0; i < std::size(places); ++i) {
    edits[i]();
    EXPECT_EQ(low(), places[i]) << i;
    EXPECT_EQ(usb_.Requests(), 0) << i;
  }
}

}  // namespace
}  // namespace kestrel
