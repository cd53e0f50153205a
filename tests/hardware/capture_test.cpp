// Whole captures through libusb and a mock board, with faults on the way.
// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hardware/mock_usb_bus.h"
#include "hardware/program_bench.h"
#include "platform/libusb/libusb_driver.h"
#include "record/frequency.h"
#include "simulator/simulated_adapter.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kToneBin = 40;
constexpr double kToneG = 0.6;
constexpr std::chrono::milliseconds kLimit{300};

Scenario Tone() {
  return SingleTone(kToneBin * BinWidth(0), kToneG);
}

class Capture : public testing::Test {
 protected:
  using Record = std::array<RecordArray, 6>;
  static Record TheRecord() { return {DataX, DataY, DataZ, RawX, RawY, RawZ}; }

  // As after the cable was pulled: the board comes back under another address.
  void ReplugBoard() {
    bus.Unplug(*board);
    ++plan.address;
    board = &bus.Plug(plan);
    for (int tries = 0; tries < 1000 && !Attached(); ++tries) usleep(1000);
  }
  bool Attached() {
    const UsbDriver::Handle handle = driver.CreateFile("\\\\.\\Ezusb-0", 0, 0, 0);
    driver.CloseHandle(handle);
    return handle >= 1;
  }

  void ExpectFailure(const char* message) {
    const Record earlier = TheRecord();
    program.Capture();
    EXPECT_THAT(program.messages.Texts(), ElementsAre(message));
    EXPECT_FALSE(UsbPresent);
    EXPECT_TRUE(program.Idle());
    EXPECT_EQ(TheRecord(), earlier);
    EXPECT_FALSE(board->Claimed());
  }
  void ExpectTheBoardWorks() {
    program.messages.Clear();
    program.Connect();
    EXPECT_TRUE(UsbPresent);
    EXPECT_EQ(program.Averages(), 8);
    EXPECT_THAT(program.messages.Texts(), IsEmpty());
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, Tone()};
  MockUsbBus bus{sensor};
  MockBoardPlan plan;
  MockBoard* board = &bus.Plug(plan);
  LibusbDriver driver{kLimit};
  UnusedPort port;
  UnusedDriverService service;
  Program program{{&driver, &port, &service}, clock};
};

TEST_F(Capture, TheSearchTellsWhatTheBoardSaysOfItself) {
  EXPECT_THAT(program.messages.Texts(), IsEmpty());
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
  EXPECT_EQ(SelectedAdapter.boardType, "FIFO4");
  EXPECT_EQ(SelectedAdapter.string1, "Kestrel");
  EXPECT_EQ(SelectedAdapter.string2, "simulated USB to SPI adapter");
  EXPECT_FLOAT_EQ(SelectedAdapter.firmwareVersion, 1.2F);
  EXPECT_EQ(SelectedAdapter.usbVersion, "2");
  using Block = std::vector<std::uint8_t>;
  ASSERT_GE(board->commands.size(), 3U);
  EXPECT_EQ(board->commands[0], Block{0});
  EXPECT_EQ(board->commands[1], (Block{12, 120}));
  EXPECT_EQ(board->commands[2], (Block{11, 25}));
}

TEST_F(Capture, TheRecordIsTheOneThatTheSensorHolds) {
  program.Capture();
  EXPECT_THAT(program.messages.Texts(), IsEmpty());
  EXPECT_NEAR(DataX(kToneBin), kToneG, 0.001 * kToneG);
  const Record throughLibusb = TheRecord();

  FakeClock otherClock;
  SimulatedSensor otherSensor(otherClock, Tone());
  SimulatedAdapter adapter(otherSensor);
  Program direct({&adapter, &port, &service}, otherClock);
  direct.Capture();
  EXPECT_EQ(throughLibusb, TheRecord());
}

TEST_F(Capture, ARefusedCommandEndsItWithOneMessageAndTheBoardWorksAgain) {
  board->refuseCommands = true;
  ExpectFailure("Error Writing SPI");
  board->refuseCommands = false;
  ExpectTheBoardWorks();
}

TEST_F(Capture, ASilentBoardEndsItWithOneMessageAndItsLateAnswerMisleadsNobody) {
  board->holdAnswers = true;
  ExpectFailure("Error Reading SPI");
  board->holdAnswers = false;
  ExpectTheBoardWorks();
}

TEST_F(Capture, AShortAnswerEndsItWithOneMessage) {
  board->answerShort = true;
  ExpectFailure("Error Reading SPI");
  board->answerShort = false;
  ExpectTheBoardWorks();
}

TEST_F(Capture, ABoardThatAnotherProgramTakesEndsItWithOneMessage) {
  board->claimError = EBUSY;
  ExpectFailure("Error Writing SPI");
  board->claimError = 0;
  ExpectTheBoardWorks();
}

// Where the cable is pulled, in tenths of the capture's transfers.
class CablePulled : public Capture, public testing::WithParamInterface<int> {};

TEST_P(CablePulled, EndsTheCaptureWithOneMessageAndTheBoardWorksWhenItIsBack) {
  // Start, wait and status take about 20 transfers, then each of 768 points two accesses of two.
  constexpr int kTransfers = 3100;
  const int at = 1 + GetParam() * kTransfers / 10 + GetParam() % 2;
  board->unplugAt = at;
  ExpectFailure(at % 2 == 1 ? "Error Writing SPI" : "Error Reading SPI");
  EXPECT_TRUE(board->Pulled());
  ReplugBoard();
  ExpectTheBoardWorks();
}

INSTANTIATE_TEST_SUITE_P(TenthsOfTheCapture, CablePulled, testing::Range(0, 10));

TEST_F(Capture, AfterThePullTheNextCaptureIsWhole) {
  board->unplugAt = 200;
  ExpectFailure("Error Reading SPI");
  ReplugBoard();
  program.messages.Clear();
  program.Connect();
  program.Capture();
  EXPECT_THAT(program.messages.Texts(), IsEmpty());
  EXPECT_NEAR(DataZ(kToneBin), kToneG, 0.001 * kToneG);
}

TEST_F(Capture, ABoardPulledWhileNobodyAsksIsMissedAtTheNextCapture) {
  bus.Unplug(*board);
  ExpectFailure("Error Writing SPI");
  program.messages.Clear();
  program.Connect();
  EXPECT_THAT(program.messages.Texts(), ElementsAre("No USB Buffers Found, Please Verify Setup."));
  EXPECT_EQ(InterfaceType, kNoInterface);
}

}  // namespace
}  // namespace kestrel
