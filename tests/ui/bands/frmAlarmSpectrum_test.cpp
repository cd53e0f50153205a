// The alarm editor: opening, editing, undoing.
// SPDX-License-Identifier: MIT
#include "ui/bands/frmAlarmSpectrum.h"

#include <QSet>

#include "alarms/alarm_file.h"
#include "ui/bands/alarm_editor_bench.h"

namespace kestrel {
namespace {

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
  EXPECT_EQ(used.size(), 19);
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

TEST_F(FrmAlarmSpectrum, ALongRemarkLeavesTheGridItsRoom) {
  Open();
  for (int band = 1; band <= 3; ++band) {
    Enter(band, kFLow, "9");
    Enter(band, kFHigh, "5");
    Enter(band, 3, "30");  // alarm 1 and alarm 2 on X
    Enter(band, 6, "20");
  }
  const auto& remark = Get<QLabel>("lblState");
  EXPECT_NE(State().find("And 4 more."), std::string::npos);
  EXPECT_GE(remark.height(), remark.heightForWidth(remark.width()));
  EXPECT_LE(remark.sizeHint().height(), 4 * remark.fontMetrics().lineSpacing());
}

TEST_F(FrmAlarmSpectrum, LoadingBeforeAFileIsChosenSaysWhatToDo) {
  Open();
  Click("cmdReadFile");
  EXPECT_EQ(Message(), "Not loaded: there is no alarm file yet in /program.");
  files_.contents["/program/AlarmSpectrum_pump.csv"] = AlarmFileText(BandTable{});
  Click("cmdReadFile");
  EXPECT_EQ(Message(), "Not loaded. Choose an alarm file from the list first.");
  EXPECT_EQ(Items(Files()), Words{"AlarmSpectrum_pump.csv"});
  EXPECT_TRUE(messages_.Texts().empty());
}

}  // namespace
}  // namespace kestrel
