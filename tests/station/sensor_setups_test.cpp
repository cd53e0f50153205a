// The whole road of a set-up: saved, changed, compared, restored, with the sensor lost on the way.
// SPDX-License-Identifier: MIT
#include "station/sensor_setups.h"

#include "regmap/command_words.h"
#include "setup/difference.h"
#include "station/station_bench.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using setup::BandName;
using setup::DifferenceOf;
using setup::RestoreReport;

using testing::ElementsAre;
using testing::HasSubstr;
using Why = setup::Stopped::Why;

class SensorSetupRoad : public StationBench {
 protected:
  setup::Setup Read() {
    const auto read = TheStation().Setups().Read("pump", "1.0");
    EXPECT_TRUE(read) << (read ? "" : read.Why().text);
    return read ? *read : setup::Setup{};
  }
  RestoreReport Restore(const setup::Setup& setup, const setup::RestoreChoice& choice = {}) {
    return TheStation().Setups().Restore(setup, choice);
  }
  void Write(const char* name, std::int32_t value) {
    ASSERT_TRUE(TheStation().WriteRegister(name, value));
  }
  std::int32_t Value(const char* name) { return TheStation().ReadRegister(name)->value; }

  // Registers and bands of another configuration than the factory's.
  void ChangeSensor() {
    BandTable table;
    for (int option = 0; option < kSampleRateOptions; ++option) {
      for (const int band : {1, 4, 6}) {
        for (const int field : kBandFields) {
          table(field, band, option) = 10 * band + field + 3 * option;
        }
      }
    }
    ASSERT_TRUE(TheStation().Bands().Write(table));
    Write("X_NULL", 0xFFF0);
    Write("FFT_AVG", 31);
    Write("REC_PRD", 0x020F);
    Write("ALM_S_MAG", 2700);
    Write("ALM_CTRL", 0x0F8F);
    Write("DIO_CTRL", 0x0013);
    Write("GPIO_CTRL", 0x0202);
    Write("REC_CTRL", 0x2124);
  }
  // The road to a sensor that was lost.
  void Reconnect() {
    usb.Mend();
    EndStation();
    Connected();
  }
};

TEST_F(SensorSetupRoad, WhatWasSavedIsRestoredAndEqualAgain) {
  Connected();
  const setup::Setup factory = Read();
  ChangeSensor();
  const setup::Setup changed = Read();
  EXPECT_EQ(DifferenceOf(factory, changed).size(), DifferenceOf(changed, factory).size());
  EXPECT_GT(DifferenceOf(factory, changed).size(), 90U);

  const RestoreReport back = Restore(factory);
  EXPECT_TRUE(back.IsWhole()) << back.Text();
  EXPECT_EQ(DifferenceOf(factory, Read()).size(), 0U);

  const RestoreReport again = Restore(changed);
  EXPECT_TRUE(again.IsWhole()) << again.Text();
  EXPECT_EQ(again.written.size(), 12U + 8U);
  EXPECT_EQ(again.equal.size() + again.written.size(), setup::kRegisters + 24U);
  EXPECT_EQ(DifferenceOf(changed, Read()).size(), 0U);
  EXPECT_EQ(Value("REC_CTRL"), 0x2124);
}

TEST_F(SensorSetupRoad, RandomSetupsGoThereAndBack) {
  Connected();
  for (const unsigned seed : Seeds(3)) {
    std::mt19937 random(seed);
    setup::Setup wanted = Read();
    for (auto& option : wanted.bands) {
      for (auto& band : option) {
        for (auto& word : band) word = static_cast<std::uint16_t>(random() & 0xFFFFU);
      }
    }
    wanted.Band(1, 1).front() = 0xA5C3;  // what tells that nothing was retrieved
    wanted.Band(1, 2).front() = 0x5A3C;
    const RestoreReport report = Restore(wanted);
    EXPECT_TRUE(report.IsWhole()) << report.Text();
    EXPECT_EQ(DifferenceOf(wanted, Read()).size(), 0U);
  }
}

TEST_F(SensorSetupRoad, IdentityAndTimeStandInIt) {
  Connected();
  const setup::Setup setup = Read();
  EXPECT_EQ(setup.name, "pump");
  EXPECT_EQ(setup.program, "1.0");
  EXPECT_EQ(setup.product, 31407);
  EXPECT_EQ(setup.sensor.product, 31407);
  EXPECT_EQ(setup.revision, 2);
  EXPECT_EQ(setup.sensor.interface, "Ezusb-0");
}

TEST_F(SensorSetupRoad, ReadingChangesNothing) {
  Connected();
  ChangeSensor();
  Write("ALM_PNTR", 0x0203);
  Write("ALM_F_LOW", 77);
  const auto before = *TheStation().ReadRegisters();
  ChangeableBands()(0, 1, 0) = 5;
  Read();
  const auto after = *TheStation().ReadRegisters();
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i].name == "SUPPLY_OUT" || before[i].name == "TEMP_OUT") continue;
    EXPECT_EQ(after[i].value, before[i].value) << before[i].name;
  }
  EXPECT_EQ(AlarmBandTable(0, 1, 0), 5) << "the bands that the program works with stay";
}

TEST_F(SensorSetupRoad, BandsThatFollowOneAnotherAreToldTogether) {
  Connected();
  setup::Setup saved = Read();
  for (const int band : {1, 2, 3, 5}) saved.Band(1, band).at(1) = 9;
  EXPECT_THAT(Restore(saved).Text(),
              HasSubstr("Written and read back: option 1, band 1 to band 3; option 1, band 5.\n"));
}

TEST_F(SensorSetupRoad, WhatIsEqualIsNotWritten) {
  Connected();
  ChangeSensor();
  const setup::Setup saved = Read();
  Write("FFT_AVG", 7);
  const std::int32_t writes = Value("ENDURANCE");
  const RestoreReport report = Restore(saved);
  EXPECT_THAT(report.written, ElementsAre("FFT_AVG"));
  EXPECT_EQ(Value("ENDURANCE"), writes) << "the flash was not written";
  EXPECT_EQ(report.Text(),
            "Written and read back: FFT_AVG.\nAll else was equal already.\n"
            "Registers last until the sensor loses power; bands are in its flash.");
  EXPECT_EQ(Restore(saved).Text(), "The sensor held all of it already: nothing was written.");
}

TEST_F(SensorSetupRoad, RegistersLastWhenTheyAreSavedInFlash) {
  Connected();
  const setup::Setup factory = Read();
  ChangeSensor();
  const setup::Setup saved = Read();
  ASSERT_TRUE(Restore(factory).IsWhole());
  const RestoreReport report = Restore(saved, {.saveInFlash = true});
  EXPECT_TRUE(report.isInFlash);
  EXPECT_THAT(report.Text(), HasSubstr("The registers are saved in the sensor's flash."));
  hardware.Adapter().Unplug(0);
  hardware.Adapter().Replug(0);
  Reconnect();
  auto now = Read();
  EXPECT_EQ(DifferenceOf(saved, now).size(), 0U);
}

TEST_F(SensorSetupRoad, AFlashThatIsNotUpdatedIsTold) {
  Connected();
  setup::Setup saved = Read();
  saved.registers.at(Index(setup::Register::FftAvg)) = 9;
  hardware.Sensor().SetFaults({.flashUpdate = true});
  const RestoreReport report = Restore(saved, {.saveInFlash = true});
  EXPECT_FALSE(report.IsWhole());
  EXPECT_THAT(report.Text(), HasSubstr("The sensor reports that its flash was not updated."));
}

TEST_F(SensorSetupRoad, OffsetsOfThisSensorCanStay) {
  Connected();
  setup::Setup saved = Read();
  saved.registers.at(Index(setup::Register::XNull)) = 50;
  saved.registers.at(Index(setup::Register::FftAvg)) = 50;
  EXPECT_THAT(Restore(saved, {.keepNulls = true}).written, ElementsAre("FFT_AVG"));
  EXPECT_EQ(Value("X_NULL"), 0);
}

TEST_F(SensorSetupRoad, WhatDoesNotHoldIsNamed) {
  Connected();
  setup::Setup saved = Read();
  saved.registers.at(Index(setup::Register::RecCtrl)) = 0xD030;  // bits that the sensor lacks
  saved.Band(2, 3).at(1) = 30;
  hardware.Sensor().SetFaults({.flashUpdate = true});
  const RestoreReport report = Restore(saved);
  EXPECT_FALSE(report.IsWhole());
  EXPECT_EQ(report.Text(),
            "Not held: option 2, band 3, F-high is 0 (0 Hz), not 30 (91.7 Hz).\n"
            "Not held: REC_CTRL, other bits is 0x0, not 0xC000.\n"
            "Registers last until the sensor loses power; bands are in its flash.");
}

TEST_F(SensorSetupRoad, AnotherProductIsNotWritten) {
  Connected();
  setup::Setup saved = Read();
  saved.product = 12345;
  saved.registers.at(Index(setup::Register::FftAvg)) = 9;
  const RestoreReport report = Restore(saved);
  EXPECT_EQ(report.Text(),
            "The set-up is of product 12345, the sensor is product 31407: nothing was written.\n"
            "Nothing was written.");
  EXPECT_EQ(Value("FFT_AVG"), 8);
}

TEST_F(SensorSetupRoad, ASensorThatRecordsIsNotTakenForOneWithoutBands) {
  Connected();
  ChangeSensor();
  const setup::Setup saved = Read();
  Write("FFT_AVG", 255);
  Write("COMMAND", CommandWord(CommandBit::RecordStartStop));
  const auto read = TheStation().Setups().Read("pump", "1.0");
  ASSERT_FALSE(read);
  EXPECT_EQ(read.Why().kind, FailureKind::Refused);
  EXPECT_THAT(read.Why().text, HasSubstr("it is recording"));
  const RestoreReport report = Restore(saved);
  ASSERT_TRUE(report.stopped);
  EXPECT_EQ(report.stopped->why, Why::Busy);
  EXPECT_EQ(Value("FFT_AVG"), 255) << "nothing was written";
}

TEST_F(SensorSetupRoad, AnInterruptEndsItBetweenTwoBands) {
  Connected();
  const setup::Setup factory = Read();
  ChangeSensor();
  InterruptAfter(std::chrono::milliseconds(200));
  const auto read = TheStation().Setups().Read("pump", "1.0");
  ASSERT_FALSE(read);
  EXPECT_EQ(read.Why().kind, FailureKind::Interrupted);
  const auto begun = clock.Monotonic();
  Read();
  InterruptAfter(clock.Monotonic() - begun + std::chrono::milliseconds(100));
  const RestoreReport report = Restore(factory);
  ASSERT_TRUE(report.stopped);
  EXPECT_EQ(report.stopped->why, Why::Cancelled);
  EXPECT_FALSE(report.written.empty());
  EXPECT_FALSE(report.open.empty());
  EXPECT_TRUE(Restore(factory).IsWhole());
}

// Whatever it says was read back is there; whatever it says was not written is as before.
TEST_F(SensorSetupRoad, LostAtAnyTransferItSaysWhatIsRestoredAndGoesOnLater) {
  Connected();
  const setup::Setup factory = Read();
  ChangeSensor();
  const setup::Setup changed = Read();
  ASSERT_TRUE(Restore(factory).IsWhole());
  usb.FailFrom(0);
  ASSERT_TRUE(Restore(changed).IsWhole());
  const int requests = usb.Requests();
  ASSERT_GT(requests, 1000);
  RecordProperty("requests", requests);
  for (int number = 1; number <= requests; ++number) {
    Reconnect();
    ASSERT_TRUE(Restore(factory).IsWhole());
    usb.FailFrom(number);
    const RestoreReport report = Restore(changed);
    ASSERT_TRUE(report.stopped) << number;
    EXPECT_EQ(report.stopped->why, Why::Lost);
    EXPECT_FALSE(report.IsWhole());
    EXPECT_THAT(report.Text(), HasSubstr("The sensor was lost."));
    Reconnect();
    const setup::Setup now = Read();
    EXPECT_EQ(
        report.equal.size() + report.written.size() + report.unsure.size() + report.open.size(),
        setup::kRegisters + 24U);
    for (std::size_t i = 0; i < setup::kRegisters; ++i) {
      const std::string name = setup::kRegisterNames.at(i);
      if (std::ranges::count(report.written, name) > 0) {
        EXPECT_EQ(now.registers.at(i), changed.registers.at(i)) << name;
      }
      if (std::ranges::count(report.open, name) > 0) {
        EXPECT_EQ(now.registers.at(i), factory.registers.at(i)) << name;
      }
    }
    for (int option = 0; option < kSampleRateOptions; ++option) {
      for (int band = 1; band <= kAlarmBands; ++band) {
        const std::string name = BandName(option, band);
        if (std::ranges::count(report.written, name) > 0) {
          EXPECT_EQ(now.Band(option, band), changed.Band(option, band)) << name;
        }
        if (std::ranges::count(report.open, name) > 0) {
          EXPECT_EQ(now.Band(option, band), factory.Band(option, band)) << name;
        }
      }
    }
    const RestoreReport rest = Restore(changed);
    EXPECT_TRUE(rest.IsWhole()) << rest.Text();
    EXPECT_EQ(DifferenceOf(changed, Read()).size(), 0U) << number;
  }
}

TEST_F(SensorSetupRoad, LostAtAnyTransferNothingIsReadHalf) {
  Connected();
  usb.FailFrom(0);
  const setup::Setup whole = Read();
  const int requests = usb.Requests();
  for (int number = 1; number <= requests; ++number) {
    Reconnect();
    usb.FailFrom(number);
    const auto read = TheStation().Setups().Read("pump", "1.0");
    if (read) {
      EXPECT_EQ(DifferenceOf(whole, *read).size(), 0U) << number;
      continue;
    }
    EXPECT_EQ(read.Why().kind, FailureKind::NoSensor) << number;
    EXPECT_FALSE(read.Why().text.empty());
  }
}

}  // namespace
}  // namespace kestrel
