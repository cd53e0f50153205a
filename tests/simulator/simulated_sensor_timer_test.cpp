// Timer mode: periods, pauses, stops.
// SPDX-License-Identifier: MIT

#include "simulator/simulated_sensor_timer_bench.h"

namespace kestrel {
namespace {

TEST_P(TimerPeriod, RunsFromStartToStartAndTheFirstCaptureBeginsAtOnce) {
  StartSeries(GetParam().recPrd);
  for (std::uint16_t n = 0; n < 4; ++n) {
    clock.Advance(45ms);
    EXPECT_EQ(Count(), n);
    clock.Advance(1ms);
    EXPECT_EQ(Count(), n + 1);
    EXPECT_FALSE(sensor.IsCapturing());
    clock.Advance(GetParam().length - kCapture - 1ns);
    EXPECT_FALSE(sensor.IsCapturing());
    clock.Advance(1ns);
    EXPECT_TRUE(sensor.IsCapturing());
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, TimerPeriod,
                         ::testing::Values(Period{0x0001, 1s}, Period{0x00FF, 255s},
                                           Period{0x010A, 10min}, Period{0x0202, 2h}));

TEST_F(Timer, PeriodOfZeroIsBackToBack) {
  StartSeries(0);
  for (unsigned ms = 0; ms < 451; ++ms) {
    EXPECT_TRUE(sensor.IsCapturing()) << ms;
    clock.Advance(1ms);
  }
  EXPECT_EQ(Count(), 9);  // 9 x 45.11 ms
  clock.Advance(1ms);
  EXPECT_EQ(Count(), 10);
}

TEST_F(Timer, PeriodIsNeverShorterThanACapture) {
  Write(reg::kRecCtrl, RecCtrl(1, 0, 3, 1));  // 2656.6 ms
  StartSeries(1);
  clock.Advance(3 * 2656ms);
  EXPECT_EQ(Count(), 2);
  clock.Advance(3ms);
  EXPECT_EQ(Count(), 3);
}

TEST_F(Timer, DataReadyComesWithTheFirstRecordAndStays) {
  StartSeries(1);
  clock.Advance(45ms);
  EXPECT_FALSE(DataReady());
  for (unsigned ms = 46; ms < 3000; ++ms) {
    clock.Advance(1ms);
    ASSERT_TRUE(DataReady()) << ms;
  }
}

TEST_F(Timer, DataReadyClearedComesBackWithTheNextRecord) {
  StartSeriesAndWaitForItsFirstRecord(1);
  Give(kClearStatus);
  EXPECT_EQ(Status(), 0);
  clock.Advance(998ms);
  EXPECT_EQ(Status(), 0);
  clock.Advance(2ms);
  EXPECT_EQ(Status(), kReady);
}

TEST_F(Timer, BuffersAndStampFollowTheNewestCompleteRecord) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 0.5));
  StartSeriesAndWaitForItsFirstRecord(5);
  const auto first = Spectrum(0);
  ASSERT_GT(first[10], 0);
  sensor.SetScenario(SingleTone(BinHz(40, 0), 0.5));
  clock.Advance(4970ms);
  ASSERT_TRUE(sensor.IsCapturing());
  EXPECT_EQ(Spectrum(0), first);
  clock.Advance(kCapture);
  EXPECT_EQ(Spectrum(0)[10], 0);
  EXPECT_EQ(Spectrum(0)[40], first[10]);
  EXPECT_EQ(Read(reg::kTimeLow), 5);
}

TEST_F(Timer, RecordsAreStoredAsInTheOtherModes) {
  Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1, 2));
  StartSeries(1);
  clock.Advance(2s + kCapture);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 3);
}

TEST_F(Timer, CountWrapsAtSixteenBits) {
  Write(reg::kRecCnt, 0xFFFF);
  StartSeries(1);
  clock.Advance(kCapture);
  EXPECT_EQ(Count(), 0);
  clock.Advance(1s);
  EXPECT_EQ(Count(), 1);
}

// Wherever in the period the program clears the status and, a moment later, starts.

TEST_F(Timer, SensorTellsCaptureAndPauseApart) {
  EXPECT_FALSE(sensor.IsInSeries());
  StartSeries(1);
  EXPECT_TRUE(sensor.IsInSeries());
  EXPECT_TRUE(sensor.IsCapturing());
  clock.Advance(kCapture);
  EXPECT_TRUE(sensor.IsInSeries());
  EXPECT_FALSE(sensor.IsCapturing());
}

TEST_F(Timer, OtherModesMakeNoSeries) {
  for (const unsigned mode : {0U, 2U, 3U}) {
    Write(reg::kRecCtrl, RecCtrl(mode, 0, 0, 1));
    StartSeries(0);
    EXPECT_FALSE(sensor.IsInSeries()) << mode;
    clock.Advance(10s);
  }
  EXPECT_EQ(Count(), 3);
}

TEST_F(Timer, SettingsChangedInACaptureCountFromTheNextOneOn) {
  StartSeries(1);
  Write(reg::kRecCtrl, RecCtrl(1, 2, 0, 2));
  Write(reg::kFftAvg, 2);
  Write(reg::kRecPrd, 3);
  clock.Advance(kCapture);
  EXPECT_EQ(Read(reg::kRecInfo), 1 << 12 | 1);
  clock.Advance(1s);
  EXPECT_EQ(Count(), 1) << "two averages take longer";
  clock.Advance(kCapture);
  EXPECT_EQ(Count(), 2);
  EXPECT_EQ(Read(reg::kRecInfo), 2 << 12 | 2 << 10 | 2);
  clock.Advance(2900ms);
  EXPECT_EQ(Count(), 2);
  clock.Advance(100ms);
  EXPECT_EQ(Count(), 3);
}

TEST_F(Timer, CommandsWorkInThePauseButNotInACapture) {
  StartSeriesAndWaitForItsFirstRecord(1);
  Write(reg::kPointer, 7);
  Give(kResetPointer);
  EXPECT_EQ(Read(reg::kPointer), 0);

  clock.Advance(1s - 20ms);
  ASSERT_TRUE(sensor.IsCapturing());
  Write(reg::kPointer, 7);
  Give(kResetPointer);
  EXPECT_EQ(Read(reg::kPointer), 7);
}

TEST_F(Timer, NextCaptureWaitsForACommandAtWork) {
  StartSeriesAndWaitForItsFirstRecord(1);
  clock.Advance(900ms - kCapture);
  Give(kAutonull);  // 170 ms
  clock.Advance(169ms);
  EXPECT_FALSE(sensor.IsCapturing());
  clock.Advance(1ms);
  EXPECT_TRUE(sensor.IsCapturing());
  clock.Advance(1s + 44ms);
  EXPECT_EQ(Count(), 2);
  clock.Advance(2ms);
  EXPECT_EQ(Count(), 3) << "the period runs from the late start";
}

}  // namespace
}  // namespace kestrel
