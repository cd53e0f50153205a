// What each bit of COMMAND does, and for how long.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <ostream>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using namespace command;
using Commands = SensorTest;

double MeanG(Bench& bench, unsigned axis) {
  const auto samples = bench.Samples(axis);
  return std::accumulate(samples.begin(), samples.end(), 0.0) / 512 * kSampleLsbG[0];
}

TEST_F(Commands, AutonullTakesTheOffsetOutOfLaterSamples) {
  const double offsets[] = {0.042, -0.027, 0.058};
  Scenario scenario = SingleTone(BinHz(10, 0), 0.2);
  for (unsigned axis = 0; axis < 3; ++axis) scenario.axes[axis].offsetG = offsets[axis];
  sensor.SetScenario(scenario);
  Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 0));

  Capture();
  for (unsigned axis = 0; axis < 3; ++axis) EXPECT_NEAR(MeanG(*this, axis), offsets[axis], 1e-4);

  Command(kAutonull);
  Capture();
  for (unsigned axis = 0; axis < 3; ++axis) {
    const auto null = static_cast<std::int16_t>(Read(static_cast<std::uint8_t>(0x02 + 2 * axis)));
    EXPECT_EQ(null, std::lround(-offsets[axis] / 0.004768372)) << axis;
    EXPECT_NEAR(MeanG(*this, axis), 0.0, 0.004768372 / 2 + 1e-4) << axis;
  }
}

TEST_F(Commands, AutonullMeasuresTheInputSoASecondOneChangesNothing) {
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.axes[0].offsetG = 0.05;
  sensor.SetScenario(scenario);
  Command(kAutonull);
  const auto first = Read(reg::kXNull);
  Command(kAutonull);
  EXPECT_EQ(first, 0xFFF6);  // -10
  EXPECT_EQ(Read(reg::kXNull), first);
}

TEST_F(Commands, AutonullOfAShakingMachineStaysNearTheOffset) {
  const Scenario machine = RunningMachine();
  sensor.SetScenario(machine);
  Command(kAutonull);
  for (unsigned axis = 0; axis < 3; ++axis) {
    const auto null = static_cast<std::int16_t>(Read(static_cast<std::uint8_t>(0x02 + 2 * axis)));
    EXPECT_NEAR(null * 0.004768372, -machine.axes[axis].offsetG, 0.004) << axis;
  }
}

// A plain mean over the 0.16 s that are measured would be off by up to 50 mg.
TEST_F(Commands, AutonullIsNotPulledBySlowVibration) {
  for (const double phase : {0.0, 0.8, 1.6, 2.4}) {
    Scenario scenario = SingleTone(0.0, 0.0);
    scenario.axes[0].tones = {{20.0, 0.5, phase}};
    sensor.SetScenario(scenario);
    Command(kAutonull);
    const auto null = static_cast<std::int16_t>(Read(reg::kXNull));
    EXPECT_NEAR(null * 0.004768372, 0.0, 0.008) << phase;
  }
}

TEST_F(Commands, NullRegisterIsAddedToTheSamples) {
  Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 0));
  Write(reg::kXNull, 100);
  Capture();
  for (const std::int16_t sample : Samples(0)) {
    ASSERT_EQ(sample, std::lround(100 * 0.004768372 / kSampleLsbG[0]));
  }
}

TEST_F(Commands, PowerDownLastsUntilTheNextFrame) {
  Command(kPowerDown);
  EXPECT_TRUE(sensor.IsAsleep());
  EXPECT_EQ(Read(reg::kRecCtrl), 0x1030);
  EXPECT_FALSE(sensor.IsAsleep());
}

TEST_F(Commands, SelfTestFindsAFaultOnlyWhereThereIsOne) {
  Command(kSelfTest);
  EXPECT_EQ(Status(), 0);
  sensor.SetFaults({.selfTest = true});
  Command(kSelfTest);
  EXPECT_EQ(Status(), 1 << 5);
}

TEST_F(Commands, FlashTestFindsAFaultOnlyWhereThereIsOne) {
  Command(kFlashTest);
  EXPECT_EQ(Status(), 0);
  sensor.SetFaults({.flashMemory = true});
  Command(kFlashTest);
  EXPECT_EQ(Status(), 1 << 6);
}

TEST_F(Commands, SettingsSurviveASoftwareResetOnlyAfterAFlashUpdate) {
  Write(reg::kFftAvg, 20);
  Command(kSoftwareReset);
  EXPECT_EQ(Read(reg::kFftAvg), 8);

  Write(reg::kFftAvg, 20);
  Command(kFlashUpdate);
  Write(reg::kFftAvg, 30);
  Command(kSoftwareReset);
  EXPECT_EQ(Read(reg::kFftAvg), 20);
}

TEST_F(Commands, FailingFlashUpdateIsReportedAndSavesNothing) {
  Write(reg::kFftAvg, 20);
  sensor.SetFaults({.flashUpdate = true});
  Command(kFlashUpdate);
  EXPECT_EQ(Status(), 1 << 2);
  EXPECT_EQ(Read(0x00), 0);
  Command(kSoftwareReset);
  EXPECT_EQ(Read(reg::kFftAvg), 8);
}

TEST_F(Commands, FlashWritesAreCounted) {
  Command(kFlashUpdate);
  Command(kFlashUpdate);
  EXPECT_EQ(Read(0x00), 2);
  Command(kFactoryReset);
  EXPECT_EQ(Read(0x00), 3);
}

TEST_F(Commands, FactoryResetBringsBackTheFactorySettingsForGood) {
  Write(reg::kFftAvg, 20);
  Write(reg::kRecCtrl, 0x2102);
  Write(reg::kXNull, 55);
  Command(kFlashUpdate);
  Command(kFactoryReset);
  for (int reset = 0; reset < 2; ++reset) {
    EXPECT_EQ(Read(reg::kFftAvg), 8);
    EXPECT_EQ(Read(reg::kRecCtrl), 0x1030);
    EXPECT_EQ(Read(reg::kXNull), 0);
    Command(kSoftwareReset);
  }
}

TEST_F(Commands, SoftwareResetForgetsTheRecordAndItsCount) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 1.0));
  Capture();
  ASSERT_NE(Spectrum(0)[10], 0);
  Command(kSoftwareReset);
  EXPECT_EQ(Read(reg::kRecCnt), 0);
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Spectrum(0)[10], 0);
}

TEST_F(Commands, ClearStatusClearsEveryFlagAtOnce) {
  Write(reg::kStatus, 0x7FFF);
  Give(kClearStatus);
  EXPECT_EQ(Status(), 0);
}

TEST_F(Commands, BufferPointerGoesBackToZero) {
  Write(reg::kPointer, 77);
  Give(kResetPointer);
  EXPECT_EQ(Read(reg::kPointer), 0);
}

TEST_F(Commands, BusySensorIgnoresFurtherCommands) {
  Write(reg::kPointer, 77);
  Give(kAutonull);
  ASSERT_TRUE(sensor.IsBusy());
  Give(kResetPointer);
  StartStop();
  EXPECT_EQ(Read(reg::kPointer), 77);
  clock.Advance(10s);
  EXPECT_FALSE(DataReady());
  EXPECT_FALSE(sensor.IsBusy());
  Give(kResetPointer);
  EXPECT_EQ(Read(reg::kPointer), 0);
}

TEST_F(Commands, EffectShowsWhenTheBusyTimeIsOver) {
  Write(reg::kFftAvg, 20);
  Give(kSoftwareReset);
  clock.Advance(44ms);
  EXPECT_EQ(Read(reg::kFftAvg), 20);
  clock.Advance(1ms);
  EXPECT_EQ(Read(reg::kFftAvg), 8);
}

struct Work {
  std::uint16_t word;
  std::chrono::milliseconds time;
};

void PrintTo(const Work& work, std::ostream* out) {
  *out << "COMMAND " << work.word;
}

class Busy : public ::testing::TestWithParam<Work> {};

TEST_P(Busy, SensorIsForTheTimeThatTheCommandTakes) {
  Bench bench;
  bench.Give(GetParam().word);
  if (GetParam().time > 0ms) {
    bench.clock.Advance(GetParam().time - 1ns);
    EXPECT_TRUE(bench.sensor.IsBusy());
    bench.clock.Advance(1ns);
  }
  EXPECT_FALSE(bench.sensor.IsBusy());
}

INSTANTIATE_TEST_SUITE_P(Rows, Busy,
                         ::testing::Values(Work{kAutonull, 170ms}, Work{kPowerDown, 0ms},
                                           Work{kSelfTest, 40ms}, Work{kFactoryReset, 130ms},
                                           Work{kClearStatus, 0ms}, Work{kFlashTest, 140ms},
                                           Work{kFlashUpdate, 40ms}, Work{kSoftwareReset, 45ms},
                                           Work{kClearRecords, 40ms}, Work{kClearBands, 20ms},
                                           Work{kResetPointer, 0ms}, Work{kSaveBand, 0ms},
                                           Work{kRetrieveRecord, 2ms}, Work{kRetrieveBand, 1ms},
                                           Work{kClearNulls, 0ms}));

TEST_F(Commands, NullValuesAreClearedOnAllAxes) {
  constexpr std::uint8_t kNulls[] = {0x02, 0x04, 0x06};
  for (const std::uint8_t address : kNulls) Write(address, 0xFF00);
  Write(reg::kFftAvg, 20);
  Give(kClearNulls);
  for (const std::uint8_t address : kNulls) EXPECT_EQ(Read(address), 0) << +address;
  EXPECT_EQ(Read(reg::kFftAvg), 20);
}

TEST_F(Commands, FailingFactoryResetIsReportedAndChangesNothing) {
  Write(reg::kFftAvg, 20);
  sensor.SetFaults({.flashUpdate = true});
  Command(kFactoryReset);
  EXPECT_EQ(Status(), 1 << 2);
  EXPECT_EQ(Read(reg::kFftAvg), 20);
  EXPECT_EQ(Read(reg::kEndurance), 0);
}

TEST_F(Commands, FlashWritesAreCountedModulo65536) {
  Write(reg::kAlmPntr, 1);
  for (unsigned i = 0; i < 65535; ++i) Give(kSaveBand);
  EXPECT_EQ(Read(reg::kEndurance), 65535);
  Give(kSaveBand);
  EXPECT_EQ(Read(reg::kEndurance), 0);
}

TEST_F(Commands, OfSeveralBitsTheLowestCounts) {
  Write(reg::kPointer, 77);
  WriteByte(reg::kCommand + 1, 0x0C);  // pointer reset and record start
  EXPECT_EQ(Read(reg::kPointer), 0);
  EXPECT_FALSE(sensor.IsCapturing());
}

}  // namespace
}  // namespace kestrel
