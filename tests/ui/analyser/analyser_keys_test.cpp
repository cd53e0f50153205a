// The analyser's plot by keyboard alone.
// SPDX-License-Identifier: MIT
#include <QInputDialog>

#include "ui/analyser/analyser_bench.h"
#include "ui/made_up_records.h"

namespace kestrel {
namespace {

using study::CursorKind;

class AnalyserKeys : public AnalyserBench {
 protected:
  void SetUp() override {
    Open();
    Capture();
    Plot().setFocus();
  }
  double At() { return *Choice().inSpectrum.at; }
  double Second() { return *Choice().inSpectrum.second; }
  double Bin() { return Study().SpectrumOf(Choice().focus)->spectrum.binWidthHz; }
  double LargestPeakHz() { return Study().SpectrumOf(Choice().focus)->peaks.front().line.hz; }
  double Width() { return Plot().Ranges().across.high - Plot().Ranges().across.low; }
};

TEST_F(AnalyserKeys, ASingleCursorBeginsAtTheLargestPeakAndWalks) {
  Key(Qt::Key_C);
  EXPECT_EQ(Choice().cursor, CursorKind::Single);
  EXPECT_DOUBLE_EQ(At(), LargestPeakHz());
  Key(Qt::Key_Right);
  const double next = At();
  EXPECT_NEAR(std::remainder(next, Bin()), 0, 1e-6) << "in the middle of a bin";
  Key(Qt::Key_Right);
  EXPECT_NEAR(At() - next, Bin(), 1e-6);
  Key(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_NEAR(At() - next, -9 * Bin(), 1e-6);
  Key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_NEAR(At() - next, -8.9 * Bin(), 1e-6);
  EXPECT_GT(Rows("tblCursor").rowCount(), 0);
}

TEST_F(AnalyserKeys, HomeAndEndGoToTheFirstBinThatHoldsVibrationAndTheLast) {
  Key(Qt::Key_C);
  Key(Qt::Key_Home);
  const double first = At();
  EXPECT_GT(first, 0);
  EXPECT_LT(first, 6 * Bin());
  Key(Qt::Key_End);
  EXPECT_NEAR(At(), 255 * Bin(), Bin());
  Key(Qt::Key_Right);
  EXPECT_NEAR(At(), 255 * Bin(), Bin()) << "no further";
}

TEST_F(AnalyserKeys, PeaksAreReachedBySizeAndByNearness) {
  Key(Qt::Key_C);
  const double largest = At();
  Key(Qt::Key_PageUp);
  const double smaller = At();
  EXPECT_NE(smaller, largest);
  Key(Qt::Key_PageDown);
  EXPECT_DOUBLE_EQ(At(), largest);
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  EXPECT_NE(At(), largest);
  Key(Qt::Key_P);
  EXPECT_LT(std::abs(At() - largest), 6 * Bin()) << "a peak near by";
}

TEST_F(AnalyserKeys, ADeltaCursorHasTwoEndsAndTabChangesThem) {
  Key(Qt::Key_D);
  ASSERT_TRUE(Choice().inSpectrum.second);
  const double first = At();
  const double second = Second();
  Key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(At(), first);
  EXPECT_GT(Second(), second);
  const double moved = Second();
  Key(Qt::Key_Tab);
  EXPECT_EQ(At(), moved);
  EXPECT_EQ(Second(), first);
  EXPECT_TRUE(Plot().hasFocus());
}

TEST_F(AnalyserKeys, HarmonicsAndSidebandsShowTheirMembersAndTabWalksThem) {
  Key(Qt::Key_Z, Qt::ShiftModifier);
  Key(Qt::Key_H);
  EXPECT_GE(Plot().Cursor().members.size(), 5U) << "the bearing's harmonics on Z";
  auto& table = In<QTableView>("tblCursor");
  Key(Qt::Key_Tab);
  const int first = table.currentIndex().row();
  Key(Qt::Key_Tab);
  EXPECT_EQ(table.currentIndex().row(), first + 1);
  Key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(table.currentIndex().row(), first);
  Key(Qt::Key_S);
  EXPECT_EQ(Choice().cursor, CursorKind::Sideband);
  EXPECT_GE(Plot().Cursor().members.size(), 3U);
  Key(Qt::Key_N);
  EXPECT_EQ(Choice().cursor, CursorKind::None);
  EXPECT_TRUE(Plot().Cursor().members.empty());
}

TEST_F(AnalyserKeys, TheCursorGoesFromTraceToTrace) {
  EXPECT_EQ(Choice().focus, Axis::X);
  Key(Qt::Key_T);
  EXPECT_EQ(Choice().focus, Axis::Y);
  Key(Qt::Key_Y);  // hides it
  Key(Qt::Key_T);
  EXPECT_NE(Choice().focus, Axis::Y);
  Key(Qt::Key_Y, Qt::ShiftModifier);
  EXPECT_EQ(Choice().focus, Axis::Y);
  EXPECT_TRUE(Choice().Shows(Axis::Y));
}

TEST_F(AnalyserKeys, AMarkerGetsItsText) {
  Key(Qt::Key_M);
  EXPECT_EQ(Analyser().findChild<QInputDialog*>("askMarker"), nullptr) << "no cursor, no place";
  Key(Qt::Key_C);
  Key(Qt::Key_M);
  auto* dialog = Analyser().findChild<QInputDialog*>("askMarker");
  ASSERT_NE(dialog, nullptr);
  dialog->setTextValue("  gear mesh  ");
  dialog->accept();
  ASSERT_EQ(Choice().markers.size(), 1U);
  EXPECT_EQ(Choice().markers[0].text, "gear mesh");
  EXPECT_DOUBLE_EQ(Choice().markers[0].hz, At());
  bool isShown = false;
  for (const PlotMark& mark : Plot().Scene().marks) {
    isShown = isShown || mark.name == "gear mesh";
  }
  EXPECT_TRUE(isShown);
  Entry("cmdCursor", "mnuClearMarkers").trigger();
  EXPECT_TRUE(Choice().markers.empty());
}

TEST_F(AnalyserKeys, ZoomsGoInOutBackForwardAndToAll) {
  Key(Qt::Key_C);
  const double whole = Width();
  Key(Qt::Key_Plus);
  EXPECT_LT(Width(), whole);
  EXPECT_LE(Plot().Ranges().across.low, At());
  EXPECT_GE(Plot().Ranges().across.high, At());
  const double zoomed = Width();
  Key(Qt::Key_Minus);
  EXPECT_GT(Width(), zoomed);
  Key(Qt::Key_A);
  EXPECT_TRUE(Plot().ShowsAll());
  Key(Qt::Key_Plus);
  Key(Qt::Key_Left, Qt::AltModifier);
  EXPECT_TRUE(Plot().ShowsAll());
  Key(Qt::Key_Right, Qt::AltModifier);
  EXPECT_FALSE(Plot().ShowsAll());
  EXPECT_TRUE(In<QToolButton>("cmdBack").isEnabled());
  const double high = Plot().Ranges().up[0].high;
  Key(Qt::Key_Minus, Qt::ShiftModifier);
  EXPECT_GT(Plot().Ranges().up[0].high, high);
}

TEST_F(AnalyserKeys, TheVerticalAxisTheBandsAndTheLabelsTurnOverByKey) {
  Key(Qt::Key_G);
  EXPECT_EQ(Choice().up, study::Scale::Logarithmic);
  Key(Qt::Key_G);
  EXPECT_EQ(Choice().quantity.quantity, analysis::Quantity::Level);
  Key(Qt::Key_G);
  EXPECT_EQ(Choice().quantity.quantity, analysis::Quantity::Acceleration);
  EXPECT_EQ(Choice().up, study::Scale::Linear);
  Key(Qt::Key_B);
  EXPECT_FALSE(Choice().showBands);
  Key(Qt::Key_L);
  EXPECT_FALSE(Choice().showLabels);
  Key(Qt::Key_R);
  EXPECT_NE(Study().Reference(), nullptr);
}

TEST_F(AnalyserKeys, SpaceHoldsWhatIsShownAndGoesOn) {
  const auto held = Study().Shown()->record->time;
  Key(Qt::Key_Space);
  Capture();
  EXPECT_EQ(Study().Shown()->record->time, held);
  EXPECT_EQ(In<QToolButton>("cmdLive").text(), "Held");
  Key(Qt::Key_Space);
  EXPECT_NE(Study().Shown()->record->time, held);
  EXPECT_EQ(In<QToolButton>("cmdLive").text(), "Live");
}

TEST_F(AnalyserKeys, SpaceLeadsFromASelectedRecordBackToTheNewest) {
  Capture();
  Model().Select({Study().Records().Entries().back().id});
  ASSERT_FALSE(Study().IsLive());
  Key(Qt::Key_Space);
  EXPECT_TRUE(Study().IsLive());
  EXPECT_FALSE(Study().IsHeld());
  EXPECT_EQ(*Study().Shown()->record, core_.record.Get());
}

TEST_F(AnalyserKeys, TheWaterfallsPeaksAreThoseOfTheRowThatIsLookedAt) {
  Model().Change([](auto& choice) { choice.focus = Axis::Z; });
  TakeRecord(Model(), MadeUpSpectrum(0, {{40, 1000}, {80, 500}}));
  TakeRecord(Model(), MadeUpSpectrum(10, {{100, 1000}, {150, 500}}));
  Analyser().ChooseView(study::View::Waterfall);
  Analyser().findChild<WaterfallArea*>("waterfallArea")->Choose(MadeUpTime(0));
  auto* plot = Analyser().findChild<AnalyserPlot*>("waterfallSpectrum");
  ASSERT_NE(plot, nullptr);
  plot->setFocus();
  QTest::keyClick(plot, Qt::Key_C);
  EXPECT_NEAR(At() / Bin(), 40, 1);
  QTest::keyClick(plot, Qt::Key_PageUp);
  EXPECT_NEAR(At() / Bin(), 80, 1);
}

}  // namespace
}  // namespace kestrel
