// What stands in a data-log file, and when it is written.
// SPDX-License-Identifier: MIT
#include "logging/data_log.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "logging/data_log_text.h"
#include "logging/reset_logging.h"
#include "numeric/runtime_error.h"
#include "record/capture_data.h"
#include "support/change_record.h"
#include "support/fake_clock.h"
#include "support/fake_log_view.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/scripted_loop.h"

namespace kestrel {
namespace {

using Lines = std::vector<std::string>;

constexpr double kYellow = 0x00FFFF;
constexpr double kWhite = 0xFFFFFF;
constexpr const char* kFlagNames =
    "System Alarm Flag,Z-Axis Spectral Alarm 2,Y-Axis Spectral Alarm 2 ,X-Axis Spectral Alarm 2 ,"
    "Z-Axis Spectral Alarm 1,Y-Axis Spectral Alarm 1,X-Axis Spectral Alarm 1,DR,FMF,STD,"
    "Recording Escape ,SPI,FUF,VsH,VsL";

class DataLogFile : public testing::Test {
 protected:
  DataLogFile() {
    ResetLogging();
    record.conditions = {.supplyV = 3.3F, .temperatureC = 24.53F, .recordCount = 1};
    record.status.known = true;
    for (int i = 0; i < 512; ++i) {
      record.Of(Axis::X).raw(i) = i;
      record.Of(Axis::Y).raw(i) = -2 * i;
      record.Of(Axis::Z).raw(i) = 65535 - i;
      record.Of(Axis::X).data(i) = i * 0.0000153;
      record.Of(Axis::Y).data(i) = i * -0.5;
      record.Of(Axis::Z).data(i) = i / 3.0;
    }
  }
  ~DataLogFile() override { ResetLogging(); }

  // The file's lines without their line breaks; every line must end in one.
  [[nodiscard]] Lines Read(const std::string& path) const {
    Lines lines;
    std::string rest = files.contents.at(path);
    for (std::size_t end = rest.find("\r\n"); end != std::string::npos; end = rest.find("\r\n")) {
      lines.push_back(rest.substr(0, end));
      rest.erase(0, end + 2);
    }
    EXPECT_EQ(rest, "");
    return lines;
  }

  // Writes a file and gives its lines.
  Lines Write() {
    current.HandOver(record);
    log.WriteDataFile();
    return Read(log.LastFile().string());
  }

  // The run-time error of writing a file; empty when there is none.
  std::string ErrorOfWriting() {
    try {
      log.WriteDataFile();
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return "";
  }

  Record record;
  CurrentRecord current;
  FakeClock clock;
  ScriptedLoop loop{clock};
  MemoryFiles files;
  FixedLocale locale;
  Journal journal;
  FakeLogView view{journal};
  DataLog log{current, files, locale, loop, view};
};

TEST_F(DataLogFile, HeaderOfAnFftRecord) {
  const Lines lines = Write();
  ASSERT_EQ(lines.size(), 12U + 256U);
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + 12),
            (Lines{"File Name,Datalog.csv", "Date,3/14/2024", "Time,9:26:53 AM", "AVG_Cnt,1",
                   "Capt_Supply,3.3", "Capt_Temp 'C,24.53", " ", "Staus  Register", kFlagNames,
                   "OK,OK,OK,OK,OK,OK,OK,OK,OK,OK,OK,OK,OK,OK,OK", " ",
                   "Sample #,X axis,Y Axis.,Z axis.,"}));
}

TEST_F(DataLogFile, FlagTextsStandInTheOrderOfTheNamesBit14First) {
  for (int bit = 0; bit < static_cast<int>(kStatusFlags); ++bit) {
    record.status.word = 1 << bit;
    Given(DataLogIndex) = 1;
    std::string texts;
    for (int other = 14; other >= 0; --other) {
      const char* whenSet = other >= 7 ? "SET" : "FAIL";
      texts += std::string(other == bit ? whenSet : "OK") + (other > 0 ? "," : "");
    }
    EXPECT_EQ(Write()[9], texts);
  }
}

TEST_F(DataLogFile, FlagsThatWereNeverReadAreNotClaimed) {
  record.status = {};
  EXPECT_EQ(Write()[9], ",,,,,,,,,,,,,,");
}

TEST_F(DataLogFile, ScaledValuesInGeneralFormatWithoutTrailingSeparator) {
  const Lines lines = Write();
  EXPECT_EQ(lines[12], "0,0,0,0");
  EXPECT_EQ(lines[13], "1,1.53E-05,-0.5,0.333333333333333");
  EXPECT_EQ(lines[12 + 200], "200,0.00306,-100,66.6666666666667");
  EXPECT_EQ(lines.back(), "255,0.0039015,-127.5,85");
}

TEST_F(DataLogFile, RawWordsOfAnFftRecord) {
  Given(DataFormatLSB) = true;
  const Lines lines = Write();
  EXPECT_EQ(lines[12], "0,0,0,65535");
  EXPECT_EQ(lines[13], "1,1,-2,65534");
  EXPECT_EQ(lines.back(), "255,255,-510,65280");
}

TEST_F(DataLogFile, ATimeRecordHas512SignedLines) {
  record.kind = RecordKind::Time;
  Given(DataFormatLSB) = true;
  record.Of(Axis::X).raw(511) = -32768;
  const Lines lines = Write();
  ASSERT_EQ(lines.size(), 12U + 512U);
  EXPECT_EQ(lines[11], "Sample #,X Acc.,Y Acc.,Z Acc.,");
  EXPECT_EQ(lines.back(), "511,-32768,-1022,65024");
}

TEST_F(DataLogFile, AnyOtherWidthHasNoAxesInItsHeading) {
  EXPECT_EQ(DataLogHeading(10, ","), "Sample #,");
  EXPECT_EQ(DataLogHeading(256, "\t"), "Sample #\t");
}

TEST_F(DataLogFile, AveragesAreTwoToTheExponent) {
  NoteAverages(8);
  EXPECT_EQ(Write()[3], "AVG_Cnt,8");
  NoteAverages(181);
  EXPECT_EQ(Write()[3], "AVG_Cnt,181");
  const std::string text = DataLogText(
      record, FormatFor('.'), {.baseName = "", .date = "", .time = "", .averageExponent = 7.5},
      DataLogValues::Scaled);
  EXPECT_NE(text.find("AVG_Cnt,181.019335983756\r\n"), std::string::npos);
}

TEST_F(DataLogFile, SupplyAndTemperatureHaveSevenDigits) {
  record.conditions.supplyV = 1.0F / 3.0F;
  record.conditions.temperatureC = -40.000001F;
  const Lines lines = Write();
  EXPECT_EQ(lines[4], "Capt_Supply,0.3333333");
  EXPECT_EQ(lines[5], "Capt_Temp 'C,-40");
}

// Where numbers have a decimal comma, only the first line keeps a comma as separator.
TEST_F(DataLogFile, ADecimalCommaBringsTabs) {
  locale.decimalMark = ',';
  locale.shortDate = "14.03.2024";
  locale.time = "09:26:53";
  const Lines lines = Write();
  EXPECT_EQ(log.LastFile(), "/program/Datalog_1.txt");
  EXPECT_EQ(lines[0], "File Name,Datalog.txt");
  EXPECT_EQ(lines[1], "Date\t14.03.2024");
  EXPECT_EQ(lines[2], "Time\t09:26:53");
  EXPECT_EQ(lines[3], "AVG_Cnt\t1");
  EXPECT_EQ(lines[4], "Capt_Supply\t3,3");
  EXPECT_EQ(lines[5], "Capt_Temp 'C\t24,53");
  EXPECT_EQ(lines[8].substr(0, 41), "System Alarm Flag\tZ-Axis Spectral Alarm 2");
  EXPECT_EQ(lines[9], "OK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK\tOK");
  EXPECT_EQ(lines[11], "Sample #\tX axis\tY Axis.\tZ axis.\t");
  EXPECT_EQ(lines[13], "1\t1,53E-05\t-0,5\t0,333333333333333");
}

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

TEST_F(DataLogFile, TheCounterIsYellowMeanwhileAndShowsTheFileJustWritten) {
  Given(DataLogIndex) = 5;
  log.WriteDataFile();
  EXPECT_EQ(view.colours, (std::vector<double>{kYellow, kWhite}));
  EXPECT_EQ(view.fileCount, "5");
  EXPECT_EQ(journal.Entries(), (Lines{"log colour", "log count 5", "log colour"}));
  EXPECT_EQ(loop.Yields(), 0);
  EXPECT_EQ(loop.Paints(), 2);
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

// The index cannot count on from here, but its file is whole.
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

TEST(DataLogFormat, FollowsTheDecimalMark) {
  EXPECT_EQ(FormatFor(',').separator, "\t");
  EXPECT_EQ(FormatFor(',').extension, ".txt");
  EXPECT_EQ(FormatFor('.').separator, ",");
  EXPECT_EQ(FormatFor('.').extension, ".csv");
}

}  // namespace
}  // namespace kestrel
