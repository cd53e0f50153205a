// Behaviour of spectra over time.
// SPDX-License-Identifier: MIT
#include "analysis/waterfall.h"

#include <gmock/gmock.h>

#include <limits>
#include <numbers>

#include "record/frequency.h"

namespace kestrel::analysis {
namespace {

std::chrono::system_clock::time_point At(int second) {
  return std::chrono::system_clock::from_time_t(1'700'000'000 + second);
}

Record RecordAt(int second, int word, int option = 0) {
  Record record;
  record.time = At(second);
  record.settings.option = static_cast<std::int16_t>(option);
  record.settings.window = 1;
  record.settings.averages = 4;
  record.settings.range = record.scaledRange = 2;
  record.lsbWeight = LsbWeightOf(2, RecordKind::Spectrum);
  record.Of(Axis::Z).raw(40) = word;
  record.Of(Axis::Z).data(40) = word * record.lsbWeight;
  return record;
}

TEST(Waterfall, ARowGivesTheSpectrumItCameFrom) {
  Waterfall waterfall;
  const Record record = RecordAt(0, 65535, 2);
  EXPECT_FALSE(waterfall.Add(record));
  EXPECT_EQ(waterfall.SpectrumOf(0, Axis::Z), *SpectrumOf(record, Axis::Z));
  EXPECT_EQ(waterfall.SpectrumOf(0, Axis::X, MagnitudeMeaning::Rms),
            *SpectrumOf(record, Axis::X, {.meaning = MagnitudeMeaning::Rms}));
}

TEST(Waterfall, AColumnIsTheLevelOverTime) {
  Waterfall waterfall;
  for (int second = 0; second < 5; ++second) (void)waterfall.Add(RecordAt(second, 100 * second));
  const std::vector<TimedLevel> levels = waterfall.ColumnAt(40 * BinWidth(0), Axis::Z);
  ASSERT_EQ(levels.size(), 5U);
  EXPECT_DOUBLE_EQ(levels[3].peakG, 300 * 0.0003052);
  EXPECT_EQ(levels[3].time, At(3));
  EXPECT_DOUBLE_EQ(waterfall.ColumnAt(40 * BinWidth(0), Axis::Z, MagnitudeMeaning::Rms)[3].peakG,
                   300 * 0.0003052 * std::numbers::sqrt2);
}

TEST(Waterfall, AColumnLeavesOutRowsThatDoNotReachThere) {
  Waterfall waterfall;
  (void)waterfall.Add(RecordAt(0, 5, 0));
  (void)waterfall.Add(RecordAt(1, 5, 3));
  EXPECT_EQ(waterfall.ColumnAt(20000, Axis::Z).size(), 1U);
  for (const double none : {-1000.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_TRUE(waterfall.ColumnAt(none, Axis::Z).empty());
  }
}

TEST(Waterfall, ARowGivesTheRecordItCameFromAsFarAsItKeepsIt) {
  Waterfall waterfall;
  const Record record = RecordAt(3, 4000, 1);
  (void)waterfall.Add(record);
  const Record kept = waterfall.RecordOf(0);
  EXPECT_EQ(kept.time, record.time);
  for (const bool ownRange : {false, true}) {
    EXPECT_EQ(*SpectrumOf(kept, Axis::Z, {.ownRange = ownRange}),
              *SpectrumOf(record, Axis::Z, {.ownRange = ownRange}));
  }
}

TEST(Waterfall, ARecordScaledForAnotherRangeMayKeepItsOwn) {
  Waterfall waterfall;
  Record record = RecordAt(0, 1000);
  record.scaledRange = 0;
  record.lsbWeight = LsbWeightOf(0, RecordKind::Spectrum);
  (void)waterfall.Add(record);
  (void)waterfall.Add(record, true);
  const double own = LsbWeightOf(2, RecordKind::Spectrum);
  EXPECT_DOUBLE_EQ(waterfall.SpectrumOf(0, Axis::Z).peakG[40], 1000 * record.lsbWeight);
  EXPECT_DOUBLE_EQ(waterfall.SpectrumOf(1, Axis::Z).peakG[40], 1000 * own);
  EXPECT_EQ(waterfall.SpectrumOf(1, Axis::Z).range, 2);
  EXPECT_EQ(waterfall.Taken(), 2);
}

TEST(Waterfall, TheOldestRowsGiveWay) {
  Waterfall waterfall(3);
  for (int second = 0; second < 8; ++second) (void)waterfall.Add(RecordAt(second, second));
  ASSERT_EQ(waterfall.Rows(), 3U);
  EXPECT_EQ(waterfall.TimeOf(0), At(5));
  EXPECT_EQ(waterfall.TimeOf(2), At(7));
  waterfall.Clear();
  EXPECT_EQ(waterfall.Rows(), 0U);
  (void)waterfall.Add(RecordAt(9, 1));
  EXPECT_EQ(waterfall.TimeOf(0), At(9));
}

TEST(Waterfall, AGapIsKeptWithTheRowAfterIt) {
  Waterfall waterfall;
  waterfall.AddGap("before anything");
  (void)waterfall.Add(RecordAt(0, 1));
  waterfall.AddGap("sensor unplugged");
  waterfall.AddGap("later");
  (void)waterfall.Add(RecordAt(60, 1));
  (void)waterfall.Add(RecordAt(61, 1));
  EXPECT_EQ(waterfall.GapBefore(0), "");
  EXPECT_EQ(waterfall.GapBefore(1), "sensor unplugged");
  EXPECT_EQ(waterfall.GapBefore(2), "");
  EXPECT_EQ(waterfall.ColumnAt(40 * BinWidth(0), Axis::Z)[1].gapBefore, "sensor unplugged");
}

TEST(Waterfall, TenThousandRowsTakeLessThanSixtyMegabytes) {
  Waterfall waterfall;
  for (int second = 0; second < 10500; ++second) (void)waterfall.Add(RecordAt(second, 7));
  EXPECT_EQ(waterfall.Rows(), 10000U);
  EXPECT_LT(waterfall.Bytes(), 60'000'000U);
}

TEST(Waterfall, WhatIsNoSpectrumIsRefusedAndGarbageIsKeptAsWords) {
  Waterfall waterfall;
  Record record = RecordAt(0, 1);
  record.kind = RecordKind::Time;
  EXPECT_TRUE(waterfall.Add(record));
  record = RecordAt(0, 1);
  record.settings.option = 7;
  EXPECT_TRUE(waterfall.Add(record));
  record = RecordAt(0, 1);
  record.scaledRange = -1;
  EXPECT_TRUE(waterfall.Add(record));
  record = RecordAt(0, 1);
  record.lsbWeight = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(waterfall.Add(record));
  EXPECT_EQ(waterfall.Rows(), 0U);
  record = RecordAt(0, 1);
  record.Of(Axis::X).raw(1) = std::numeric_limits<double>::quiet_NaN();
  record.Of(Axis::X).raw(2) = -5;
  record.Of(Axis::X).raw(3) = 1e9;
  EXPECT_FALSE(waterfall.Add(record));
  const Spectrum spectrum = waterfall.SpectrumOf(0, Axis::X);
  EXPECT_EQ(spectrum.peakG[1], 0);
  EXPECT_EQ(spectrum.peakG[2], 0);
  EXPECT_DOUBLE_EQ(spectrum.peakG[3], 65535 * 0.0003052);
}

}  // namespace
}  // namespace kestrel::analysis
