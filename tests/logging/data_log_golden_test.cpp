// Whole data-log files, byte for byte, in two locales.
// SPDX-License-Identifier: MIT
// Whole data-log files, byte for byte, in two locales. The files in golden/ come from
// make_golden.py, which shares no code with the program.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "logging/data_log.h"
#include "logging/data_log_text.h"
#include "record/capture_data.h"
#include "support/reset_program.h"

namespace kestrel {
namespace {

std::string Golden(const std::string& name) {
  std::ifstream file(std::string(KESTREL_GOLDEN) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The record that make_golden.py describes in the same formulas.
void FillRecord(std::int16_t width, double lsb) {
  ResetProgram();
  Buff.width = width;
  AvgExponent = 3;
  CaptSupply = 3.29956F;
  CaptTemp = 24.81F;
  StatusFlagText.fill("OK");
  StatusFlagText[7] = "SET";
  StatusFlagText[4] = "FAIL";
  for (int i = 0; i <= width; ++i) {
    RawX(i) = i * 257 % 65536;
    RawY(i) = i * i % 40000;
    RawZ(i) = 255 - i;
    DataX(i) = RawX(i) * lsb;
    DataY(i) = RawY(i) * lsb;
    DataZ(i) = RawZ(i) * lsb;
  }
}

TEST(DataLogGolden, AScaledSpectrumWithADecimalPoint) {
  FillRecord(kFftWidth, 0.0000153);
  const std::string golden = Golden("spectrum_point.csv");
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(DataLogText(FormatFor('.'), "DATALOG", "11/21/26", "10:20:30"), golden);
}

TEST(DataLogGolden, AScaledTimeRecordWithADecimalComma) {
  FillRecord(kTimeWidth, 0.0023842);
  const std::string golden = Golden("time_comma.txt");
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(DataLogText(FormatFor(','), "Messung", "21.11.26", "10:20:30"), golden);
}

TEST(DataLogGolden, RawWordsOfATimeRecord) {
  FillRecord(kTimeWidth, 0.0023842);
  DataFormatLSB = true;
  const std::string golden = Golden("time_lsb.csv");
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(DataLogText(FormatFor('.'), "DATALOG", "11/21/26", "10:20:30"), golden);
}

}  // namespace
}  // namespace kestrel
