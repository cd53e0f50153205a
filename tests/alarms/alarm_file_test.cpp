// The text of alarm files: names, lines, faults.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_file.h"

#include <gtest/gtest.h>

#include <random>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

const std::string kHeader =
    "Sample Rate Option,  Band,  F-Low, F-High,  Alm1 X,  ALM1 Y,  ALM1 Z,  ALM2 X,  ALM2 Y,  ALM2 "
    "Z\r\n";

BandTable RandomTable(unsigned seed) {
  std::mt19937 random(seed);
  BandTable table;
  for (int option = 0; option < 4; ++option) {
    for (int band = 1; band <= 6; ++band) {
      for (const int field : kBandFields) {
        table(field, band, option) = static_cast<std::int32_t>(random());
      }
    }
  }
  return table;
}

BandTable Read(const std::string& content) {
  BandTable table;
  ReadAlarmFileText(content, table);
  return table;
}

std::string Refusal(const std::string& content) {
  BandTable table;
  try {
    ReadAlarmFileText(content, table);
  } catch (const RuntimeError& error) {
    return error.what();
  }
  return "taken";
}

TEST(AlarmFileName, MustBeginAndEndInExactlyTheseLetters) {
  EXPECT_TRUE(IsAlarmFileName("AlarmSpectrum_Default.csv"));
  EXPECT_TRUE(IsAlarmFileName("AlarmSpectrum_.csv"));
  EXPECT_FALSE(IsAlarmFileName("AlarmSpectrum_Default.CSV"));
  EXPECT_FALSE(IsAlarmFileName("alarmspectrum_Default.csv"));
  EXPECT_FALSE(IsAlarmFileName("AlarmSpectrum.csv"));
  EXPECT_FALSE(IsAlarmFileName("AlarmSpectrum_Default.csv "));
  EXPECT_FALSE(IsAlarmFileName(""));
}

TEST(AlarmFileContent, IsAHeaderAnd24LinesEndedByCarriageReturnAndLineFeed) {
  BandTable table;
  table(0, 3, 2) = 40;
  table(1, 3, 2) = 52;
  for (const Axis axis : kAxes) {
    table(Alarm1Field(axis), 3, 2) = 120;
    table(Alarm2Field(axis), 3, 2) = 200;
  }
  table(9, 6, 3) = -1;
  std::string expected = kHeader;
  for (int option = 0; option < 4; ++option) {
    for (int band = 1; band <= 6; ++band) {
      const std::string start = std::to_string(option) + "," + std::to_string(band);
      if (option == 2 && band == 3) {
        expected += "2,3,40,52,120,120,120,200,200,200\r\n";
      } else if (option == 3 && band == 6) {
        expected += "3,6,0,0,0,0,0,0,0,-1\r\n";
      } else {
        expected += start + ",0,0,0,0,0,0,0,0\r\n";
      }
    }
  }
  EXPECT_EQ(AlarmFileText(table), expected);
}

TEST(AlarmFileContent, ReadBackIsTheSameTable) {
  for (unsigned seed = 1; seed <= 50; ++seed) {
    const BandTable table = RandomTable(seed);
    EXPECT_EQ(Read(AlarmFileText(table)), table) << seed;
  }
}

TEST(AlarmFileContent, TheFieldsThatAreNotInTheFileStay) {
  BandTable table;
  table(2, 1, 0) = 5;
  table(6, 1, 0) = 6;
  EXPECT_EQ(ReadAlarmFileText(kHeader + "0,1,1,2,3,4,5,6,7,8\r\n", table), 1);
  EXPECT_EQ(table(2, 1, 0), 5);
  EXPECT_EQ(table(6, 1, 0), 6);
  EXPECT_EQ(table(7, 1, 0), 6);
  EXPECT_EQ(table(9, 1, 0), 8);
}

TEST(AlarmFileContent, AHeaderAloneChangesNothing) {
  BandTable table = RandomTable(1);
  EXPECT_EQ(ReadAlarmFileText(kHeader, table), 0);
  EXPECT_EQ(table, RandomTable(1));
}

TEST(AlarmFileContent, LinesMayComeInAnyOrderAndBeFew) {
  BandTable table = RandomTable(2);
  BandTable expected = table;
  expected(0, 6, 3) = 9;
  expected(0, 1, 0) = 8;
  for (const int field : kBandFields) {
    if (field == 0) continue;
    expected(field, 6, 3) = 0;
    expected(field, 1, 0) = 0;
  }
  EXPECT_EQ(ReadAlarmFileText(kHeader + "3,6,9,0,0,0,0,0,0,0\r\n0,1,8,0,0,0,0,0,0,0\r\n", table),
            2);
  EXPECT_EQ(table, expected);
}

TEST(AlarmFileContent, TheUnusedSlotsOfTheTableAreInReach) {
  EXPECT_EQ(Read(kHeader + "4,7,1,0,0,0,0,0,0,0\r\n")(0, 7, 4), 1);
  EXPECT_EQ(Read(kHeader + "0,0,1,0,0,0,0,0,0,0\r\n")(0, 0, 0), 1);
}

TEST(AlarmFileContent, WhatSpreadsheetsWriteIsTaken) {
  const BandTable expected = Read(kHeader + "1,2,3,4,5,6,7,8,9,10\r\n");
  const std::string header = kHeader.substr(0, kHeader.size() - 2);
  std::string semicolons = header;
  std::replace(semicolons.begin(), semicolons.end(), ',', ';');
  std::string tabs = header;
  std::replace(tabs.begin(), tabs.end(), ',', '\t');
  for (const std::string& content : {
           header + "\n1,2,3,4,5,6,7,8,9,10\n",                   // LF
           header + "\r1,2,3,4,5,6,7,8,9,10\r",                   // CR
           header + "\n1,2,3,4,5,6,7,8,9,10",                     // no end of line
           "\xEF\xBB\xBF" + header + "\r\n1,2,3,4,5,6,7,8,9,10",  // byte-order mark
           header + "\r\n 1, 2 ,3,\t4,5,6,7,8,9, 10 \r\n",        // blanks
           header + "\r\n\"1\",\"2\",3,4,5,6,7,8,9,\" 10\"\r\n",  // quotes
           header + "\r\n\r\n1,2,3,4,5,6,7,8,9,10\r\n\r\n \r\n",  // empty lines
           header + "\r\n1.0,2,3.4,4,4.5,6.5,7,8,9,1E+1\r\n",     // decimals, half to even
           semicolons + "\r\n1;2;3;4;5;6;7;8;9;10\r\n",
           tabs + "\r\n1\t2\t3\t4\t5\t6\t7\t8\t9\t10\r\n",
       }) {
    if (content.find("4.5") != std::string::npos) {
      EXPECT_EQ(Read(content)(3, 2, 1), 4);
      EXPECT_EQ(Read(content)(4, 2, 1), 6);
      EXPECT_EQ(Read(content)(9, 2, 1), 10);
    } else {
      EXPECT_EQ(Read(content), expected) << content;
    }
  }
}

TEST(AlarmFileContent, AFileThatIsNoneIsRefusedByItsFirstLine) {
  EXPECT_EQ(Refusal(""), "line 1: not an alarm file: it begins with \"\"");
  EXPECT_EQ(Refusal("Name,Value\r\n1,2\r\n"),
            "line 1: not an alarm file: it begins with \"Name,Value\"");
  EXPECT_EQ(Refusal("0,1,0,0,0,0,0,0,0,0\r\n"),
            "line 1: not an alarm file: it begins with \"0,1,0,0,0,0,0,0,0,0\"");
  EXPECT_EQ(Refusal(std::string(100000, 'x')),
            "line 1: not an alarm file: it begins with \"" + std::string(80, 'x') + "...\"");
  EXPECT_EQ(Refusal("Sample Rate Option,Band\r\n0,1\r\n"),
            "line 1: not an alarm file: it begins with \"Sample Rate Option,Band\"");
  EXPECT_EQ(Refusal("\r\n" + kHeader), "line 1: not an alarm file: it begins with \"\"");
}

TEST(AlarmFileContent, TheHeaderIsKnownByTenTitlesAndTheFirstOfThem) {
  const std::string line = "0,1,5,0,0,0,0,0,0,0\r\n";
  for (const char* header : {
           "sample rate option,b,c,d,e,f,g,h,i,j\r\n",
           "SAMPLE RATE OPTION,,,,,,,,,\r\n",
           " \"Sample  Rate\tOption\" ,Band,F-Low,F-High,1,2,3,4,5,6\r\n",
           "SampleRateOption;Band;F-Low;F-High;1;2;3;4;5;6\r\n",
       }) {
    const bool semicolons = std::string(header).find(';') != std::string::npos;
    std::string content = header + line;
    if (semicolons) std::replace(content.begin(), content.end(), ',', ';');
    EXPECT_EQ(Read(content)(0, 1, 0), 5) << header;
  }
}

TEST(AlarmFileContent, EveryLineUsesTheSeparatorOfTheHeader) {
  EXPECT_EQ(Refusal(kHeader + "0;1;0;0;0;0;0;0;0;0\r\n"),
            "line 2: 1 values instead of 10 in \"0;1;0;0;0;0;0;0;0;0\"");
}

TEST(AlarmFileContent, RowsOfSeparatorsAloneAreEmpty) {
  EXPECT_EQ(Read(kHeader + ",,,,,,,,,\r\n0,1,5,0,0,0,0,0,0,0\r\n,,\r\n")(0, 1, 0), 5);
}

TEST(AlarmFileContent, AMessageShowsOneShortLineOfTheFile) {
  const std::string digits(5000, '9');
  EXPECT_EQ(Refusal(kHeader + "0,1," + digits + ",0,0,0,0,0,0,0"),
            "line 2: F-low = " + std::string(80, '9') + ".... Overflow");
  EXPECT_EQ(Refusal(kHeader + "0,1,x" + digits + ",0,0,0,0,0,0,0"),
            "line 2: F-low = \"x" + std::string(79, '9') + "...\" is not a number");
  EXPECT_EQ(Refusal(kHeader + "0,1,\x1B[31m\x7F,0,0,0,0,0,0,0"),
            "line 2: F-low = \" [31m \" is not a number");
  // Nothing of a character that does not fit whole.
  EXPECT_EQ(Refusal(std::string(79, 'x') + "\xC3\xA4y"),
            "line 1: not an alarm file: it begins with \"" + std::string(79, 'x') + "...\"");
}

TEST(AlarmFileContent, NumbersAreRoundedHalfToEvenWithin32Bits) {
  const std::vector<std::pair<const char*, std::int32_t>> numbers{{"2147483647", 2147483647},
                                                                  {"-2147483648", -2147483647 - 1},
                                                                  {"2147483647.4", 2147483647},
                                                                  {"+5", 5},
                                                                  {"-.5", 0},
                                                                  {"0.5", 0},
                                                                  {"1.5", 2},
                                                                  {"2.5", 2},
                                                                  {"-1.5", -2},
                                                                  {"1E+2", 100},
                                                                  {"1.2e2", 120},
                                                                  {"25E-1", 2},
                                                                  {"007", 7},
                                                                  {"5.", 5},
                                                                  {"1E-400", 0}};
  for (const auto& [text, value] : numbers) {
    EXPECT_EQ(Read(kHeader + "0,1," + text + ",0,0,0,0,0,0,0")(0, 1, 0), value) << text;
  }
  for (const char* text : {"2147483647.5", "-2147483649", "1E+10", "1E+400"}) {
    EXPECT_EQ(Refusal(kHeader + "0,1," + text + ",0,0,0,0,0,0,0"),
              "line 2: F-low = " + std::string(text) + ". Overflow");
  }
  for (const char* text : {"0x10", "1 2", "--1", "1E", "inf", "nan", ".", "1.2.3"}) {
    EXPECT_EQ(Refusal(kHeader + "0,1," + text + ",0,0,0,0,0,0,0"),
              "line 2: F-low = \"" + std::string(text) + "\" is not a number");
  }
}

TEST(AlarmFileContent, OptionAndBandAreRoundedBeforeTheyAreJudged) {
  EXPECT_EQ(Read(kHeader + "0.5,6.5,9,0,0,0,0,0,0,0")(0, 6, 0), 9);
  EXPECT_EQ(Read(kHeader + "4.4,-0.4,9,0,0,0,0,0,0,0")(0, 0, 4), 9);
  EXPECT_EQ(Refusal(kHeader + "4.6,1,9,0,0,0,0,0,0,0"),
            "line 2: option = 5. Subscript out of range");
  EXPECT_EQ(Refusal(kHeader + "0,7.5,9,0,0,0,0,0,0,0"), "line 2: band = 8. Subscript out of range");
}

TEST(AlarmFileContent, ABadLineIsNamedWithItsNumberAndValue) {
  const std::string good = "0,1,0,0,0,0,0,0,0,0\r\n";
  EXPECT_EQ(Refusal(kHeader + good + "5,1,0,0,0,0,0,0,0,0\r\n"),
            "line 3: option = 5. Subscript out of range");
  EXPECT_EQ(Refusal(kHeader + "-1,1,0,0,0,0,0,0,0,0\r\n"),
            "line 2: option = -1. Subscript out of range");
  EXPECT_EQ(Refusal(kHeader + good + good + "0,8,0,0,0,0,0,0,0,0\r\n"),
            "line 4: band = 8. Subscript out of range");
  EXPECT_EQ(Refusal(kHeader + "0,1,ten,0,0,0,0,0,0,0\r\n"),
            "line 2: F-low = \"ten\" is not a number");
  EXPECT_EQ(Refusal(kHeader + "0,1,0,0,0,0,0,0,0,\r\n"),
            "line 2: alarm 2 Z = \"\" is not a number");
  EXPECT_EQ(Refusal(kHeader + "0,1,0,0,2147483648,0,0,0,0,0\r\n"),
            "line 2: alarm 1 X = 2147483648. Overflow");
  EXPECT_EQ(Refusal(kHeader + "0,1,0\r\n"), "line 2: 3 values instead of 10 in \"0,1,0\"");
  EXPECT_EQ(Refusal(kHeader + "0,1,0,0,0,0,0,0,0,0,\r\n"),
            "line 2: 11 values instead of 10 in \"0,1,0,0,0,0,0,0,0,0,\"");
}

TEST(AlarmFileContent, EntriesBeforeABadLineStay) {
  BandTable table;
  EXPECT_THROW(ReadAlarmFileText(kHeader + "0,1,9,9,9,9,9,9,9,9\r\n0,2,1,1,x,1,1,1,1,1\r\n", table),
               RuntimeError);
  EXPECT_EQ(table(0, 1, 0), 9);
  EXPECT_EQ(table(9, 1, 0), 9);
  EXPECT_EQ(table(0, 2, 0), 0) << "nothing of the bad line itself";
}

}  // namespace
}  // namespace kestrel
