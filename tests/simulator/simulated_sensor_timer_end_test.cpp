// What ends a series of timer mode or begins it anew.
// SPDX-License-Identifier: MIT

#include "simulator/simulated_sensor_timer_bench.h"

namespace kestrel {
namespace {

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
