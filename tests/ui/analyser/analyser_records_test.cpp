// Traces and records of the analyser: kept, averaged, compared, selected, filtered.
// SPDX-License-Identifier: MIT
#include "ui/analyser/analyser_bench.h"

#include <QListView>

#include "ui/main/adapter_watcher.h"

namespace kestrel {
namespace {

using study::Extra;
using study::StudyChoice;

class AnalyserRecords : public AnalyserBench {
 protected:
  // Names in the legend.
  QStringList Legend() {
    QStringList names;
    for (const PlotPane& pane : Plot().Scene().panes) {
      for (const SceneTrace& trace : pane.traces) names << QString::fromStdString(trace.name);
    }
    return names;
  }
  bool Shows(const QString& part) {
    const QStringList names = Legend();
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
      return name.contains(part, Qt::CaseInsensitive);
    });
  }
  void Select(std::initializer_list<int> rows) {
    auto& list = In<QListView>("lstRecords");
    list.selectionModel()->clearSelection();
    for (const int row : rows) {
      list.selectionModel()->select(list.model()->index(row, 0), QItemSelectionModel::Select);
    }
  }
};

TEST_F(AnalyserRecords, AReferenceIsTakenComparedAndDropped) {
  Open();
  EXPECT_FALSE(Entry("cmdTraces", "mnuTakeReference").isEnabled());
  QAction& none = Entry("cmdTraces", "mnuDifference");
  EXPECT_FALSE(none.isEnabled());
  EXPECT_TRUE(none.text().contains("no reference taken"));
  Capture();
  Entry("cmdTraces", "mnuTakeReference").trigger();
  ASSERT_NE(Study().Reference(), nullptr);
  EXPECT_TRUE(Shows("reference"));
  Capture();
  Entry("cmdTraces", "mnuDifference").trigger();
  EXPECT_TRUE(Choice().difference);
  EXPECT_NE(Plot().Scene().panes.at(0).title.find("dB"), std::string::npos);
  Entry("cmdTraces", "mnuDifference").trigger();
  EXPECT_FALSE(Choice().difference);
}

TEST_F(AnalyserRecords, ADifferenceToAnotherOptionIsRefusedWithItsReason) {
  Open();
  Capture();
  Model().TakeReference();
  Find<QCheckBox>("ckBW0").click();
  Capture();
  QAction& difference = Entry("cmdTraces", "mnuDifference");
  EXPECT_FALSE(difference.isEnabled());
  EXPECT_TRUE(difference.text().contains("other sample-rate option"))
      << difference.text().toStdString();
}

TEST_F(AnalyserRecords, AFrozenCopyStaysWhileRecordsCome) {
  Open();
  Capture();
  const auto frozen = Study().Shown()->record->time;
  Entry("cmdTraces", "mnuFreeze").trigger();
  Capture();
  ASSERT_NE(Study().Frozen(), nullptr);
  EXPECT_EQ(Study().Frozen()->record->time, frozen);
  EXPECT_TRUE(Shows("frozen"));
}

TEST_F(AnalyserRecords, AveragesAndHoldsCountTheirCaptures) {
  Open();
  for (const char* entry : {"mnuAverage", "mnuExponential", "mnuMaximum", "mnuMinimum"}) {
    Entry("cmdTraces", entry).trigger();
  }
  for (int i = 0; i < 3; ++i) Capture();
  for (const Extra extra :
       {Extra::LinearAverage, Extra::ExponentialAverage, Extra::MaximumHold, Extra::MinimumHold}) {
    const auto* held = Study().Accumulation().Of(extra, Axis::X);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(held->captures, 3);
  }
  EXPECT_TRUE(Shows("maximum"));
  EXPECT_TRUE(Shows("3"));
  Entry("cmdTraces", "mnuRestart").trigger();
  Capture();
  EXPECT_EQ(Study().Accumulation().Of(Extra::MaximumHold, Axis::X)->captures, 1);
}

TEST_F(AnalyserRecords, AnAverageIsOfOneKindOfCapturesOnly) {
  Open();
  Entry("cmdTraces", "mnuAverage").trigger();
  Capture();
  Capture();
  Choose("cbxWindow", 2);
  Capture();
  const auto* average = Study().Accumulation().Of(Extra::LinearAverage, Axis::X);
  ASSERT_NE(average, nullptr);
  EXPECT_EQ(average->captures, 1) << "begun anew with the other window";
}

TEST_F(AnalyserRecords, OneRecordSeveralAndTheLiveOneAreSelected) {
  Open();
  for (int i = 0; i < 3; ++i) Capture();
  EXPECT_EQ(In<QListView>("lstRecords").model()->rowCount(), 4) << "live above the three";
  Select({3});
  EXPECT_FALSE(Study().IsLive());
  EXPECT_EQ(Study().Shown()->record, Study().Records().Entries().back().record);
  const auto selected = Study().Shown()->record;
  Capture();
  EXPECT_EQ(Study().Shown()->record, selected) << "what was selected stays";
  Select({2, 3});
  EXPECT_EQ(Study().Others().size(), 1U);
  EXPECT_GT(Legend().size(), 3);
  Select({0});
  EXPECT_TRUE(Study().IsLive());
  EXPECT_EQ(*Study().Shown()->record, core_.record.Get());
}

TEST_F(AnalyserRecords, TheFilterKeepsWhatItMatchesAndCtrlFLeadsThere) {
  Open();
  Capture();
  Choose("cbxWindow", 2);
  Capture();
  auto& list = In<QListView>("lstRecords");
  ASSERT_EQ(list.model()->rowCount(), 3);
  WindowKey(Qt::Key_F, Qt::ControlModifier);
  auto& filter = In<QLineEdit>("txtFilterRecords");
  EXPECT_EQ(Analyser().focusWidget(), &filter);
  QTest::keyClicks(&filter, "hanning");
  EXPECT_EQ(list.model()->rowCount(), 1);
  filter.clear();
  EXPECT_EQ(list.model()->rowCount(), 3);
  filter.setText("no such record");
  EXPECT_EQ(list.model()->rowCount(), 0);
  Capture();
  EXPECT_NE(Study().Shown(), nullptr);
}

TEST_F(AnalyserRecords, ClosingDuringARepeatEndsNothingAndShowsAllWhenOpenedAgain) {
  loop_.Hurry();
  Open();
  Trigger("mnuRepeat");
  Settle();
  Find<QRadioButton>("optAtOnce").click();
  auto& times = Find<QLineEdit>("txtTimes");
  times.setText("4");
  emit times.textEdited("4");
  Press("cmdRepeatStart");
  ASSERT_TRUE(Gets([this] { return Study().Shown() != nullptr; }));
  EXPECT_EQ(In<QToolButton>("cmdCapture").text(), "Stop");
  Analyser().close();
  EXPECT_TRUE(Gets([this] { return !Window().Repeats().Running(); }));
  Trigger("mnuAnalyser");
  EXPECT_EQ(Study().Records().Entries().size(), 4U);
  EXPECT_EQ(In<QToolButton>("cmdCapture").text(), "Capture");
}

TEST_F(AnalyserRecords, TimeWithoutSensorIsAGapOfTheWaterfall) {
  loop_.Hurry();
  Open();
  Trigger("mnuRepeat");
  Settle();
  Find<QRadioButton>("optUntilStopped").click();
  Find<QRadioButton>("optAtOnce").click();
  Press("cmdRepeatStart");
  ASSERT_TRUE(Gets([this] { return Study().Rows().Rows() >= 2; }));
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(Gets([this] { return Window().Repeats().Progress()->state == RepeatState::Paused; }));
  const std::size_t before = Study().Rows().Rows();
  hardware_.Adapter().Replug(0);
  ASSERT_TRUE(Gets([&] { return Study().Rows().Rows() > before; }));
  Press("cmdRepeatStop");
  ASSERT_TRUE(Gets([this] { return !Window().Repeats().Running(); }));
  std::size_t gaps = 0;
  for (std::size_t row = 0; row < Study().Rows().Rows(); ++row) {
    if (!Study().Rows().GapBefore(row).empty()) ++gaps;
  }
  EXPECT_EQ(gaps, 1U);
}

TEST_F(AnalyserRecords, AGapBeforeTheWindowIsOpenedStaysBetweenItsRecords) {
  Start();
  ChooseShortCaptures();
  Capture();
  hardware_.Adapter().Unplug(0);
  Window().findChild<AdapterWatcher*>()->Look();
  hardware_.Adapter().Replug(0);
  Capture();
  Capture();
  Trigger("mnuAnalyser");
  const analysis::Waterfall& rows = Study().Rows();
  ASSERT_EQ(rows.Rows(), 3U);
  EXPECT_EQ(rows.GapBefore(0), "");
  EXPECT_EQ(rows.GapBefore(1), "sensor unplugged");
  EXPECT_EQ(rows.GapBefore(2), "");
}

TEST_F(AnalyserRecords, AHoldThatHasNoDensityIsSaidWithWhatToChoose) {
  Open();
  Entry("cmdTraces", "mnuMaximum").trigger();
  Capture();
  EXPECT_FALSE(In<QLabel>("lblPlotNote").isVisible());
  Entry("cmdQuantity", "mnuDensity").trigger();
  EXPECT_TRUE(In<QLabel>("lblPlotNote").isVisible());
  EXPECT_TRUE(In<QLabel>("lblPlotNote").text().contains("Take an average instead"));
  EXPECT_FALSE(Shows("maximum"));
  Entry("cmdTraces", "mnuMaximum").trigger();
  EXPECT_FALSE(In<QLabel>("lblPlotNote").isVisible());
}

TEST_F(AnalyserRecords, SamplesHaveTheirReferenceToo) {
  Open();
  Choose("cbxRecMode", 2);
  Analyser().ChooseView(study::View::Time);
  Capture();
  Entry("cmdTraces", "mnuTakeReference").trigger();
  EXPECT_TRUE(Shows("reference"));
  QAction& difference = Entry("cmdTraces", "mnuDifference");
  EXPECT_FALSE(difference.isEnabled());
  EXPECT_TRUE(difference.text().contains("of spectra"));
}

}  // namespace
}  // namespace kestrel
