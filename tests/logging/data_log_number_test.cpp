// Numbers, names and places of data-log files.
// SPDX-License-Identifier: MIT

#include "logging/data_log_bench.h"

namespace kestrel {
namespace {

TEST_F(DataLogFile, FilesAreNumbered) {
  for (int i = 0; i < 3; ++i) log.WriteDataFile();
  ASSERT_EQ(files.contents.size(), 3U);
  EXPECT_EQ(files.contents.count("/program/Datalog_1.csv"), 1U);
  EXPECT_EQ(files.contents.count("/program/Datalog_2.csv"), 1U);
  EXPECT_EQ(files.contents.count("/program/Datalog_3.csv"), 1U);
  EXPECT_EQ(DataLogIndex, 4);
  EXPECT_EQ(view.fileCount, "3");
  EXPECT_EQ(Read("/program/Datalog_2.csv")[0], "File Name,Datalog.csv");
}

TEST_F(DataLogFile, TheUsersNameIsTaken) {
  Given(DataLogName) = "pump 7";
  Given(DataLogIndex) = 12;
  const Lines lines = Write();
  EXPECT_EQ(log.LastFile(), "/program/pump 7_12.csv");
  EXPECT_EQ(lines[0], "File Name,pump 7.csv");
}

TEST_F(DataLogFile, AFileOfThatNameIsReplaced) {
  files.contents["/program/Datalog_1.csv"] = "an earlier run";
  EXPECT_EQ(Write().size(), 268U);
}

TEST_F(DataLogFile, AFileThatCannotBeWrittenUsesNoIndex) {
  log.WriteDataFile();
  files.failure = "Permission denied";
  EXPECT_EQ(ErrorOfWriting(), "/program/Datalog_2.csv: Permission denied");
  EXPECT_EQ(DataLogIndex, 2);
  EXPECT_EQ(view.fileCount, "1");
  EXPECT_EQ(view.colours.back(), kWhite);
  EXPECT_EQ(log.LastFile(), "/program/Datalog_1.csv");
}

TEST_F(DataLogFile, TheLastIndexIsWrittenAndThenOverflows) {
  Given(DataLogIndex) = 32766;
  log.WriteDataFile();
  EXPECT_EQ(DataLogIndex, 32767);
  EXPECT_EQ(ErrorOfWriting(), "Overflow");
  EXPECT_EQ(Read("/program/Datalog_32767.csv").size(), 268U);
  EXPECT_EQ(files.contents.size(), 2U);
  EXPECT_EQ(log.LastFile(), "/program/Datalog_32767.csv");
  EXPECT_EQ(DataLogIndex, 32767);
  EXPECT_EQ(view.fileCount, "32767");
  EXPECT_EQ(view.colours.back(), kWhite);
}

TEST_F(DataLogFile, AfterTheLastIndexNothingIsWrittenAndNothingReplaced) {
  Given(DataLogIndex) = 32767;
  EXPECT_EQ(ErrorOfWriting(), "Overflow");
  const std::string last = files.contents.at("/program/Datalog_32767.csv");
  for (int i = 0; i < 3; ++i) {
    ChangeRecord(current, [](Record& changed) { changed.Of(Axis::X).data(0) = 77; });
    EXPECT_EQ(ErrorOfWriting(), "Overflow");
    EXPECT_EQ(files.contents.size(), 1U);
    EXPECT_EQ(files.contents.at("/program/Datalog_32767.csv"), last);
    EXPECT_EQ(view.colours.back(), kWhite);
  }
}

TEST_F(DataLogFile, OnceTheIndexIsResetLoggingGoesOn) {
  Given(DataLogIndex) = 32767;
  EXPECT_EQ(ErrorOfWriting(), "Overflow");
  EXPECT_EQ(ErrorOfWriting(), "Overflow");
  Given(DataLogIndex) = 1;
  EXPECT_EQ(Write().size(), 268U);
  EXPECT_EQ(log.LastFile(), "/program/Datalog_1.csv");
  EXPECT_EQ(DataLogIndex, 2);
  Given(DataLogIndex) = 32767;
  files.contents.clear();
  EXPECT_EQ(ErrorOfWriting(), "Overflow");
  EXPECT_EQ(files.contents.size(), 1U) << "the last index is free again";
}

TEST_F(DataLogFile, ALastFileThatCannotBeWrittenCanBeTriedAgain) {
  Given(DataLogIndex) = 32767;
  files.failure = "No space left on device";
  EXPECT_EQ(ErrorOfWriting(), "/program/Datalog_32767.csv: No space left on device");
  files.failure.clear();
  EXPECT_EQ(ErrorOfWriting(), "Overflow");
  EXPECT_EQ(files.contents.size(), 1U);
}

TEST_F(DataLogFile, WhereTheProgramsFolderIsReadOnlyFilesGoToTheDocuments) {
  files.readOnly.insert("/program");
  log.WriteDataFile();
  EXPECT_EQ(log.LastFile(), "/documents/Datalog_1.csv");
  files.readOnly.clear();
  log.WriteDataFile();
  EXPECT_EQ(log.LastFile(), "/program/Datalog_2.csv");
  EXPECT_EQ(files.contents.size(), 2U);
}

TEST_F(DataLogFile, ANameThatCannotBeAFileNameIsNamedAndNothingWritten) {
  for (const std::string name : {"../pump", "a\\b", "nul"}) {
    Given(DataLogName) = name;
    EXPECT_EQ(ErrorOfWriting().substr(0, 12 + name.size()), "File name " + name + ": ");
    EXPECT_TRUE(files.contents.empty());
    EXPECT_EQ(DataLogIndex, 1);
    EXPECT_EQ(view.colours.back(), kWhite);
  }
}

}  // namespace
}  // namespace kestrel
