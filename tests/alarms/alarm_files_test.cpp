// The files of alarm bands: where they are, saving and loading.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_files.h"

#include <gtest/gtest.h>

#include "alarms/alarm_file.h"
#include "alarms/band_table.h"
#include "numeric/runtime_error.h"
#include "support/fake_clock.h"
#include "support/given.h"
#include "support/journal.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/scripted_loop.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class AlarmFilesTest : public testing::Test, public AlarmFilesView {
 protected:
  AlarmFilesTest() { ResetAlarmBandTable(); }
  ~AlarmFilesTest() override { ResetAlarmBandTable(); }

  void ShowReading(const std::string& text) override { journal.Note("shown:" + text); }
  void HideReading() override { journal.Note("hidden"); }
  void DisplaySelected() override { journal.Note("bands"); }
  void SetMessage(const std::string& text) override { journal.Note(text); }

  std::string Refusal(const std::string& name) {
    try {
      files.ReadFile(name);
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return "read";
  }

  FakeClock clock;
  ScriptedLoop loop{clock};
  RecordingMessages messages;
  MemoryFiles disk;
  Journal journal;
  AlarmFiles files{disk, loop, messages, *this};
};

TEST_F(AlarmFilesTest, SavesBesideTheProgram) {
  Given(AlarmBandTable)(0, 1, 0) = 12;
  files.cmdWriteFile_Click("AlarmSpectrum_pump.csv");
  EXPECT_EQ(disk.contents.at("/program/AlarmSpectrum_pump.csv"), AlarmFileText(AlarmBandTable));
  EXPECT_EQ(journal.Entries(), Words{"24 bands saved to /program/AlarmSpectrum_pump.csv."});
  disk.readOnly.insert("/program");
  files.cmdWriteFile_Click("AlarmSpectrum_pump.csv");
  EXPECT_TRUE(disk.contents.contains("/documents/AlarmSpectrum_pump.csv"));
}

TEST_F(AlarmFilesTest, AnotherNameIsRefusedWithTheRuleAndNothingIsWritten) {
  for (const char* name : {"bands.csv", "AlarmSpectrum_Default.CSV", ""}) {
    messages.Clear();
    files.cmdWriteFile_Click(name);
    EXPECT_EQ(messages.Texts(),
              Words{"\nError while writting Alarm File\nFile Name = " + std::string(name) +
                    "\n\nThis program requires...\n\nA File name preface = AlarmSpectrum_ "
                    "\n\nA file extension = .csv"
                    "\n\nNo file written. Exiting the file write sub routine."});
    EXPECT_EQ(messages.Titles(), Words{"Error"});
  }
  EXPECT_TRUE(disk.contents.empty());
}

TEST_F(AlarmFilesTest, ANameThatLeadsElsewhereIsRefused) {
  for (const char* name : {"AlarmSpectrum_/../x.csv", "AlarmSpectrum_a\\b.csv",
                           "AlarmSpectrum_a:b.csv", "AlarmSpectrum_a\nb.csv"}) {
    EXPECT_THROW(files.cmdWriteFile_Click(name), RuntimeError) << name;
  }
  try {
    files.cmdWriteFile_Click("AlarmSpectrum_a/b.csv");
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(),
                 "File Name = AlarmSpectrum_a/b.csv: the character / cannot stand in a file name. "
                 "No file written.");
  }
  EXPECT_THROW(files.cmdWriteFile_Click("AlarmSpectrum_" + std::string(250, 'n') + ".csv"),
               RuntimeError);
  EXPECT_TRUE(disk.contents.empty());
}

TEST_F(AlarmFilesTest, AFileThatCannotBeWrittenIsNamedWithTheReason) {
  disk.failure = "No space left on device";
  try {
    files.cmdWriteFile_Click("AlarmSpectrum_pump.csv");
    FAIL() << "nothing was thrown";
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(), "/program/AlarmSpectrum_pump.csv: No space left on device");
  }
  EXPECT_TRUE(journal.Entries().empty());
}

TEST_F(AlarmFilesTest, LoadsIntoTheTableBehindAMessageWindow) {
  BandTable table;
  table(0, 2, 1) = 33;
  disk.contents["/program/AlarmSpectrum_pump.csv"] = AlarmFileText(table);
  files.ReadFile("AlarmSpectrum_pump.csv");
  EXPECT_EQ(AlarmBandTable, table);
  EXPECT_EQ(loop.Paints(), 1);
  EXPECT_EQ(journal.Entries(),
            (Words{"shown:\r\n\r\nREADING FILE\r\nFile Name = AlarmSpectrum_pump.csv\r\nPath = "
                   "/program/AlarmSpectrum_pump.csv",
                   "hidden", "bands",
                   "24 bands loaded from /program/AlarmSpectrum_pump.csv. Not yet written to the "
                   "sensor."}));
}

TEST_F(AlarmFilesTest, AMissingFileIsNamedAndTheTableUntouched) {
  Given(AlarmBandTable)(0, 1, 0) = 5;
  EXPECT_EQ(Refusal("AlarmSpectrum_none.csv"),
            "/program/AlarmSpectrum_none.csv: the file cannot be read.");
  EXPECT_EQ(Refusal("values read from flash mem."),
            "/program/values read from flash mem.: the file cannot be read.");
  EXPECT_EQ(AlarmBandTable(0, 1, 0), 5);
  EXPECT_EQ(journal.Entries().back(), "hidden");
}

TEST_F(AlarmFilesTest, ABadLineIsNamedWithTheFileAndWhatCameBeforeIsShown) {
  disk.contents["/program/AlarmSpectrum_bad.csv"] =
      AlarmFileText(AlarmBandTable).substr(0, 300) + "x";
  const std::string refusal = Refusal("AlarmSpectrum_bad.csv");
  EXPECT_EQ(refusal.find("/program/AlarmSpectrum_bad.csv, line "), 0U) << refusal;
  EXPECT_EQ(Words(journal.Entries().end() - 2, journal.Entries().end()),
            (Words{"bands", "hidden"}));
}

TEST_F(AlarmFilesTest, WhatABadLineLeavesBehindIsTold) {
  disk.contents["/program/AlarmSpectrum_bad.csv"] = AlarmFileText({}) + "9,9,9,9,9,9,9,9,9,9";
  Given(AlarmBandTable)(0, 1, 0) = 5;
  EXPECT_EQ(Refusal("AlarmSpectrum_bad.csv"),
            "/program/AlarmSpectrum_bad.csv, line 26: option = 9. Subscript out of range");
  EXPECT_EQ(AlarmBandTable(0, 1, 0), 0);
  EXPECT_EQ(
      Words(journal.Entries().end() - 3, journal.Entries().end()),
      (Words{"bands", "The lines before the bad one are loaded. Not yet written to the sensor.",
             "hidden"}));
}

TEST_F(AlarmFilesTest, AFileWithOnlyTheHeaderLoadsNothing) {
  Given(AlarmBandTable)(0, 1, 0) = 5;
  const std::string whole = AlarmFileText({});
  disk.contents["/program/AlarmSpectrum_empty.csv"] = whole.substr(0, whole.find('\n') + 1);
  files.ReadFile("AlarmSpectrum_empty.csv");
  EXPECT_EQ(AlarmBandTable(0, 1, 0), 5);
  EXPECT_EQ(journal.Entries().back(),
            "0 bands loaded from /program/AlarmSpectrum_empty.csv. Not yet written to the sensor.");
}

TEST_F(AlarmFilesTest, AFileOfExactlyOneMegabyteIsStillRead) {
  const std::string text = AlarmFileText({});
  disk.contents["/program/AlarmSpectrum_large.csv"] =
      text + std::string((1U << 20U) - text.size(), '\n');
  files.ReadFile("AlarmSpectrum_large.csv");
  EXPECT_EQ(journal.Entries().back().find("24 bands loaded"), 0U);
}

TEST_F(AlarmFilesTest, AFileTooLargeIsRefused) {
  disk.contents["/program/AlarmSpectrum_large.csv"] = std::string((1U << 20U) + 1, '\n');
  EXPECT_EQ(Refusal("AlarmSpectrum_large.csv"),
            "/program/AlarmSpectrum_large.csv: the file is too large to be an alarm file.");
}

TEST_F(AlarmFilesTest, ListsAtMost100FilesByTheirNames) {
  disk.contents["/program/AlarmSpectrum.csv"] = "";
  disk.contents["/program/AlarmSpectrum_a.csv"] = "";
  disk.contents["/program/AlarmSpectrum_b.txt"] = "";
  disk.contents["/program/Alarm.csv"] = "";
  disk.contents["/elsewhere/AlarmSpectrum_c.csv"] = "";
  EXPECT_EQ(files.ListAlarmFiles(), (Words{"AlarmSpectrum.csv", "AlarmSpectrum_a.csv"}));
  for (int i = 0; i < 200; ++i) {
    disk.contents["/program/AlarmSpectrum_" + std::to_string(i) + ".csv"] = "";
  }
  EXPECT_EQ(files.ListAlarmFiles().size(), 100U);
}

TEST_F(AlarmFilesTest, BothPlacesAreListedThatWhichIsSavedToFirst) {
  disk.contents["/program/AlarmSpectrum_a.csv"] = "";
  disk.contents["/program/AlarmSpectrum_both.csv"] = "";
  disk.contents["/documents/AlarmSpectrum_both.csv"] = "";
  disk.contents["/documents/AlarmSpectrum_z.csv"] = "";
  EXPECT_EQ(files.ListAlarmFiles(),
            (Words{"AlarmSpectrum_a.csv", "AlarmSpectrum_both.csv", "AlarmSpectrum_z.csv"}));
  disk.readOnly.insert("/program");
  EXPECT_EQ(files.ListAlarmFiles(),
            (Words{"AlarmSpectrum_both.csv", "AlarmSpectrum_z.csv", "AlarmSpectrum_a.csv"}));
}

TEST_F(AlarmFilesTest, AFileIsLoadedFromEitherPlace) {
  BandTable table;
  table(0, 1, 0) = 1;
  disk.contents["/program/AlarmSpectrum_a.csv"] = AlarmFileText(table);
  table(0, 1, 0) = 2;
  disk.contents["/documents/AlarmSpectrum_z.csv"] = AlarmFileText(table);
  for (const bool readOnly : {false, true}) {
    if (readOnly) disk.readOnly.insert("/program");
    files.ReadFile("AlarmSpectrum_a.csv");
    EXPECT_EQ(AlarmBandTable(0, 1, 0), 1);
    files.ReadFile("AlarmSpectrum_z.csv");
    EXPECT_EQ(AlarmBandTable(0, 1, 0), 2);
  }
}

TEST_F(AlarmFilesTest, WhatWasSavedIsWhatIsLoadedAndAnotherFileOfItsNameIsTold) {
  disk.readOnly.insert("/program");
  disk.contents["/program/AlarmSpectrum_a.csv"] = AlarmFileText({});
  Given(AlarmBandTable)(0, 1, 0) = 7;
  files.cmdWriteFile_Click("AlarmSpectrum_a.csv");
  Given(AlarmBandTable)(0, 1, 0) = 0;
  files.ReadFile("AlarmSpectrum_a.csv");
  EXPECT_EQ(AlarmBandTable(0, 1, 0), 7);
  EXPECT_EQ(journal.Entries().back(),
            "24 bands loaded from /documents/AlarmSpectrum_a.csv. Not yet written to the sensor. "
            "Another file of this name, in /program, was not loaded.");
}

TEST_F(AlarmFilesTest, AFileHoldsTheTableUntilItIsEditedFurther) {
  EXPECT_FALSE(files.HoldTable());
  Given(AlarmBandTable)(0, 1, 0) = 12;
  files.cmdWriteFile_Click("AlarmSpectrum_pump.csv");
  EXPECT_TRUE(files.HoldTable());
  Given(AlarmBandTable)(0, 1, 0) = 13;
  EXPECT_FALSE(files.HoldTable());
  files.ReadFile("AlarmSpectrum_pump.csv");
  EXPECT_TRUE(files.HoldTable());
}

TEST_F(AlarmFilesTest, AFileOfSomeBandsDoesNotHoldTheOthers) {
  Given(AlarmBandTable)(0, 1, 0) = 12;
  disk.contents["/program/AlarmSpectrum_one.csv"] =
      AlarmFileText(BandTable{}).substr(0, AlarmFileText(BandTable{}).find('\n') + 1) +
      "3,6,10,20,0,0,0,0,0,0\r\n";
  files.ReadFile("AlarmSpectrum_one.csv");
  EXPECT_FALSE(files.HoldTable());
}

TEST_F(AlarmFilesTest, SavesUnderTheWishedNameOrOneThatIsFree) {
  EXPECT_EQ(files.NameToSaveUnder("AlarmSpectrum_pump.csv"), "AlarmSpectrum_pump.csv");
  EXPECT_EQ(files.NameToSaveUnder("values read from flash mem."), "AlarmSpectrum_Default.csv");
  disk.contents["/program/AlarmSpectrum_Default.csv"] = "";
  EXPECT_EQ(files.NameToSaveUnder(""), "AlarmSpectrum_Default_2.csv");
  disk.contents["/program/AlarmSpectrum_Default_2.csv"] = "";
  EXPECT_EQ(files.NameToSaveUnder("AlarmSpectrum_a/b.csv"), "AlarmSpectrum_Default_3.csv");
}

}  // namespace
}  // namespace kestrel
