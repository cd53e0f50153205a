// A cell that is being typed in is taken, whichever way the user leaves it.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_file.h"
#include "support/given.h"
#include "ui/bands/alarm_editor_bench.h"

namespace kestrel {
namespace {

class LeavingACell : public FrmAlarmSpectrum {
 protected:
  // The first cell, with "5" typed and not entered.
  void OpenAndType() {
    Open();
    GoTo(1, kFLow);
    Type("5");
    ASSERT_NE(Editor(1, kFLow), nullptr);
    ASSERT_EQ(Values(1, 0), Row{});
  }
  // The press of a button shows for a moment before it acts.
  void Mnemonic(Qt::Key key, const std::function<bool()>& done) {
    QTest::keyClick(editor_->focusWidget(), key, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor(done)) << "Alt+" << static_cast<char>(key);
  }
  void ExpectTaken() {
    EXPECT_EQ(Values(1, 0), (Row{5}));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Editor(1, kFLow), nullptr);
  }
};

TEST_F(LeavingACell, SaveFileByItsLetterSavesTheTypedValue) {
  OpenAndType();
  ChooseFile(kProposed);
  Mnemonic(Qt::Key_S, [this] { return files_.contents.contains(kProposedFile); });
  ExpectTaken();
  BandTable saved;
  ReadAlarmFileText(files_.contents[kProposedFile], saved);
  EXPECT_EQ(saved(kFLowField, 1, 0), 5);
}

TEST_F(LeavingACell, LoadFileByItsLetterTakesTheTypedValueFirst) {
  const std::string header = AlarmFileText({}).substr(0, AlarmFileText({}).find("\r\n") + 2);
  files_.contents[kProposedFile] = header + "0,2,7,8,0,0,0,0,0,0\r\n";
  OpenAndType();
  ChooseFile(kProposed);
  Mnemonic(Qt::Key_L, [] { return AlarmBandTable(kFLowField, 2, 0) == 7; });
  ExpectTaken();
  EXPECT_EQ(Shown(2, kFLow), "7");
  Click("cmdUndo");
  EXPECT_EQ(Values(2, 0), Row{});
  EXPECT_EQ(Values(1, 0), (Row{5})) << "the entry is a step of its own";
}

TEST_F(LeavingACell, PlotBandsByItsLetterDrawsTheTypedValue) {
  OpenAndType();
  Get<QRadioButton>("opX").setChecked(true);
  overlay_.Take();
  Mnemonic(Qt::Key_P, [this] { return !overlay_.asked.empty(); });
  ExpectTaken();
}

TEST_F(LeavingACell, TheSensorsButtonsByTheirLettersTakeItFirst) {
  OpenAndType();
  Mnemonic(Qt::Key_W, [this] { return Message() == "24 bands written."; });
  ExpectTaken();
  EXPECT_EQ(FromSensor(1, 0), (Row{5}));
  GoTo(1, kFLow);
  Type("9");
  Mnemonic(Qt::Key_R, [this] { return Message().starts_with("24 bands read."); });
  EXPECT_EQ(Values(1, 0), (Row{5}));
  Click("cmdUndo");
  EXPECT_EQ(Values(1, 0), (Row{9})) << "the typed value was there before the reading";
}

TEST_F(LeavingACell, UndoByItsLetterTakesBackTheTypedValue) {
  OpenAndType();
  Enter(1, kFLow, "7");
  GoTo(1, kFLow);
  Type("8");
  Mnemonic(Qt::Key_U, [this] { return Message().starts_with("Undone"); });
  EXPECT_EQ(Values(1, 0), (Row{7}));
}

// As a screen reader presses it: without the focus going there.
TEST_F(LeavingACell, APressWithoutTheFocusTakesItToo) {
  for (const char* button : {"cmdWriteFile", "cmdUseName", "cmdClose"}) {
    SCOPED_TRACE(button);
    Given(AlarmBandTable) = {};
    OpenAndType();
    ChooseFile(kProposed);
    Get<QPushButton>(button).click();
    ExpectTaken();
  }
}

TEST_F(LeavingACell, AnotherOptionChosenMeanwhileDoesNotGetTheTypedValue) {
  OpenAndType();
  ShowOption(2);
  ExpectTaken();
  EXPECT_EQ(Values(1, 2), Row{});
}

TEST_F(LeavingACell, ClosingTheEditorTakesIt) {
  OpenAndType();
  editor_->close();
  EXPECT_EQ(Values(1, 0), (Row{5}));
}

TEST_F(LeavingACell, ClosingTheProgramTakesItAndAsksToSaveIt) {
  Start();
  OpenByMenu();
  GoTo(1, kFLow);
  Type("5");
  messages_.answer = Unsaved::Save;
  Window().close();
  ASSERT_EQ(messages_.questions.size(), 1U);
  BandTable saved;
  ReadAlarmFileText(files_.contents[kProposedFile], saved);
  EXPECT_EQ(saved(kFLowField, 1, 0), 5);
}

TEST_F(LeavingACell, EscapeStillGivesItUp) {
  OpenAndType();
  Key(Qt::Key_Escape);
  EXPECT_EQ(Values(1, 0), Row{});
  Click("cmdUseName");
  EXPECT_EQ(Values(1, 0), Row{});
}

}  // namespace
}  // namespace kestrel
