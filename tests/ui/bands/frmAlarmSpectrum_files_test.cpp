// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// The editor's files.

#include "alarms/alarm_file.h"
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

}  // namespace
}  // namespace kestrel
