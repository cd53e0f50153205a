// The alarm of supply and temperature.
// SPDX-License-Identifier: MIT
#include "simulator/alarm_fixture.h"

namespace kestrel {
namespace {

using namespace command;

class SystemAlarm : public AlarmTest {
 protected:
  void SetUp() override { SetMode(2); }

  static std::uint16_t SupplyCode(double volts) {
    return static_cast<std::uint16_t>(volts / 0.001220703 + 0.5);
  }
  static std::uint16_t TemperatureCode(double degrees) {
    return static_cast<std::uint16_t>((625 - degrees) / 0.47 + 0.5);
  }
  bool AlarmAt(double volts, double degrees) {
    Scenario scenario = SingleTone(0.0, 0.0);
    scenario.supplyV = volts;
    scenario.temperatureC = degrees;
    scenario.warmingC = 0.0;
    sensor.SetScenario(scenario);
    Capture();
    return (Status() & kSystem) != 0;
  }
};

TEST_F(SystemAlarm, OfTheSupplyIsRaisedAboveOrBelowTheLimit) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn | kGreater);
  EXPECT_TRUE(AlarmAt(3.31, 25));
  EXPECT_FALSE(AlarmAt(3.3, 25));
  EXPECT_FALSE(AlarmAt(3.29, 25));
  Write(reg::kAlmCtrl, kSystemOn);
  EXPECT_FALSE(AlarmAt(3.31, 25));
  EXPECT_FALSE(AlarmAt(3.3, 25));
  EXPECT_TRUE(AlarmAt(3.29, 25));
}

// The code of a temperature falls as the temperature rises.
TEST_F(SystemAlarm, OfTheTemperatureIsRaisedWhenHotterOrColderThanTheLimit) {
  Write(reg::kAlmSMag, TemperatureCode(40));
  Write(reg::kAlmCtrl, kSystemOn | kOfTemperature | kGreater);
  EXPECT_TRUE(AlarmAt(3.3, 41));
  EXPECT_FALSE(AlarmAt(3.3, 40));
  EXPECT_FALSE(AlarmAt(3.3, 39));
  Write(reg::kAlmCtrl, kSystemOn | kOfTemperature);
  EXPECT_FALSE(AlarmAt(3.3, 41));
  EXPECT_FALSE(AlarmAt(3.3, 40));
  EXPECT_TRUE(AlarmAt(3.3, 39));
}

TEST_F(SystemAlarm, OneCodeDecides) {
  const auto code = SupplyCode(3.3);
  Write(reg::kAlmCtrl, kSystemOn | kGreater);
  for (const int more : {-1, 0, 1}) {
    Write(reg::kAlmSMag, static_cast<std::uint16_t>(code + more));
    EXPECT_EQ(AlarmAt(3.3, 25), more < 0) << more;
  }
  Write(reg::kAlmCtrl, kSystemOn | kOfTemperature | kGreater);
  for (const int more : {-1, 0, 1}) {
    Write(reg::kAlmSMag, static_cast<std::uint16_t>(TemperatureCode(40) + more));
    EXPECT_EQ(AlarmAt(3.3, 40), more > 0) << more;
  }
}

TEST_F(SystemAlarm, WatchesOneOfTheTwoOnly) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn);
  EXPECT_FALSE(AlarmAt(3.4, -40));
  Write(reg::kAlmSMag, TemperatureCode(40));
  Write(reg::kAlmCtrl, kSystemOn | kOfTemperature | kGreater);
  EXPECT_FALSE(AlarmAt(3.6, 30));
}

TEST_F(SystemAlarm, LimitIsTwosComplementLikeTheMeasurement) {
  Write(reg::kAlmSMag, 0xFFFF);
  Write(reg::kAlmCtrl, kSystemOn | kGreater);
  EXPECT_TRUE(AlarmAt(3.3, 25)) << "more than -1.2 mV";
}

TEST_F(SystemAlarm, IsOffUnlessSwitchedOn) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kXyz | kGreater);
  EXPECT_FALSE(AlarmAt(3.4, 25));
}

TEST_F(SystemAlarm, IsJudgedAtEveryRecordOfAnyMode) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn | kGreater);
  for (const unsigned mode : {0U, 1U, 2U}) {
    Write(reg::kFftAvg, 1);
    SetMode(mode);
    EXPECT_TRUE(AlarmAt(3.4, 25)) << mode;
    StopRequest();
    EXPECT_FALSE(AlarmAt(3.2, 25)) << mode;
    StopRequest();
  }
}

TEST_F(SystemAlarm, FollowsTheMeasurementSoRegisterAndFlagBelongTogether) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn);
  ASSERT_FALSE(AlarmAt(3.4, 25));
  const auto measured = Read(reg::kSupply);
  sensor.SetSupply(3.2);
  EXPECT_EQ(Status(), kReady) << "not before the next capture";
  EXPECT_EQ(Read(reg::kSupply), measured);
  Capture();
  EXPECT_EQ(Status(), kReady | kSystem);
}

TEST_F(SystemAlarm, IsHeldByLatchingAndNotByTheResponseDelay) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn | kLatch | 15 * kDelayOf1);
  EXPECT_TRUE(AlarmAt(3.2, 25));
  EXPECT_TRUE(AlarmAt(3.4, 25));
  Give(kClearStatus);
  EXPECT_FALSE(AlarmAt(3.4, 25));
}

TEST_F(SystemAlarm, SwitchedOffIsTakenBackAtOnce) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn);
  ASSERT_TRUE(AlarmAt(3.2, 25));
  Write(reg::kAlmCtrl, 0);
  EXPECT_EQ(Status(), kReady);
  Write(reg::kAlmCtrl, kSystemOn);
  EXPECT_EQ(Status(), kReady) << "on again from the next measurement on";
}

TEST_F(SystemAlarm, IsJudgedByTheMeasurementOfARestart) {
  Write(reg::kAlmSMag, SupplyCode(3.3));
  Write(reg::kAlmCtrl, kSystemOn | kLatch);
  Command(kFlashUpdate);
  ASSERT_TRUE(AlarmAt(3.2, 25));
  Command(kSoftwareReset);
  EXPECT_EQ(Status(), kSystem);
  sensor.SetSupply(3.4);
  Command(kSoftwareReset);
  EXPECT_EQ(Status(), 0);
}

}  // namespace
}  // namespace kestrel
