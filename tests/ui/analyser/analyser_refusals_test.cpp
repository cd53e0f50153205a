// What the analyser refuses, why, and where each button of a refusal leads.
// SPDX-License-Identifier: MIT
#include "ui/analyser/analyser_bench.h"

#include "device/rec_ctrl.h"

namespace kestrel {
namespace {

using study::StudyChoice;

class AnalyserRefusals : public AnalyserBench {
 protected:
  QWidget& Card() { return In<QWidget>("refusal"); }
  QString Title() { return In<QLabel>("lblRefusal").text(); }
  QString Reason() { return In<QLabel>("lblRefusalReason").text(); }
  // A spectrum of option 2 ends at 780 Hz.
  void RefuseVelocity() {
    Open();
    Find<QCheckBox>("ckBW1").click();
    Capture();
    Model().Change([](StudyChoice& choice) {
      choice.quantity.quantity = analysis::Quantity::Velocity;
      choice.quantity.lowestHz = 2000;
    });
  }
  void OpenTimeRecord() {
    Open();
    Choose("cbxRecMode", 2);
    Capture();
    Analyser().ChooseView(study::View::Time);
  }
};

TEST_F(AnalyserRefusals, AQuantityBeyondTheRecordNamesTheOptionAndItsButtonCapturesThere) {
  RefuseVelocity();
  ASSERT_EQ(Study().Shown()->record->settings.option, 2);
  ASSERT_TRUE(Card().isVisible());
  EXPECT_TRUE(Title().startsWith("Velocity from 2,000 Hz")) << Title().toStdString();
  EXPECT_TRUE(Reason().contains("It ends at")) << Reason().toStdString();
  EXPECT_EQ(Rows("tblPeaks").rowCount(), 0) << "no number beside a refusal";
  auto& cure = In<QToolButton>("cmdCaptureAtOption");
  ASSERT_TRUE(cure.isVisible());
  const int option = cure.text().right(1).toInt();
  EXPECT_NE(option, 2);
  cure.click();
  ASSERT_TRUE(Gets([&] { return Study().Shown()->record->settings.option == option; }));
  EXPECT_EQ(gRecCtrl->SampleRate(), option);
  EXPECT_FALSE(Card().isVisible()) << Title().toStdString();
  EXPECT_GT(Rows("tblPeaks").rowCount(), 0);
}

TEST_F(AnalyserRefusals, SeverityIsReachedByTheCapturesThatItAsksFor) {
  Open();
  Capture();
  In<QDockWidget>("dockSeverity").raise();
  Settle();
  auto& button = In<QPushButton>("severityCapture");
  EXPECT_EQ(button.text(), "Capture at option 3");
  for (int captures = 0; button.isVisible(); ++captures) {
    ASSERT_LT(captures, 3);
    const int option = button.text().back().digitValue();
    button.click();
    ASSERT_TRUE(Gets([&] { return Study().Shown()->record->settings.option == option; }));
  }
  EXPECT_TRUE(In<QLabel>("severityHeading").text().contains("Estimate"));
}

TEST_F(AnalyserRefusals, AccelerationIsShownAgain) {
  RefuseVelocity();
  Click("cmdShowAcceleration");
  EXPECT_FALSE(Card().isVisible());
  EXPECT_EQ(Choice().quantity.quantity, analysis::Quantity::Acceleration);
  EXPECT_GT(Rows("tblPeaks").rowCount(), 0);
}

TEST_F(AnalyserRefusals, VelocityFromTenHertzOverTimeTakesALongerRecord) {
  OpenTimeRecord();
  Entry("cmdQuantity", "mnuTimeVelocity10").trigger();
  ASSERT_TRUE(Card().isVisible());
  auto& cure = In<QToolButton>("cmdCaptureAtOption");
  ASSERT_TRUE(cure.isVisible());
  const int option = cure.text().right(1).toInt();
  EXPECT_GE(option, 1);
  cure.click();
  ASSERT_TRUE(Gets([&] { return Study().Shown()->record->settings.option == option; }));
  EXPECT_FALSE(Card().isVisible()) << Title().toStdString();
  EXPECT_TRUE(Plot().Scene().panes.at(0).title.starts_with("Velocity from 10"));
}

TEST_F(AnalyserRefusals, VelocityOverTimeStartsFromWhatTheRecordAllows) {
  OpenTimeRecord();
  Entry("cmdQuantity", "mnuTimeVelocity10").trigger();
  ASSERT_TRUE(Card().isVisible());
  auto& lowest = In<QToolButton>("cmdLowest");
  ASSERT_TRUE(lowest.isVisible());
  EXPECT_TRUE(lowest.text().startsWith("Start from ")) << lowest.text().toStdString();
  lowest.click();
  EXPECT_FALSE(Card().isVisible());
  EXPECT_EQ(Choice().timeQuantity, study::TimeQuantity::Velocity);
  EXPECT_TRUE(Plot().Scene().panes.at(0).title.starts_with("Velocity from "));
}

TEST_F(AnalyserRefusals, SamplesOfASpectrumAreNoneAndTheViewSaysSo) {
  Open();
  Capture();
  Analyser().ChooseView(study::View::Time);
  EXPECT_TRUE(Plot().Scene().panes.empty() || Plot().Scene().panes[0].traces.empty());
  EXPECT_FALSE(Plot().Scene().hint.empty() && !Card().isVisible());
}

TEST_F(AnalyserRefusals, ATimeRecordHasASpectrumOfItsOwn) {
  OpenTimeRecord();
  EXPECT_EQ(Plot().Scene().across.unit, "ms");
  Analyser().ChooseView(study::View::Spectrum);
  EXPECT_FALSE(Plot().Scene().panes.at(0).traces.empty());
  EXPECT_GT(Rows("tblPeaks").rowCount(), 3);
}

TEST_F(AnalyserRefusals, TheButtonDoesNothingWhileACaptureIsWaitedFor) {
  loop_.Hurry();
  RefuseVelocity();
  Choose("cbxFFTAvgs", 250);
  AtCapture([this] {
    Click("cmdCaptureAtOption");
    Settle();
    EXPECT_EQ(gRecCtrl->SampleRate(), 2);
    Press("cmdStart");
  });
  Capture();
}

}  // namespace
}  // namespace kestrel
