// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/frmAlarmSpectrum.h"

#include <QSet>

#include "alarm_editor_bench.h"
#include "alarms/alarm_file.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

constexpr int kFLow = 1;
constexpr int kFHigh = 2;
constexpr const char* kProposed = "AlarmSpectrum_Default.csv";
const std::filesystem::path kProposedFile = "/program/AlarmSpectrum_Default.csv";

class FrmAlarmSpectrum : public AlarmEditorBench {
 protected:
  static constexpr Row kBand{40, 52, 120, 121, 122, 200, 201, 202};

  void OpenWithBand() {
    Start();
    PutIntoSensor(3, 2, kBand);
    Open();
  }
  void Reopen() {
    editor_->close();
    overlay_.Take();
    Open();
  }
  QComboBox& Files() { return Get<QComboBox>("cbxAfiles"); }
  void ChooseFile(const char* name) { Files().setEditText(name); }
};

// Requests to the adapter by the time a window is painted for the first time.
class PaintWatch : public QObject {
 public:
  PaintWatch(QWidget& window, const FailingUsbDriver& usb) : usb_(usb) {
    window.installEventFilter(this);
  }
  int requests = -1;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint && requests < 0) requests = usb_.Requests();
    return false;
  }

 private:
  const FailingUsbDriver& usb_;
};

TEST_F(FrmAlarmSpectrum, OpensWithTheSensorsBands) {
  OpenWithBand();
  EXPECT_EQ(Items(Get<QComboBox>("cbxSRoption")), (Words{"0", "1", "2", "3"}));
  EXPECT_EQ(Get<QComboBox>("cbxSRoption").currentIndex(), 0);
  EXPECT_EQ(Get<QLineEdit>("txtFileName").text(), kProposed);
  EXPECT_EQ(Files().currentText(), "values read from flash mem.");
  EXPECT_TRUE(Get<QRadioButton>("opOFF").isChecked());
  EXPECT_EQ(Values(3, 2), kBand);
  ShowOption(2);
  EXPECT_EQ(Shown(3, kFLow), "40");
  EXPECT_EQ(Shown(3, 3), CellText(3, 120, CurrentScale()));
  EXPECT_EQ(Shown(3, 8), CellText(8, 202, CurrentScale()));
  EXPECT_EQ(State(), "The sensor holds these bands.");
  EXPECT_EQ(editor_->focusWidget(), &Grid());
  EXPECT_FALSE(Get<QPushButton>("cmdUndo").isEnabled()) << "there is nothing to go back to";
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmAlarmSpectrum, IsPaintedBeforeItsFirstReadingBegins) {
  Begin();
  PaintWatch watch(*editor_, usb_);
  usb_.FailFrom(0);
  Open();
  EXPECT_EQ(watch.requests, 0);
  EXPECT_GT(usb_.Requests(), 24 * 8);
}

TEST_F(FrmAlarmSpectrum, EachOptionShowsItsOwnBands) {
  Open();
  Enter(1, kFLow, "5");
  ShowOption(2);
  EXPECT_EQ(Shown(1, kFLow), "0");
  Enter(1, kFLow, "7");
  ShowOption(0);
  EXPECT_EQ(Shown(1, kFLow), "5");
  ShowOption(2);
  EXPECT_EQ(Shown(1, kFLow), "7");
  EXPECT_EQ(Values(1, 0)[0], 5);
  EXPECT_EQ(Values(1, 2)[0], 7);
}

TEST_F(FrmAlarmSpectrum, AnOptionThatDoesNotExistIsRefused) {
  Open();
  ShowOption(1);
  for (const std::int16_t option : {std::int16_t{-1}, std::int16_t{4}}) {
    messages_.Clear();
    editor_->DisplaySpectrum(option);
    EXPECT_EQ(messages_.Texts(),
              Words{"Error...\nsub routine = DisplaySpectrum()\nSampleRateOption  = " +
                    std::to_string(option) + "\nValid values for SampleRtaeOption Are 0,1,2,3\n"});
    EXPECT_EQ(Get<QComboBox>("cbxSRoption").currentIndex(), 1);
  }
}

TEST_F(FrmAlarmSpectrum, WithoutAnOptionAnEntryIsNotStored) {
  Open();
  {
    const QSignalBlocker quiet(Get<QComboBox>("cbxSRoption"));
    ShowOption(-1);
  }
  Enter(1, kFLow, "5");
  EXPECT_EQ(messages_.Texts(),
            Words{"Error...\nsub routine = WriteBandsFlash()\nStatus Rate Option  = -1\nValid "
                  "values for Status Rate Option Are 0,1,2,3\n"});
  EXPECT_EQ(AlarmBandTable, BandTable{});
}

TEST_F(FrmAlarmSpectrum, NothingReachesTheSensorBeforeItIsWritten) {
  Open();
  usb_.FailFrom(0);
  Enter(1, kFLow, "5");
  Enter(1, kFHigh, "9");
  EXPECT_EQ(usb_.Requests(), 0);
  Click("cmdWriteAll");
  EXPECT_EQ(Message(), "24 bands written.");
  EXPECT_EQ(State(), "The sensor holds these bands.");
  EXPECT_EQ(FromSensor(1, 0), (Row{5, 9}));
}

TEST_F(FrmAlarmSpectrum, ReadingReplacesEditsAndUndoBringsThemBack) {
  OpenWithBand();
  Enter(1, kFLow, "5");
  Enter(1, kFHigh, "9");
  Click("cmdReadAll");
  EXPECT_EQ(Values(1, 0), Row{});
  EXPECT_EQ(Message(),
            "24 bands read. Values replaced that had not been written: 2. Undo brings them back.");
  Click("cmdUndo");
  EXPECT_EQ(Values(1, 0), (Row{5, 9}));
  EXPECT_EQ(Values(3, 2), kBand);
  EXPECT_EQ(Message(), "Undone: reading from the sensor.");
}

TEST_F(FrmAlarmSpectrum, OpeningAnewReadsAgainAndKeepsEditsOneUndoAway) {
  OpenWithBand();
  Enter(1, kFLow, "5");
  ShowOption(3);
  Get<QLineEdit>("txtFileName").setText("something");
  Get<QRadioButton>("opX").click();
  Reopen();
  EXPECT_EQ(Shown(1, kFLow), "0");
  EXPECT_EQ(Get<QComboBox>("cbxSRoption").currentIndex(), 0);
  EXPECT_EQ(Get<QLineEdit>("txtFileName").text(), kProposed);
  EXPECT_TRUE(Get<QRadioButton>("opOFF").isChecked());
  EXPECT_NE(Message().find("Undo brings them back."), std::string::npos);
  GoTo(1, kFLow);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Shown(1, kFLow), "5");
}

TEST_F(FrmAlarmSpectrum, UndoAndRedoCoverEveryKindOfChange) {
  OpenWithBand();
  std::vector<BandTable> states{AlarmBandTable};
  const auto note = [&] { states.push_back(AlarmBandTable); };
  Enter(1, kFLow, "5");
  note();
  PutOnClipboard("1\t2");
  GoTo(4, kFLow);
  Key(Qt::Key_V, Qt::ControlModifier);
  note();
  editor_->TakeDraggedEdges(2, 60, 70);
  note();
  Click("cmdReadAll");
  note();
  files_.contents[kProposedFile] = AlarmFileText(BandTable{});
  ChooseFile(kProposed);
  Click("cmdReadFile");
  note();
  Enter(1, kFLow, "8");
  note();
  Click("cmdClearAll");
  note();
  for (std::size_t i = states.size() - 1; i > 0; --i) {
    EXPECT_NE(states[i], states[i - 1]);
    GoTo(1, kFLow);
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(AlarmBandTable, states[i - 1]) << i;
  }
  EXPECT_FALSE(Get<QPushButton>("cmdUndo").isEnabled());
  for (std::size_t i = 1; i < states.size(); ++i) {
    if (i % 2 == 0) {
      Key(Qt::Key_Y, Qt::ControlModifier);
    } else {
      Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    }
    EXPECT_EQ(AlarmBandTable, states[i]) << i;
  }
  EXPECT_FALSE(Get<QPushButton>("cmdRedo").isEnabled());
}

TEST_F(FrmAlarmSpectrum, UndoShowsTheOptionItChanges) {
  Open();
  ShowOption(2);
  Enter(1, kFLow, "5");
  ShowOption(0);
  Click("cmdUndo");
  EXPECT_EQ(Get<QComboBox>("cbxSRoption").currentIndex(), 2);
  EXPECT_EQ(Shown(1, kFLow), "0");
}

TEST_F(FrmAlarmSpectrum, ClearAllActsAtOnceAndSaysHowToGoBack) {
  OpenWithBand();
  Click("cmdClearAll");
  EXPECT_EQ(AlarmBandTable, BandTable{});
  EXPECT_EQ(FromSensor(3, 2), Row{});
  EXPECT_TRUE(Message().starts_with("All bands cleared, in the sensor too. Undo brings"))
      << Message();
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmAlarmSpectrum, ATransferShowsItsProgressAndLocksTheRest) {
  Open();
  bool seen = false;
  During(0, [&] {
    seen = true;
    EXPECT_TRUE(Get<QProgressBar>("barTransfer").isVisible());
    EXPECT_EQ(Get<QProgressBar>("barTransfer").maximum(), 24);
    EXPECT_FALSE(Grid().isEnabled());
    EXPECT_FALSE(Get<QPushButton>("cmdWriteAll").isEnabled());
    EXPECT_FALSE(Get<QPushButton>("cmdUndo").isEnabled());
    EXPECT_TRUE(Get<QPushButton>("cmdCancel").isEnabled());
    EXPECT_EQ(editor_->focusWidget(), &Get<QPushButton>("cmdCancel"));
    editor_->TakeDraggedEdges(1, 2, 3);
    EXPECT_EQ(Values(1, 0), Row{});
  });
  Get<QPushButton>("cmdReadAll").setFocus();
  Click("cmdReadAll");
  EXPECT_TRUE(seen);
  EXPECT_FALSE(Get<QProgressBar>("barTransfer").isVisible());
  EXPECT_TRUE(Grid().isEnabled());
  EXPECT_EQ(editor_->focusWidget()->objectName(), "cmdReadAll");
}

TEST_F(FrmAlarmSpectrum, OtherWindowsHandlersWaitForTheTransfer) {
  Open();
  bool ran = false;
  During(0, [&] { Window().Edge().Run("other", [&] { ran = true; }); });
  Click("cmdReadAll");
  EXPECT_FALSE(ran);
  Window().Edge().Run("other", [&] { ran = true; });
  EXPECT_TRUE(ran);
}

TEST_F(FrmAlarmSpectrum, CancelAndEscapeEndATransfer) {
  OpenWithBand();
  const std::function<void()> ways[] = {[this] { Click("cmdCancel"); },
                                        [this] { Key(Qt::Key_Escape); },
                                        [this] { editor_->CancelTransfer(); }};
  for (const auto& way : ways) {
    During(0, way);
    Click("cmdReadAll");
    EXPECT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
    EXPECT_TRUE(editor_->isVisible());
    EXPECT_TRUE(Grid().isEnabled());
  }
}

TEST_F(FrmAlarmSpectrum, ClosingDuringATransferEndsItAndThenCloses) {
  Open();
  Get<QRadioButton>("opX").click();
  overlay_.Take();
  During(0, [this] {
    editor_->close();
    EXPECT_TRUE(editor_->isVisible()) << "not before the transfer has unwound";
    EXPECT_TRUE(overlay_.Take().empty());
  });
  Click("cmdReadAll");
  EXPECT_FALSE(editor_->isVisible());
  const Words asked = overlay_.Take();
  EXPECT_EQ(Words(asked.end() - 2, asked.end()), (Words{"ClearABLabels", "ClearLines"}));
  EXPECT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
}

TEST_F(FrmAlarmSpectrum, ACancelledFirstReadingDoesNotClaimToBeFromTheSensor) {
  Start();
  PutIntoSensor(1, 0, kBand);
  Begin();
  editor_->ShowInFront();
  QTimer soon;
  QObject::connect(&soon, &QTimer::timeout, editor_, [this] { editor_->CancelTransfer(); });
  soon.start(0);
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  ASSERT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
  EXPECT_EQ(Files().currentText(), "");
  EXPECT_NE(State().find("not known"), std::string::npos) << State();
}

TEST_F(FrmAlarmSpectrum, ALostSensorLeavesTheTableAndGivesOneMessage) {
  OpenWithBand();
  Enter(1, kFLow, "5");
  const BandTable before = AlarmBandTable;
  usb_.FailFrom(1);
  Click("cmdReadAll");
  EXPECT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(AlarmBandTable, before);
  Click("cmdReadAll");
  EXPECT_EQ(Message(), "No sensor can be reached.");
  EXPECT_EQ(messages_.Texts().size(), 1U);
  Enter(1, kFHigh, "9");
  EXPECT_EQ(Values(1, 0)[1], 9) << "the table can be edited without a sensor";
}

TEST_F(FrmAlarmSpectrum, WhatAnotherSensorHoldsIsNotKnown) {
  OpenWithBand();
  editor_->ForgetSensor();
  EXPECT_EQ(State(), "What the sensor holds is not known.");
  EXPECT_EQ(Values(3, 2), kBand) << "the table stays";
}

TEST_F(FrmAlarmSpectrum, WhileACaptureIsWaitedForNothingIsTransferred) {
  Open();
  usb_.FailFrom(0);
  During(20, [this] {
    const int before = usb_.Requests();
    Click("cmdWriteAll");
    EXPECT_EQ(usb_.Requests(), before);
    EXPECT_EQ(Message(), "The sensor is busy with something else. Nothing was transferred.");
    Enter(1, kFLow, "5");
    EXPECT_EQ(Values(1, 0)[0], 5) << "editing goes on";
    Press("cmdStart");
  });
  Press("cmdStart");
  EXPECT_EQ(Message(), "");
}

TEST_F(FrmAlarmSpectrum, SavesUnderTheNameInTheListAndListsIt) {
  Open();
  Enter(1, kFLow, "5");
  ChooseFile("AlarmSpectrum_pump.csv");
  Click("cmdWriteFile");
  EXPECT_EQ(files_.contents["/program/AlarmSpectrum_pump.csv"], AlarmFileText(AlarmBandTable));
  EXPECT_EQ(Items(Files()), Words{"AlarmSpectrum_pump.csv"});
  EXPECT_EQ(Files().currentText(), "AlarmSpectrum_pump.csv");
  EXPECT_EQ(Message(), "24 bands saved to /program/AlarmSpectrum_pump.csv.");
}

TEST_F(FrmAlarmSpectrum, ANameThatIsNoAlarmFileIsRefusedAndTheProposedOneOffered) {
  Open();
  Click("cmdWriteFile");
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_NE(messages_.Texts()[0].find("File Name = values read from flash mem."),
            std::string::npos);
  EXPECT_EQ(messages_.Titles()[0], "Error");
  EXPECT_EQ(
      Message(),
      "Not saved. Type a file name, or press Use name to take \"AlarmSpectrum_Default.csv\".");
  Click("cmdUseName");
  EXPECT_EQ(Files().currentText(), kProposed);
  Click("cmdWriteFile");
  EXPECT_EQ(files_.contents.count(kProposedFile), 1U);
}

TEST_F(FrmAlarmSpectrum, LoadsAFileIntoTheTableAndSendsNothing) {
  BandTable table;
  table(kFLowField, 6, 3) = 77;
  table(kFHighField, 6, 3) = 78;
  files_.contents[kProposedFile] = AlarmFileText(table);
  Open();
  EXPECT_EQ(Items(Files()), Words{kProposed});
  EXPECT_EQ(Files().currentText(), "values read from flash mem.");
  ShowOption(3);
  ChooseFile(kProposed);
  usb_.FailFrom(0);
  Click("cmdReadFile");
  EXPECT_EQ(Shown(6, kFLow), "77");
  EXPECT_EQ(usb_.Requests(), 0);
  EXPECT_EQ(Get<QComboBox>("cbxSRoption").currentIndex(), 3);
  EXPECT_EQ(State(), "Not yet written to the sensor: 2 values.");
}

TEST_F(FrmAlarmSpectrum, WhatABadFileLeavesBehindIsOneUndoAway) {
  Open();
  std::string text = AlarmFileText(BandTable{});
  text = text.substr(0, text.find("\r\n") + 2) + "0,1,5,6,0,0,0,0,0,0\r\n0,2,x,0,0,0,0,0,0,0\r\n";
  files_.contents[kProposedFile] = text;
  ChooseFile(kProposed);
  Click("cmdReadFile");
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_TRUE(messages_.Texts()[0].starts_with("cmdReadFile_Click\n")) << messages_.Texts()[0];
  EXPECT_EQ(Shown(1, kFLow), "5");
  Click("cmdUndo");
  EXPECT_EQ(Shown(1, kFLow), "0");
}

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
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
  Click("cmdUndo");
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
  ShowOption(1);
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
  EXPECT_EQ(editor_->OverlayOption(), 1);
  Click("cmdReadAll");
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
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
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
  editor_->TakeDraggedLevel(2, 2, 10 * gRecCtrl->gLsb());
  EXPECT_EQ(Values(2, 1), (Row{60, 70, 0, 0, 0, 0, 10}));
  EXPECT_EQ(overlay_.Take(), Words{"PlotBands"});
  Click("cmdUndo");
  EXPECT_EQ(Values(2, 1), (Row{60, 70}));
  Click("cmdUndo");
  EXPECT_EQ(Values(2, 1), Row{});
}

TEST_F(FrmAlarmSpectrum, ARecordOfAnotherOptionIsToldWhileTheOverlayIsOn) {
  Open();
  const std::string usual = Hint();
  EXPECT_TRUE(usual.starts_with("On the plot: drag an edge to move the band, with Shift"));
  Buff.sampleRateOption = 2;
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

TEST_F(FrmAlarmSpectrum, MnemonicsAreUniqueAndNoButtonIsPressedByEnter) {
  Open();
  QSet<QChar> used;
  const auto take = [&](const QString& text) {
    const qsizetype at = text.indexOf('&');
    if (at < 0) return;
    const QChar letter = text[at + 1].toLower();
    EXPECT_FALSE(used.contains(letter)) << text.toStdString();
    used.insert(letter);
  };
  for (const auto* button : editor_->findChildren<QAbstractButton*>()) take(button->text());
  for (const auto* label : editor_->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) take(label->text());
  }
  EXPECT_EQ(used.size(), 17);
  for (const auto* button : editor_->findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->autoDefault()) << button->objectName().toStdString();
  }
}

TEST_F(FrmAlarmSpectrum, TabFollowsTheWindowFromTopToBottom) {
  Open();
  Enter(1, kFLow, "5");
  Click("cmdUndo");
  Enter(1, kFLow, "5");
  Get<QComboBox>("cbxSRoption").setFocus();
  Words names;
  for (int i = 0; i < 11; ++i) {
    names.push_back(editor_->focusWidget()->objectName().toStdString());
    if (editor_->focusWidget() == &Grid()) GoTo(6, 8);
    Key(Qt::Key_Tab);
  }
  EXPECT_EQ(names,
            (Words{"cbxSRoption", "cmdUndo", "grdBands", "cmdReadAll", "cmdWriteAll", "cmdClearAll",
                   "cbxAfiles", "cmdReadFile", "cmdWriteFile", "txtFileName", "cmdUseName"}));
}

TEST_F(FrmAlarmSpectrum, FitsASmallScreen) {
  Open();
  EXPECT_LE(editor_->width(), 1280);
  EXPECT_LE(editor_->height(), 720 - 40);
  EXPECT_LE(editor_->minimumSizeHint().width(), 853);
}

}  // namespace
}  // namespace kestrel
