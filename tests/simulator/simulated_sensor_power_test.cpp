// A sensor that loses its power and gets it back.
// SPDX-License-Identifier: MIT
#include "simulator/alarm_fixture.h"

namespace kestrel {
namespace {

using namespace command;

class Power : public AlarmTest {
 protected:
  void CutAndRestore() {
    sensor.CutPower();
    clock.Advance(10s);
    sensor.RestorePower();
  }
};

TEST_F(Power, SensorWithoutItAnswersZeroAndTakesNothing) {
  sensor.Exchange(0x5600);
  sensor.CutPower();
  EXPECT_EQ(sensor.PendingAnswer(), 0);
  EXPECT_EQ(sensor.Exchange(0x5600), 0);
  EXPECT_EQ(Read(0x56), 0);
  Write(reg::kRecPrd, 7);
  StartStop();
  sensor.FrameError();
  sensor.RestorePower();
  EXPECT_EQ(Read(0x56), 31407);
  EXPECT_EQ(Read(reg::kRecPrd), 0);
  EXPECT_EQ(Status(), 0);
  EXPECT_FALSE(sensor.IsCapturing());
}

TEST_F(Power, SensorStartsAgainFromWhatWasSaved) {
  Write(reg::kRecPrd, 7);
  Command(kFlashUpdate);
  Write(reg::kRecPrd, 9);
  Write(reg::kStatus, 1 << 3);
  SetMode(0, 2);
  CaptureTone(kFaultG);
  const auto endurance = Read(reg::kEndurance);
  CutAndRestore();
  EXPECT_EQ(Read(reg::kRecPrd), 7);
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Read(reg::kRecCnt), 0);
  EXPECT_EQ(Spectrum(0), std::vector<std::uint16_t>(256, 0));
  EXPECT_EQ(Read(reg::kRecFlshCnt), 1);
  EXPECT_EQ(Read(reg::kEndurance), endurance);
  Command(kRetrieveRecord);
  EXPECT_NEAR(Spectrum(0)[24] * kMagnitudeLsbG[0], kFaultG, 0.001);
  Write(reg::kAlmPntr, 1);
  Command(kRetrieveBand);
  EXPECT_EQ(Read(reg::kFLow), 20);
}

TEST_F(Power, TimeAndTemperatureRunFromTheNewStart) {
  clock.Advance(1h);
  CutAndRestore();
  EXPECT_NEAR(Read(reg::kTemp) * -0.47 + 625, 25.0, 0.25);
  Capture(5s);
  EXPECT_EQ(Read(reg::kTimeLow), 0);
}

TEST_F(Power, WhatWasAtWorkIsLost) {
  SetMode(1);
  StartStop();
  CutAndRestore();
  EXPECT_FALSE(sensor.IsInSeries());
  EXPECT_EQ(Read(reg::kRecCnt), 0);

  Write(reg::kRecPrd, 7);
  Give(kFlashUpdate);
  CutAndRestore();
  EXPECT_EQ(Read(reg::kRecPrd), 0);
  EXPECT_FALSE(sensor.IsBusy());
}

TEST_F(Power, WhatWasDoneBeforeItWentIsDone) {
  Write(reg::kRecPrd, 7);
  Give(kFlashUpdate);
  clock.Advance(1s);
  CutAndRestore();
  EXPECT_EQ(Read(reg::kRecPrd), 7);
}

TEST_F(Power, RestoredTwiceIsRestoredOnce) {
  Write(reg::kRecPrd, 7);
  sensor.RestorePower();
  EXPECT_EQ(Read(reg::kRecPrd), 7);
}

TEST_F(Power, AlarmsAndDelayStartAnew) {
  Write(reg::kAlmCtrl, kXyz | kDelayOf1 | kLatch);
  Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1));
  Command(kFlashUpdate);
  CaptureTone(kFaultG);
  CutAndRestore();
  EXPECT_EQ(Stat(0), 0);
  Capture();
  EXPECT_EQ(Status(), kReady);
}

TEST_F(Power, WithoutItThePinsShowWhatIsDrivenFromOutsideAndTriggerNothing) {
  Write(reg::kDioCtrl, 0x0003 | 2 << 2 | 3 << 4);
  Command(kFlashUpdate);
  sensor.CutPower();
  EXPECT_FALSE(sensor.PinLevel(1));
  sensor.DrivePin(1, true);
  sensor.DrivePin(2, true);
  EXPECT_TRUE(sensor.PinLevel(1));
  EXPECT_TRUE(sensor.PinLevel(2));
  EXPECT_FALSE(sensor.IsCapturing());
  sensor.RestorePower();
  EXPECT_FALSE(sensor.IsCapturing());
  EXPECT_FALSE(sensor.PinLevel(2)) << "not busy";
}

TEST_F(Power, SensorDeliveredAnewRemembersNothing) {
  Write(reg::kRecPrd, 7);
  Command(kFlashUpdate);
  SetMode(0, 2);
  Capture();
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.preset.settings = {{reg::kAlmCtrl, 0x0087}, {reg::kFftAvg, 3}};
  scenario.preset.bands = {{0x0203, {1, 2, 3, 4, 5, 6, 7, 8}}};
  sensor.Deliver(scenario);
  EXPECT_EQ(Read(reg::kRecPrd), 0);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 0);
  EXPECT_EQ(Read(reg::kEndurance), 0);
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Read(reg::kAlmCtrl), 0x0087);
  EXPECT_EQ(Read(reg::kFftAvg), 3);
  Write(reg::kAlmPntr, 1);
  Command(kRetrieveBand);
  EXPECT_EQ(Read(reg::kFLow), 0);
  Write(reg::kAlmPntr, 0x0203);
  Command(kRetrieveBand);
  for (unsigned i = 0; i < 8; ++i) {
    EXPECT_EQ(Read(static_cast<std::uint8_t>(reg::kFLow + 2 * i)), i + 1);
  }
}

TEST_F(Power, SensorDeliveredWithoutItStartsWhenItComes) {
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.preset.settings = {{reg::kFftAvg, 3}};
  sensor.CutPower();
  sensor.Deliver(scenario);
  EXPECT_EQ(Read(reg::kFftAvg), 0);
  sensor.RestorePower();
  EXPECT_EQ(Read(reg::kFftAvg), 3);
}

TEST_F(Power, AnotherScenarioLeavesTheFlashAsItIs) {
  Write(reg::kFftAvg, 20);
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.preset.settings = {{reg::kFftAvg, 3}};
  sensor.SetScenario(scenario);
  EXPECT_EQ(Read(reg::kFftAvg), 20);
  Command(kSoftwareReset);
  EXPECT_EQ(Read(reg::kFftAvg), 8);
}

}  // namespace
}  // namespace kestrel
