// Whole data-log files, byte for byte, in two locales.
// SPDX-License-Identifier: MIT
// Whole data-log files, byte for byte, in two locales. The files in golden/ come from
// make_golden.py, which shares no code with the program.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "logging/data_log_text.h"

namespace kestrel {
namespace {

std::string Golden(const std::string& name) {
  std::ifstream file(std::string(KESTREL_GOLDEN) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The record that make_golden.py describes in the same formulas.
Record MakeRecord(RecordKind kind, double lsb) {
  Record record;
  record.kind = kind;
  record.conditions = {.supplyV = 3.29956F, .temperatureC = 24.81F, .recordCount = 1};
  record.status = {.word = 1 << 7 | 1 << 4, .known = true};
  for (int i = 0; i <= record.Width(); ++i) {
    record.Of(Axis::X).raw(i) = i * 257 % 65536;
    record.Of(Axis::Y).raw(i) = i * i % 40000;
    record.Of(Axis::Z).raw(i) = 255 - i;
    for (AxisRecord& axis : record.axes) axis.data(i) = axis.raw(i) * lsb;
  }
  return record;
}

DataLogHead Head(const char* name, const char* date) {
  return {.baseName = name, .date = date, .time = "10:20:30", .averageExponent = 3};
}

TEST(DataLogGolden, AScaledSpectrumWithADecimalPoint) {
  const Record record = MakeRecord(RecordKind::Spectrum, 0.0000153);
  const std::string golden = Golden("spectrum_point.csv");
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(DataLogText(record, FormatFor('.'), Head("DATALOG", "11/21/26"), DataLogValues::Scaled),
            golden);
}

TEST(DataLogGolden, AScaledTimeRecordWithADecimalComma) {
  const Record record = MakeRecord(RecordKind::Time, 0.0023842);
  const std::string golden = Golden("time_comma.txt");
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(DataLogText(record, FormatFor(','), Head("Messung", "21.11.26"), DataLogValues::Scaled),
            golden);
}

TEST(DataLogGolden, RawWordsOfATimeRecord) {
  const Record record = MakeRecord(RecordKind::Time, 0.0023842);
  const std::string golden = Golden("time_lsb.csv");
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(
      DataLogText(record, FormatFor('.'), Head("DATALOG", "11/21/26"), DataLogValues::RawWords),
      golden);
}

}  // namespace
}  // namespace kestrel
