// Bands of the workbench on their way into the alarm editor and the sensor.
// SPDX-License-Identifier: MIT
#include "ui/workbench/workbench_bench.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

class WorkbenchBands : public WorkbenchBench {
 protected:
  // The machine's bands in the sensor and in the editor, then the workbench with its records.
  void OpenWithSensor() {
    OpenFilled();
    Trigger("mnuAlarmSpectrum");
    Settle();
    ChangeableBands() = MachineBandTable();
    Editor().findChild<QPushButton*>("cmdWriteAll")->click();
    Settle();
    Editor().close();
    Settle();
    ASSERT_EQ(Warning(), 790);
  }
  // Of band 3, Z.
  static int Warning() { return AlarmBandTable(Alarm1Field(Axis::Z), 3, 0); }
  std::string Message() { return Editor().findChild<QLabel*>("lblmsg")->text().toStdString(); }
  void UseTwentyG() {
    Choose("cbxSignalRange", 2);
    Settle();
  }
  void AcceptWriting() {
    Click("cmdWriteBands");
    ASSERT_TRUE(
        Gets([this] { return Analyser().findChild<QMessageBox*>("askWriteBands") != nullptr; }));
    In<QMessageBox>("askWriteBands").defaultButton()->click();
  }
};

TEST_F(WorkbenchBands, TakenOverTheyStandInTheAlarmEditorWhereUndoTakesThemBack) {
  OpenWithSensor();
  const int proposed = static_cast<int>(Bench().Cell().warning);
  ASSERT_NE(proposed, 790);
  Click("cmdTakeOverBands");
  ASSERT_TRUE(Tells("taken over")) << Label("lblProposalSaid").toStdString();
  EXPECT_TRUE(Editor().isVisible());
  EXPECT_EQ(Warning(), proposed);
  EXPECT_EQ(AlarmBandTable(kFLowField, 3, 0), 40);
  EXPECT_EQ(Cell("tblProposal", 0, 3), "0.0") << "what is now is what was proposed";
  Editor().findChild<QPushButton*>("cmdUndo")->click();
  EXPECT_EQ(Warning(), 790);
  Settle();
  EXPECT_EQ(Cell("tblProposal", 0, 1), "0.241");
}

TEST_F(WorkbenchBands, WhatWasMovedByHandIsTakenOverAsItStands) {
  OpenWithSensor();
  Bench().SetThreshold(baseline::Alarm::Warning, 555);
  Bench().SetEdges(3, 41, 45);
  Bench().SetThreshold(baseline::Alarm::Warning, 555);
  Click("cmdTakeOverBands");
  ASSERT_TRUE(Tells("taken over"));
  EXPECT_EQ(Warning(), 555);
  EXPECT_EQ(AlarmBandTable(kFLowField, 3, 0), 41);
  EXPECT_EQ(AlarmBandTable(kFHighField, 3, 0), 45);
}

TEST_F(WorkbenchBands, WrittenTheyAreReadBackFromTheSensor) {
  OpenWithSensor();
  UseTwentyG();
  const int proposed = static_cast<int>(Bench().Cell().warning);
  AcceptWriting();
  ASSERT_TRUE(Tells("written and read back")) << Label("lblProposalSaid").toStdString();
  ChangeableBands() = BandTable{};
  Editor().findChild<QPushButton*>("cmdReadAll")->click();
  Settle();
  EXPECT_EQ(Warning(), proposed) << "the sensor holds it";
}

TEST_F(WorkbenchBands, NothingIsWrittenBeforeTheUserSaysSo) {
  OpenWithSensor();
  UseTwentyG();
  Click("cmdWriteBands");
  In<QMessageBox>("askWriteBands").reject();
  Settle();
  EXPECT_EQ(Warning(), 790);
  EXPECT_FALSE(Label("lblProposalSaid").contains("rit"));
}

TEST_F(WorkbenchBands, AtAnotherRangeNothingIsWrittenAndTheReasonIsSaid) {
  OpenWithSensor();
  Choose("cbxSignalRange", 3);
  Settle();
  AcceptWriting();
  ASSERT_TRUE(Tells("Not written")) << Label("lblProposalSaid").toStdString();
  EXPECT_THAT(Label("lblProposalSaid").toStdString(), HasSubstr("range"));
}

TEST_F(WorkbenchBands, WithoutASensorTheTableTakesThemAndWritingIsRefused) {
  OpenWithSensor();
  const int proposed = static_cast<int>(Bench().Cell().warning);
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
  AcceptWriting();
  ASSERT_TRUE(Tells("Not written")) << Label("lblProposalSaid").toStdString();
  EXPECT_THAT(Label("lblProposalSaid").toStdString(), HasSubstr("no sensor can be reached"));
  EXPECT_EQ(Warning(), proposed) << "they stand in the editor's table";
}

TEST_F(WorkbenchBands, WhileACaptureIsWaitedForNothingIsWritten) {
  OpenWithSensor();
  UseTwentyG();
  Trigger("mnuAlarmSpectrum");
  Settle();
  QString said;
  AtCapture([&] {
    AcceptWriting();
    Settle();
    said = Label("lblProposalSaid");
    Press("cmdStart");  // ends the capture
  });
  Capture();
  EXPECT_THAT(said.toStdString(), HasSubstr("busy"));
}

}  // namespace
}  // namespace kestrel
