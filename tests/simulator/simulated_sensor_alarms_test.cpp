// Tones above thresholds alarm on their axis and band only.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <tuple>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using namespace command;

constexpr std::uint16_t kReady = 1 << 7;
constexpr std::uint16_t kWarning = 3000;
constexpr std::uint16_t kFault = 6000;

// Ten bins, with thresholds of its own for every axis, all between the same two.
Band BandFrom(unsigned first) {
  const auto low = static_cast<std::uint16_t>(first);
  const auto above = [](unsigned code, unsigned more) {
    return static_cast<std::uint16_t>(code + more);
  };
  return {low,    above(low, 9),     kWarning,         above(kWarning, 10), above(kWarning, 20),
          kFault, above(kFault, 10), above(kFault, 20)};
}
unsigned FirstBin(unsigned number) {
  return 20 + 35 * (number - 1);
}
// What the axes feel when one of them has a tone of this magnitude code in the 1 g range.
Scenario ToneOn(unsigned axis, double bin, unsigned option, double code) {
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.axes[axis].tones = {{BinHz(bin, option), code * kMagnitudeLsbG[0]}};
  return scenario;
}

// Axis, band, option.
using Place = std::tuple<unsigned, unsigned, unsigned>;

class Alarms : public ::testing::TestWithParam<Place>, public Bench {
 protected:
  void SetUp() override {
    for (unsigned option = 0; option < 4; ++option) {
      for (unsigned number = 1; number <= 6; ++number) {
        SaveBand(static_cast<std::uint16_t>(option << 8U | number), BandFrom(FirstBin(number)));
      }
    }
    Write(reg::kRecCtrl, RecCtrl(0, 0, std::get<2>(GetParam()), 1));
    Write(reg::kFftAvg, 1);
    Write(reg::kAlmCtrl, 0x0007);
  }
  void CaptureTone(double bin, double code) {
    const auto [axis, number, option] = GetParam();
    sensor.SetScenario(ToneOn(axis, bin, option, code));
    Give(kClearStatus);
    Capture();
  }
  // The tested axis shows these bits and this band, the others nothing.
  void ExpectStat(unsigned stat) {
    for (unsigned axis = 0; axis < 3; ++axis) {
      EXPECT_EQ(Stat(axis), axis == std::get<0>(GetParam()) ? stat : 0U) << axis;
    }
  }
};

TEST_P(Alarms, ToneBetweenTheThresholdsWarnsOnExactlyItsAxisAndBandAndAboveBothAFaultToo) {
  const auto [axis, number, option] = GetParam();
  const double middle = FirstBin(number) + 4;
  CaptureTone(middle, kWarning - 100);
  ExpectStat(0);
  EXPECT_EQ(Status(), kReady);

  CaptureTone(middle, kWarning + 100);
  ExpectStat(1U << (2 * number + 2) | number);
  EXPECT_EQ(Status(), kReady | 1 << (8 + axis));

  CaptureTone(middle, kFault - 100);
  ExpectStat(1U << (2 * number + 2) | number);

  CaptureTone(middle, kFault + 100);
  ExpectStat(3U << (2 * number + 2) | number);
  EXPECT_EQ(Status(), kReady | 1 << (8 + axis) | 1 << (11 + axis));

  CaptureTone(FirstBin(number) + 20, 3 * kFault);
  ExpectStat(0);
  EXPECT_EQ(Status(), kReady);
}

TEST_P(Alarms, AxisThatIsOffIsNotCompared) {
  const auto [axis, number, option] = GetParam();
  Write(reg::kAlmCtrl, static_cast<std::uint16_t>(7U & ~(1U << axis)));
  CaptureTone(FirstBin(number) + 4, kFault + 100);
  ExpectStat(0);
  EXPECT_EQ(Status(), kReady);
}

INSTANTIATE_TEST_SUITE_P(Everywhere, Alarms,
                         ::testing::Combine(::testing::Range(0U, 3U), ::testing::Range(1U, 7U),
                                            ::testing::Range(0U, 4U)));

TEST_F(SensorTest, BandsOfOtherOptionsDoNotMatter) {
  sensor.SetScenario(ToneOn(0, 24, 2, kFault + 100));
  Write(reg::kAlmCtrl, 0x0007);
  for (const unsigned option : {0U, 1U, 3U}) {
    SaveBand(static_cast<std::uint16_t>(option << 8U | 1U), BandFrom(20));
  }
  Write(reg::kRecCtrl, RecCtrl(0, 0, 2, 1));
  Write(reg::kFftAvg, 1);
  Capture();
  EXPECT_EQ(Stat(0), 0);
  SaveBand(0x0201, BandFrom(20));
  Capture();
  EXPECT_EQ(Stat(0), 3 << 4 | 1);
}

TEST_F(SensorTest, ThresholdsAreCodesOfTheRangeInUse) {
  SaveBand(1, BandFrom(20));
  Write(reg::kAlmCtrl, 0x0007);
  const unsigned expected[] = {3 << 4 | 1, 1 << 4 | 1, 0, 0};
  for (unsigned range = 0; range < 4; ++range) {
    sensor.SetScenario(ToneOn(0, 24, 0, 20000));  // 0.306 g
    Write(reg::kRecCtrl, RecCtrl(0, range, 0, 1));
    Capture();
    EXPECT_EQ(Stat(0), expected[range]) << range;
  }
}

TEST_F(SensorTest, AlarmsAreOffInTheFactorySettings) {
  sensor.SetScenario(ToneOn(0, 24, 0, 0xFFFF));
  SaveBand(1, {0, 255, 1, 1, 1, 1, 1, 1});
  Capture();
  EXPECT_EQ(Stat(0), 0);
  EXPECT_EQ(Status(), kReady);
}

TEST_F(SensorTest, TimeRecordsAreNotComparedAndLeaveTheAlarmRegisters) {
  SaveBand(1, BandFrom(20));
  Write(reg::kAlmCtrl, 0x0007);
  sensor.SetScenario(ToneOn(0, 24, 0, kFault + 100));
  Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 1));
  Capture();
  EXPECT_EQ(Stat(0), 0);
  EXPECT_EQ(Status(), kReady);

  Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1));
  Capture();
  const auto peak = Read(reg::kXPeak);
  sensor.SetScenario(SingleTone(0.0, 0.0));
  Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 1));
  Capture();
  EXPECT_EQ(Stat(0), 3 << 4 | 1);
  EXPECT_EQ(Read(reg::kXPeak), peak);
}

TEST_F(SensorTest, RecordsOfTimerModeAreComparedOneByOne) {
  SaveBand(1, BandFrom(20));
  Write(reg::kAlmCtrl, 0x0007);
  Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1));
  Write(reg::kFftAvg, 1);
  Write(reg::kRecPrd, 1);
  StartStop();
  clock.Advance(500ms);
  EXPECT_EQ(Status(), kReady);
  sensor.SetScenario(ToneOn(1, 24, 0, kWarning + 100));
  clock.Advance(1s);
  EXPECT_EQ(Stat(1), 1 << 4 | 1);
  EXPECT_EQ(Status(), kReady | 1 << 9);
  sensor.SetScenario(SingleTone(0.0, 0.0));
  clock.Advance(1s);
  EXPECT_EQ(Stat(1), 0);
  EXPECT_EQ(Status(), kReady);
}

}  // namespace
}  // namespace kestrel
