// What stands in a data-log file, and when it is written.
// SPDX-License-Identifier: MIT

#include "logging/data_log_bench.h"

namespace kestrel {
namespace {

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

TEST_F(DataLogFile, TheCounterIsYellowMeanwhileAndShowsTheFileJustWritten) {
  Given(DataLogIndex) = 5;
  log.WriteDataFile();
  EXPECT_EQ(view.colours, (std::vector<double>{kYellow, kWhite}));
  EXPECT_EQ(view.fileCount, "5");
  EXPECT_EQ(journal.Entries(), (Lines{"log colour", "log count 5", "log colour"}));
  EXPECT_EQ(loop.Yields(), 0);
  EXPECT_EQ(loop.Paints(), 2);
}

// The index cannot count on from here, but its file is whole.

TEST(DataLogFormat, FollowsTheDecimalMark) {
  EXPECT_EQ(FormatFor(',').separator, "\t");
  EXPECT_EQ(FormatFor(',').extension, ".txt");
  EXPECT_EQ(FormatFor('.').separator, ",");
  EXPECT_EQ(FormatFor('.').extension, ".csv");
}

}  // namespace
}  // namespace kestrel
