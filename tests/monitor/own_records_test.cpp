// What is told of a record follows from the record alone.
// SPDX-License-Identifier: MIT
#include "monitor/own_records.h"

#include <gtest/gtest.h>

#include "record/frequency.h"

namespace kestrel::monitor {
namespace {

Record WithPeaks(RecordKind kind) {
  Record record;
  record.kind = kind;
  record.settings.option = 1;
  record.alarms.peaksKnown = true;
  record.alarms.axes[Index(Axis::Y)].peakBin = 20;
  return record;
}

TEST(LevelsOfARecord, TellTheLargestLineOfASpectrumAndOfNoTimeRecord) {
  const auto told = [](const Record& record) {
    return LevelsOf(record, {}, {}).axes[Index(Axis::Y)].topHz;
  };
  EXPECT_EQ(told(WithPeaks(RecordKind::Spectrum)), 20 * BinWidth(1));
  EXPECT_EQ(told(WithPeaks(RecordKind::Time)), std::nullopt);
  Record unread = WithPeaks(RecordKind::Spectrum);
  unread.alarms.peaksKnown = false;
  EXPECT_EQ(told(unread), std::nullopt);
}

}  // namespace
}  // namespace kestrel::monitor
