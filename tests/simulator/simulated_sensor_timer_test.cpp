// Timer mode: periods, pauses, stops.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using namespace command;

constexpr auto kCapture = 46ms;  // a capture takes 45.11 ms
constexpr std::uint16_t kEscape = 1 << 4;
constexpr std::uint16_t kReady = 1 << 7;

// Spectra of one average in timer mode.
class Timer : public SensorTest {
 protected:
  void SetUp() override {
    Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1));
    Write(reg::kFftAvg, 1);
  }
  void StartSeries(std::uint16_t recPrd) {
    Write(reg::kRecPrd, recPrd);
    StartStop();
  }
  void StartSeriesAndWaitForItsFirstRecord(std::uint16_t recPrd) {
    StartSeries(recPrd);
    clock.Advance(kCapture);
    ASSERT_EQ(Count(), 1);
  }
  std::uint16_t Count() { return Read(reg::kRecCnt); }
};

struct Period {
  std::uint16_t recPrd;
  std::chrono::nanoseconds length;
};

class TimerPeriod : public Timer, public ::testing::WithParamInterface<Period> {};

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

TEST_F(Timer, StartInThePauseBeginsTheSeriesAnewAtOnce) {
  StartSeriesAndWaitForItsFirstRecord(0x0101);
  clock.Advance(30s);
  StartStop();
  EXPECT_FALSE(DataReady());
  EXPECT_TRUE(sensor.IsCapturing());
  clock.Advance(kCapture);
  EXPECT_TRUE(DataReady());
  EXPECT_EQ(Count(), 2);
  clock.Advance(59s);
  EXPECT_EQ(Count(), 2) << "the period runs from the new start";
  clock.Advance(1s);
  EXPECT_EQ(Count(), 3);
}

TEST_F(Timer, SecondStartInTheFirstCaptureEndsTheSeries) {
  StartSeries(1);
  clock.Advance(20ms);
  StartStop();
  EXPECT_FALSE(sensor.IsInSeries());
  clock.Advance(10s);
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Count(), 0);
}

TEST_F(Timer, StartInALaterCaptureEndsTheSeriesWhileARecordWaits) {
  StartSeriesAndWaitForItsFirstRecord(1);
  clock.Advance(1s - 20ms);
  ASSERT_TRUE(sensor.IsCapturing());
  StartStop();
  clock.Advance(10s);
  EXPECT_EQ(Status(), kReady);
  EXPECT_EQ(Count(), 1);
}

TEST_F(Timer, ClearAndStartInALaterCaptureBeginTheSeriesAnew) {
  StartSeriesAndWaitForItsFirstRecord(1);
  clock.Advance(1s - 20ms);
  ASSERT_TRUE(sensor.IsCapturing());
  Give(kClearStatus);
  EXPECT_EQ(Status(), 0);
  StartStop();
  clock.Advance(45ms);
  EXPECT_EQ(Count(), 1) << "a whole new capture";
  clock.Advance(1ms);
  EXPECT_EQ(Count(), 2);
  clock.Advance(1s);
  EXPECT_EQ(Count(), 3);
}

// Wherever in the period the program clears the status and, a moment later, starts.
TEST_F(Timer, ClearAndStartAlwaysLeadToARecordThatIsNewerThanTheClear) {
  for (std::uint16_t recPrd = 0; recPrd < 2; ++recPrd) {
    for (auto press = 0ms; press < 1200ms; press += 7ms) {
      for (const auto gap : {0ms, 5ms, 44ms, 46ms, 60ms}) {
        Bench bench;
        bench.Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1));
        bench.Write(reg::kFftAvg, 1);
        bench.Write(reg::kRecPrd, recPrd);
        bench.StartStop();
        bench.clock.Advance(kCapture + press);
        bench.Give(kClearStatus);
        const auto before = bench.Read(reg::kRecCnt);
        bench.clock.Advance(gap);
        bench.StartStop();
        bench.clock.Advance(kCapture);
        ASSERT_TRUE(bench.DataReady()) << recPrd << ", " << press.count() << ", " << gap.count();
        ASSERT_GT(bench.Read(reg::kRecCnt), before) << press.count() << ", " << gap.count();
      }
    }
  }
}

TEST_F(Timer, StopRequestEndsTheSeriesInACapture) {
  StartSeriesAndWaitForItsFirstRecord(1);
  clock.Advance(1s - 20ms);
  ASSERT_TRUE(sensor.IsCapturing());
  StopRequest();
  EXPECT_FALSE(sensor.IsInSeries());
  clock.Advance(10s);
  EXPECT_EQ(Status(), kReady | kEscape);
  EXPECT_EQ(Count(), 1);
}

TEST_F(Timer, StopRequestEndsTheSeriesInThePause) {
  StartSeriesAndWaitForItsFirstRecord(1);
  StopRequest();
  EXPECT_FALSE(sensor.IsInSeries());
  EXPECT_EQ(Status(), kReady | kEscape);
  Give(kClearStatus);
  clock.Advance(10s);
  StopRequest();
  EXPECT_EQ(Status(), 0) << "there is nothing left to stop";
  EXPECT_EQ(Count(), 1);
}

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

TEST_F(Timer, AnotherModeEndsTheSeriesInsteadOfTheNextCapture) {
  StartSeriesAndWaitForItsFirstRecord(1);
  Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1));
  clock.Advance(10s);
  EXPECT_FALSE(sensor.IsInSeries());
  EXPECT_EQ(Count(), 1);
}

TEST_F(Timer, StartInThePauseWithAnotherModeTakesOneRecord) {
  StartSeriesAndWaitForItsFirstRecord(1);
  Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 1));
  StartStop();
  clock.Advance(10s);
  EXPECT_EQ(Count(), 2);
  EXPECT_FALSE(sensor.IsInSeries());
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

TEST_F(Timer, SleepAndRestartEndTheSeries) {
  for (const std::uint16_t word : {kPowerDown, kSoftwareReset, kFactoryReset}) {
    Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1));
    Write(reg::kFftAvg, 1);
    StartSeries(1);
    clock.Advance(kCapture);
    Command(word);
    const auto count = Count();
    EXPECT_FALSE(sensor.IsInSeries()) << word;
    clock.Advance(10s);
    EXPECT_EQ(Count(), count) << word;
  }
}

}  // namespace
}  // namespace kestrel
