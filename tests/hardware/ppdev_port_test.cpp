// The parallel port through the system's driver, on mock ports and to a decoder.
// SPDX-License-Identifier: MIT
// The parallel port through the system's port driver, which finds mock ports.

#include "platform/linux/ppdev_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "app/program_state.h"
#include "hardware/mock_parallel_port.h"
#include "platform/linux/ppdev_service.h"
#include "simulator/sensor/simulated_sensor.h"
#include "support/fake_clock.h"
#include "support/given.h"
#include "support/parport_settings.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "transport/parallel_port.h"
#include "transport/port_driver.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PpdevPortTest : public testing::Test {
 protected:
  PpdevPortTest() {
    settings.Add(0, 0x378);
    settings.Add(1, 0xE010);
    ResetProgramState();
    Given(InterfaceType) = kParallelPort;
    Given(PortAddress) = 0x378;
  }
  ~PpdevPortTest() override { ResetProgramState(); }

  [[nodiscard]] PpdevPort::Options Options() const {
    return {.folders = {.devices = "/dev", .settings = settings.Folder()}};
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockTestbed testbed;
  MockParallelPort first{testbed, 0, sensor};
  MockParallelPort second{testbed, 1, sensor};
  ParportSettings settings;
  PpdevPort port{[] { return PortAddress; }, Options()};
};

TEST_F(PpdevPortTest, ThePortOfTheAddressIsClaimedAloneUntilTheEnd) {
  {
    PpdevPort passing([] { return PortAddress; }, Options());
    passing.giveio();
    EXPECT_TRUE(first.Claimed());
    EXPECT_TRUE(first.Alone());
    EXPECT_FALSE(second.Claimed());
    EXPECT_EQ(passing.Explanation(), "");
  }
  EXPECT_FALSE(first.Claimed());
  EXPECT_EQ(first.releases, 1);
}

TEST_F(PpdevPortTest, AnAddressInTheUpperHalfFindsItsPort) {
  Given(PortAddress) = static_cast<std::int16_t>(0xE010);
  port.giveio();
  EXPECT_TRUE(second.Claimed());
  port.vbOut(PortAddress, 5);
  EXPECT_EQ(second.trace.back().data, 5U);
}

TEST_F(PpdevPortTest, AskedAgainItKeepsThePortAndTakesAnotherAtAnotherAddress) {
  port.giveio();
  port.giveio();
  EXPECT_EQ(first.claims, 1);
  Given(PortAddress) = static_cast<std::int16_t>(0xE010);
  port.giveio();
  EXPECT_FALSE(first.Claimed());
  EXPECT_TRUE(second.Claimed());
}

TEST_F(PpdevPortTest, APortThatOthersHaveRegisteredForIsShared) {
  first.refuseAlone = true;
  EXPECT_TRUE(port.Claim());
  EXPECT_TRUE(first.Claimed());
  EXPECT_FALSE(first.Alone());
}

TEST_F(PpdevPortTest, EachAccessIsOneRequest) {
  port.giveio();
  const int before = first.requests;
  port.vbOut(0x378, 0x105);  // only the low byte matters
  EXPECT_EQ(first.requests, before + 1);
  EXPECT_EQ(first.trace.back().data, 5U);
  EXPECT_EQ(port.vbInp(0x379), static_cast<int>(first.trace.back().status));
  EXPECT_EQ(first.requests, before + 2);
}

TEST_F(PpdevPortTest, OtherAddressesAreLeftAloneAndReadAsWhereNoPortAnswers) {
  port.vbOut(0x378, 1);  // not yet claimed
  EXPECT_EQ(port.vbInp(0x379), 0xFF);
  port.giveio();
  const int before = first.requests;
  port.vbOut(0x379, 0x40);
  port.vbOut(0x37A, 1);
  EXPECT_EQ(port.vbInp(0x378), 0xFF);
  EXPECT_EQ(port.vbInp(0x37A), 0xFF);
  EXPECT_EQ(first.requests, before);
}

TEST_F(PpdevPortTest, ABusyPortIsExplained) {
  first.claimError = EBUSY;
  EXPECT_FALSE(port.Claim());
  EXPECT_THAT(port.Explanation(), HasSubstr("/dev/parport0 is in use"));
  first.claimError = 0;
  EXPECT_TRUE(port.Claim());
  EXPECT_EQ(port.Explanation(), "");
}

TEST_F(PpdevPortTest, APortHeldBySomebodyElseIsNotWaitedForWithoutEnd) {
  first.refuseAlone = true;
  first.holdClaims = true;
  PpdevPort::Options options = Options();
  options.patience = std::chrono::milliseconds{50};
  PpdevPort impatient([] { return PortAddress; }, options);
  EXPECT_FALSE(impatient.Claim());
  EXPECT_THAT(impatient.Explanation(), HasSubstr("/dev/parport0 is in use"));
  first.holdClaims = false;
  while (first.claims == 0) usleep(1000);  // the claim that came too late ends by itself
}

TEST_F(PpdevPortTest, ANamedDeviceIsTakenWhateverTheAddress) {
  PpdevPort::Options options = Options();
  options.device = "/dev/parport1";
  Given(PortAddress) = 0x278;
  PpdevPort named([] { return PortAddress; }, options);
  EXPECT_TRUE(named.Claim());
  named.vbOut(0x278, 7);
  EXPECT_EQ(second.trace.back().data, 7U);
}

TEST_F(PpdevPortTest, WhenThePortIsHadNothingIsInstalled) {
  PpdevService service(port);
  RecordingMessages messages;
  SetupGiveIO(service, messages);
  EXPECT_THAT(messages.Texts(), IsEmpty());
  EXPECT_TRUE(first.Claimed());

  Given(PortAddress) = 0x278;
  SetupGiveIO(service, messages);
  EXPECT_THAT(messages.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_THAT(messages.explanations,
              ElementsAre("No parallel port has the address 0x278. There is /dev/parport0 at "
                          "0x378, /dev/parport1 at 0xE010."));
}

// The pins seen by a decoder that nobody of this project wrote.
class Decoded : public PpdevPortTest {
 protected:
  // The lines on the sensor's side of the inverting driver, one register access a microsecond.
  std::string WaveformFile() {
    std::string text =
        "$timescale 1 us $end\n$scope module port $end\n$var wire 1 s cs $end\n"
        "$var wire 1 c clk $end\n$var wire 1 o mosi $end\n$var wire 1 i miso $end\n"
        "$upscope $end\n$enddefinitions $end\n#0\n1s\n1c\n1o\n0i\n";
    std::size_t time = 1;
    for (const MockParallelPort::Pins& pins : first.trace) {
      const auto line = [](unsigned lines, unsigned bit) { return (lines & bit) != 0 ? '0' : '1'; };
      text += '#' + std::to_string(time++) + '\n' + line(pins.data, 1) + "s\n" +
              line(pins.data, 2) + "c\n" + line(pins.data, 4) + "o\n" + line(pins.status, 0x40) +
              "i\n";
    }
    return folder.Write("pins.vcd", text + '#' + std::to_string(time + 1) + "\n").string();
  }

  // The words that went over a line, "mosi-data" or "miso-data".
  std::vector<int> Words(const std::string& wanted) {
    const std::string command =
        "env -u LD_PRELOAD sigrok-cli -I vcd -i " + WaveformFile() +
        " -P spi:clk=clk:mosi=mosi:miso=miso:cs=cs:cpol=1:cpha=1:wordsize=16 -A spi=" + wanted;
    FILE* output = popen(command.c_str(), "r");
    std::vector<int> words;
    char text[200];
    while (std::fgets(text, sizeof text, output) != nullptr) {
      const std::string line = text;  // "spi-1: 9D12"
      words.push_back(std::stoi(line.substr(line.find(':') + 1), nullptr, 16));
    }
    EXPECT_EQ(pclose(output), 0) << command;
    return words;
  }

  TemporaryFolder folder;
  RecordingPointer pointer;
  SoftwareDelay delay{clock, pointer};
  ParallelPort spi{port, delay};
};

TEST_F(Decoded, FramesArriveAsTheyWereSent) {
  delay.SkipCalibration();
  port.giveio();
  spi.LptPortReset();
  for (const int frame : {0x9D12, 0x9C34, 0x0000, 0xFFFF, 0x8001, 0x5AA5}) spi.LptShiftOut(frame);
  EXPECT_THAT(Words("mosi-data"), ElementsAre(0x9D12, 0x9C34, 0x0000, 0xFFFF, 0x8001, 0x5AA5));
}

TEST_F(Decoded, AReadIsItsCommandAndAFrameThatBringsTheAnswer) {
  delay.SkipCalibration();
  port.giveio();
  spi.LptShiftOut(0x8F12);  // FFT_AVG, high byte and low byte
  spi.LptShiftOut(0x8E34);
  std::int16_t address = 0x0E;
  EXPECT_EQ(spi.LptReadWord(address), 0x1234);
  EXPECT_THAT(Words("mosi-data"), ElementsAre(0x8F12, 0x8E34, 0x0E00, 0x0000));
  EXPECT_EQ(Words("miso-data").back(), 0x1234);
}

}  // namespace
}  // namespace kestrel
