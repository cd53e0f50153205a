// The alarm editor's files.
// SPDX-License-Identifier: MIT

#include <QMouseEvent>
#include <QPointer>

#include "alarms/alarm_file.h"
#include "support/given.h"
#include "ui/bands/alarm_editor_bench.h"

namespace kestrel {
namespace {

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

// The window that tells of the reading lets events run until it is on the screen.
TEST_F(FrmAlarmSpectrum, LoadFilePressedAgainWhileTheReadingShowsIsRefused) {
  files_.contents[kProposedFile] = AlarmFileText(BandTable{});
  Open();
  ChooseFile(kProposed);
  int shown = 0;
  for (int press = 0; press < 3; ++press) {
    During(0, [&] {
      QPointer<QWidget> reading;
      for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->objectName() == "frmMsg" && top->isVisible()) reading = top;
      }
      if (!reading) return;
      ++shown;
      auto& load = Get<QPushButton>("cmdReadFile");
      const QPointF at(load.rect().center());
      for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, load.mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
        QApplication::sendEvent(&load, &event);
      }
      ASSERT_FALSE(reading.isNull()) << "freed while it is being painted";
    });
    Click("cmdReadFile");
    EXPECT_TRUE(Message().starts_with("24 bands loaded from")) << Message();
  }
  EXPECT_EQ(shown, 3);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmAlarmSpectrum, AFileIsReadToItsEndWhateverIsDoneMeanwhile) {
  BandTable table;
  table(kFLowField, 2, 0) = 33;
  files_.contents[kProposedFile] = AlarmFileText(table);
  const std::function<void()> deeds[] = {
      [this] { editor_->close(); }, [this] { Get<QPushButton>("cmdReadAll").click(); },
      [this] { Get<QPushButton>("cmdWriteFile").click(); }, [this] { ShowOption(1); }};
  for (const auto& deed : deeds) {
    Given(AlarmBandTable) = {};
    Open();
    ChooseFile(kProposed);
    files_.contents[kProposedFile] = AlarmFileText(table);
    During(0, deed);
    Get<QPushButton>("cmdReadFile").click();
    EXPECT_TRUE(Message().starts_with("24 bands loaded from")) << Message();
    for (QWidget* top : QApplication::topLevelWidgets()) {
      EXPECT_FALSE(top->objectName() == "frmMsg" && top->isVisible());
    }
  }
}

TEST_F(FrmAlarmSpectrum, FilesBesideAProgramThatCannotBeWrittenAreListedAndLoaded) {
  BandTable table;
  table(kFLowField, 2, 0) = 33;
  files_.contents["/program/AlarmSpectrum_delivered.csv"] = AlarmFileText(table);
  files_.readOnly.insert("/program");
  Open();
  EXPECT_EQ(Items(Files()), Words{"AlarmSpectrum_delivered.csv"});
  ChooseFile("AlarmSpectrum_delivered.csv");
  Click("cmdReadFile");
  EXPECT_EQ(Shown(2, kFLow), "33");
  EXPECT_TRUE(Message().starts_with("24 bands loaded from /program/AlarmSpectrum_delivered.csv."))
      << Message();
  Enter(2, kFLow, "34");
  ChooseFile("AlarmSpectrum_own.csv");
  Click("cmdWriteFile");
  EXPECT_EQ(Message(), "24 bands saved to /documents/AlarmSpectrum_own.csv.");
  EXPECT_EQ(Items(Files()), (Words{"AlarmSpectrum_own.csv", "AlarmSpectrum_delivered.csv"}));
}

TEST_F(FrmAlarmSpectrum, WithoutAnyFileBothPlacesAreNamed) {
  Open();
  files_.readOnly.insert("/program");
  Click("cmdReadFile");
  EXPECT_EQ(Message(),
            "Not loaded: there is no alarm file yet in /documents, nor beside the program in "
            "/program.");
}

}  // namespace
}  // namespace kestrel
