// One capture: how long it takes, what it shows when.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using Captures = SensorTest;

// How long a capture with these settings takes, to the millisecond.
std::chrono::milliseconds TimeTaken(std::uint16_t recCtrl, std::uint16_t averages) {
  Bench bench;
  bench.Write(reg::kRecCtrl, recCtrl);
  bench.Write(reg::kFftAvg, averages);
  bench.StartStop();
  auto taken = 0ms;
  while (!bench.DataReady() && taken < 60s) {
    bench.clock.Advance(1ms);
    taken += 1ms;
  }
  return taken;
}

struct Timing {
  std::uint16_t recCtrl;
  std::uint16_t averages;
  std::chrono::milliseconds expected;
};

void PrintTo(const Timing& timing, std::ostream* out) {
  *out << "REC_CTRL " << timing.recCtrl << ", FFT_AVG " << timing.averages;
}

class Durations : public ::testing::TestWithParam<Timing> {};

TEST_P(Durations, AreAsTheSettingsAsk) {
  EXPECT_EQ(TimeTaken(GetParam().recCtrl, GetParam().averages).count(),
            GetParam().expected.count());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Durations,
    ::testing::Values(Timing{0x1030, 8, 361ms},      // 8 x (5.11 + 40) ms
                      Timing{0x1030, 1, 46ms},       // 45.11 ms
                      Timing{0x1030, 0, 46ms},       // none counts as one
                      Timing{0x1030, 0x0102, 91ms},  // only the low byte counts
                      Timing{0x1031, 1, 46ms},       // timer mode
                      Timing{0x1033, 1, 46ms},       // the unused mode code
                      Timing{0x1130, 2, 162ms},      // 2 x (40.88 + 40) ms
                      Timing{0x1230, 1, 368ms},      // 327.06 + 40 ms
                      Timing{0x1330, 1, 2657ms},     // 2616.5 + 40 ms
                      Timing{0x1F30, 1, 2657ms},     // the option's high bits do not count
                      Timing{0x1032, 8, 11ms},       // time record: 5.11 + 5 ms
                      Timing{0x1332, 8, 2622ms}));   // 2616.5 + 5 ms

TEST_F(Captures, DataReadyGoesAtTheStartAndComesWithTheRecord) {
  Capture();
  StartStop();
  EXPECT_FALSE(DataReady());
  clock.Advance(359ms);
  EXPECT_FALSE(DataReady());
  clock.Advance(2ms);
  EXPECT_TRUE(DataReady());
  EXPECT_TRUE(DataReady()) << "reading STATUS must not clear it";
}

TEST_F(Captures, OldRecordStaysReadableUntilTheNewOneIsDone) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 5.0));
  Capture();
  const auto old = Spectrum(0);
  ASSERT_GT(old[10], 0);
  sensor.SetScenario(SingleTone(BinHz(40, 0), 5.0));
  StartStop();
  clock.Advance(300ms);
  EXPECT_EQ(Spectrum(0), old);
  clock.Advance(100ms);
  EXPECT_EQ(Spectrum(0)[10], 0);
  EXPECT_EQ(Spectrum(0)[40], old[10]);
}

TEST_F(Captures, WhatChangesAfterTheEndOfACaptureOrCommandDoesNotCount) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 5.0));
  StartStop();
  clock.Advance(1s);
  sensor.SetScenario(SingleTone(BinHz(40, 0), 5.0));
  EXPECT_GT(Spectrum(0)[10], 0);
  EXPECT_EQ(Spectrum(0)[40], 0);

  StartStop();
  clock.Advance(1s);
  sensor.SetSupply(3.0);
  EXPECT_EQ(Status(), 1 << 7);

  Give(0x0004);  // self-test
  clock.Advance(1s);
  sensor.SetFaults({.selfTest = true});
  EXPECT_EQ(Status(), 1 << 7);
}

TEST_F(Captures, StopRequestEndsTheCaptureAndRaisesRecordingEscape) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 5.0));
  Capture();
  const auto old = Spectrum(0);
  sensor.SetScenario(SingleTone(BinHz(40, 0), 5.0));
  StartStop();
  clock.Advance(100ms);
  StopRequest();
  EXPECT_EQ(Status(), 1 << 4);
  clock.Advance(10s);
  EXPECT_EQ(Status(), 1 << 4) << "no data ready after a stop";
  EXPECT_EQ(Spectrum(0), old);
  EXPECT_EQ(Read(reg::kRecCnt), 1);
}

TEST_F(Captures, StopRequestToAnIdleSensorDoesNothing) {
  StopRequest();
  EXPECT_EQ(Status(), 0);
  Capture();
  StopRequest();
  EXPECT_EQ(Status(), 1 << 7);
}

TEST_F(Captures, OnlyTheRightKeyStops) {
  StartStop();
  sensor.Exchange(0xE8E7);
  EXPECT_TRUE(sensor.IsCapturing());
  sensor.Exchange(0xE9E8);
  EXPECT_TRUE(sensor.IsCapturing());
}

TEST_F(Captures, SecondStartCommandStopsWithoutEscape) {
  StartStop();
  clock.Advance(100ms);
  StartStop();
  EXPECT_FALSE(sensor.IsCapturing());
  clock.Advance(10s);
  EXPECT_EQ(Status(), 0);
}

TEST_F(Captures, OtherCommandsAreIgnoredMeanwhile) {
  Write(reg::kStatus, 0x0008);
  StartStop();
  Give(0x0010);
  EXPECT_EQ(Status(), 0x0008);
  EXPECT_TRUE(sensor.IsCapturing());
}

TEST_F(Captures, SettingsCountAsTheyWereAtTheStart) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 5.0));
  StartStop();
  Write(reg::kRecCtrl, RecCtrl(2, 0, 3, 2));
  Write(reg::kFftAvg, 99);
  Write(reg::kXNull, 1000);
  clock.Advance(361ms);
  ASSERT_TRUE(DataReady());
  EXPECT_EQ(Read(reg::kRecInfo), 0x1C08);  // option 0, Hanning, 70 g, 8 averages
  EXPECT_EQ(Spectrum(0)[10], std::lround(5.0 / kMagnitudeLsbG[3]));
  EXPECT_EQ(Spectrum(0)[0], 0);
}

TEST_F(Captures, RecordInformationTellsTheSettings) {
  Write(reg::kRecCtrl, RecCtrl(0, 1, 2, 2));
  Write(reg::kFftAvg, 3);
  Capture();
  EXPECT_EQ(Read(reg::kRecInfo), 2 << 14 | 2 << 12 | 1 << 10 | 3);
}

TEST_F(Captures, RecordsAreCounted) {
  EXPECT_EQ(Read(reg::kRecCnt), 0);
  Capture();
  Capture();
  EXPECT_EQ(Read(reg::kRecCnt), 2);
}

TEST_F(Captures, TimeStampTellsSecondsSincePowerUp) {
  clock.Advance(70000s);
  Capture();
  EXPECT_EQ(Read(reg::kTimeLow), 70000 - 65536);
  EXPECT_EQ(Read(reg::kTimeHigh), 1);
}

TEST_F(Captures, SupplyIsMeasuredAtEachCaptureAndJudged) {
  EXPECT_NEAR(Read(reg::kSupply) * 0.001220703, 3.3, 0.0007);
  sensor.SetSupply(3.149);
  EXPECT_NEAR(Read(reg::kSupply) * 0.001220703, 3.3, 0.0007) << "not before the capture";
  Capture();
  EXPECT_NEAR(Read(reg::kSupply) * 0.001220703, 3.149, 0.0007);
  EXPECT_EQ(Status(), 0x81);

  sensor.SetSupply(3.626);
  Give(0x0010);
  Capture();
  EXPECT_EQ(Status(), 0x82);
}

TEST_F(Captures, TemperatureRisesALittle) {
  const auto degrees = [&] { return Read(reg::kTemp) * -0.47 + 625; };
  EXPECT_NEAR(degrees(), 25.0, 0.25);
  clock.Advance(1h);
  Capture();
  EXPECT_NEAR(degrees(), 28.0, 0.25);
}

TEST_F(Captures, PeakIsTheLargestMagnitudeApartFromBinZero) {
  Scenario scenario = SingleTone(BinHz(60, 0), 2.0);
  scenario.axes[1].tones = {{BinHz(100, 0), 3.0}, {BinHz(20, 0), 1.0}};
  scenario.axes[2].offsetG = 10.0;
  sensor.SetScenario(scenario);
  Write(reg::kRecCtrl, RecCtrl(0, 3, 0, 0));
  Capture();
  const unsigned bins[] = {60, 100, 60};
  const double peaks[] = {2.0, 3.0, 2.0};
  for (unsigned axis = 0; axis < 3; ++axis) {
    EXPECT_EQ(Read(static_cast<std::uint8_t>(reg::kXFreq + 2 * axis)), bins[axis]);
    EXPECT_EQ(Read(static_cast<std::uint8_t>(reg::kXPeak + 2 * axis)),
              std::lround(peaks[axis] / kMagnitudeLsbG[3]));
  }
}

TEST_F(Captures, PointerOutsideTheRecordReadsZero) {
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.axes[0].offsetG = 1.0;
  scenario.axes[0].noiseDensityG = 0.01;
  sensor.SetScenario(scenario);
  Capture();
  const auto read = [&](std::uint16_t pointer) {
    Write(reg::kPointer, pointer);
    return Read(reg::kXBuf);
  };
  EXPECT_GT(read(255), 0);
  EXPECT_EQ(read(256), 0);
  EXPECT_EQ(read(0xFFFF), 0);

  Write(reg::kRecCtrl, RecCtrl(2, 3, 0, 0));
  Capture();
  EXPECT_GT(read(511), 0);
  EXPECT_EQ(read(512), 0);
}

}  // namespace
}  // namespace kestrel
