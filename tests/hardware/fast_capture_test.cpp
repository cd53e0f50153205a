// Records in blocks over a mock USB bus and a mock port: how little goes over the wire, and faults.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "hardware/mock_parallel_port.h"
#include "hardware/mock_usb_bus.h"
#include "hardware/program_bench.h"
#include "platform/libusb/libusb_driver.h"
#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "support/absent_hardware.h"
#include "support/parport_settings.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::chrono::milliseconds kLimit{200};  // of a silent board, so that nobody waits
constexpr double kFewerTransfers = 16;
constexpr std::int16_t kAddress = 0x378;

// The sensor's buffers hold a record of the kind that the mode makes.
void TakeARecord(Program& program, RecordKind kind) {
  gRecCtrl->RecModeCode(static_cast<std::int16_t>(kind == RecordKind::Time ? 2 : 0));
  gRecCtrl->WriteRecCtrl();
  program.core.registers.Write(row::COMMAND, 0x0800);
  program.core.delay.Delay(1000);
}

// The record at hand but for when it was read.
Record RecordOf(Program& program) {
  Record record = program.core.record.Get();
  record.time = {};
  return record;
}

class FastCapture : public testing::Test {
 protected:
  int TransfersOf(RecordKind kind) {
    const int before = board->bulkTransfers;
    EXPECT_TRUE(program.ReadOut(kind));
    return board->bulkTransfers - before;
  }
  // The board comes back under another address.
  void ReplugBoard() {
    bus.Unplug(*board);
    ++plan.address;
    board = &bus.Plug(plan);
    for (int tries = 0; tries < 1000 && !driver.Attached("Ezusb-0"); ++tries) usleep(1000);
    program.messages.Clear();
    program.Connect();
    ASSERT_TRUE(UsbPresent);
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockUsbBus bus{sensor};
  MockBoardPlan plan;
  MockBoard* board = &bus.Plug(plan);
  LibusbDriver driver{kLimit};
  UnusedPort port;
  UnusedDriverService service;
  Program program{{&driver, &port, &service}, clock};
};

TEST_F(FastCapture, ARecordTakesSixteenTimesFewerTransfersAndOneOpening) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    TakeARecord(program, kind);
    program.Fast().Choose(false);
    TransfersOf(kind);
    const int singly = TransfersOf(kind);
    const Record record = RecordOf(program);
    program.Fast().Choose(true);
    TransfersOf(kind);
    const int claims = board->claims;
    const int inBlocks = TransfersOf(kind);
    EXPECT_GE(singly, kFewerTransfers * inBlocks) << singly << " and " << inBlocks;
    EXPECT_EQ(board->claims - claims, 1);
    EXPECT_FALSE(board->Claimed());
    EXPECT_EQ(RecordOf(program), record);
  }
  EXPECT_TRUE(program.Fast().InUse());
}

// Now and then among the single words, more often among the blocks.
TEST_F(FastCapture, ACablePulledOnTheWayLeavesTheEarlierRecord) {
  TakeARecord(program, RecordKind::Spectrum);
  ASSERT_TRUE(program.ReadOut(RecordKind::Spectrum));
  const Record earlier = program.core.record.Get();
  program.Fast().Choose(true);
  constexpr int kOfBlocks = 2 * 65;
  const int transfers = TransfersOf(RecordKind::Spectrum);
  program.core.record.HandOver(earlier);
  program.Connect();
  for (int at = 1; at <= transfers; at += at < transfers - kOfBlocks ? 61 : 11) {
    SCOPED_TRACE(at);
    board->unplugAt = at;
    ASSERT_FALSE(program.ReadOut(RecordKind::Spectrum));
    ASSERT_THAT(program.messages.Texts(),
                ElementsAre(at % 2 == 1 ? "Error Writing SPI" : "Error Reading SPI"));
    ASSERT_TRUE(program.core.record.Get() == earlier);
    ReplugBoard();
    ASSERT_THAT(program.Fast().Refused(), IsEmpty());
  }
  TakeARecord(program, RecordKind::Spectrum);
  EXPECT_EQ(TransfersOf(RecordKind::Spectrum), transfers) << "every word is asked for again";
}

TEST_F(FastCapture, EveryOtherFaultEndsItWithOneMessageAndTheBoardWorksAgain) {
  TakeARecord(program, RecordKind::Spectrum);
  program.Fast().Choose(true);
  TransfersOf(RecordKind::Spectrum);
  const Record earlier = program.core.record.Get();
  const auto expectFailure = [&](auto& fault, auto value, const char* message) {
    SCOPED_TRACE(message);
    const auto good = fault;
    fault = value;
    EXPECT_FALSE(program.ReadOut(RecordKind::Spectrum));
    EXPECT_THAT(program.messages.Texts(), ElementsAre(message));
    EXPECT_EQ(program.core.record.Get(), earlier);
    fault = good;
    program.messages.Clear();
    program.Connect();
    EXPECT_TRUE(UsbPresent);
    EXPECT_THAT(program.messages.Texts(), IsEmpty());
  };
  expectFailure(board->refuseCommands, true, "Error Writing SPI");
  expectFailure(board->holdAnswers, true, "Error Reading SPI");
  expectFailure(board->answerShort, true, "Error Reading SPI");
  expectFailure(board->claimError, EBUSY, "Error Writing SPI");
  EXPECT_TRUE(program.ReadOut(RecordKind::Spectrum));
  EXPECT_THAT(program.Fast().Refused(), IsEmpty());
}

class FastOverPort : public testing::Test {
 protected:
  FastOverPort() {
    settings.Add(0, kAddress);
    program.emplace(Hardware{&usb, &port, &service}, clock, kParallelPort, kAddress);
  }
  // Selections of the sensor on the pins.
  int FramesOf(RecordKind kind) {
    mock.trace.clear();
    EXPECT_TRUE(program->ReadOut(kind));
    int frames = 0;
    unsigned before = 0;
    for (const auto& pins : mock.trace) {
      if ((pins.data & 1U) != 0 && (before & 1U) == 0) ++frames;
      before = pins.data;
    }
    return frames;
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockTestbed testbed;
  MockParallelPort mock{testbed, 0, sensor};
  ParportSettings settings;
  PpdevPort port{[] { return PortAddress; },
                 {.folders = {.devices = "/dev", .settings = settings.Folder()}}};
  PpdevService service{port};
  AbsentUsbDriver usb;
  std::optional<Program> program;
};

// Four reads, nine single words, 1026 frames of blocks; 3080 of the ordinary read-out are counted
// where pins cost less.
TEST_F(FastOverPort, ARecordTakesFewFramesAndIsFoundRight) {
  TakeARecord(*program, RecordKind::Spectrum);
  program->Fast().Choose(true);
  FramesOf(RecordKind::Spectrum);
  const Record first = RecordOf(*program);
  EXPECT_EQ(FramesOf(RecordKind::Spectrum), 4 * 2 + 9 * 4 + 1026);
  EXPECT_EQ(RecordOf(*program).axes, first.axes);
  EXPECT_TRUE(program->Fast().InUse()) << "no word differed from a single one";
}

TEST_F(FastOverPort, APortLostOnTheWayLeavesTheEarlierRecord) {
  TakeARecord(*program, RecordKind::Spectrum);
  program->Fast().Choose(true);
  const Record earlier = program->core.record.Get();
  for (const int at : {1, 300, 2000, 25000}) {
    SCOPED_TRACE(at);
    mock.failAccessesFrom = at;
    mock.claimError = EBUSY;
    EXPECT_FALSE(program->ReadOut(RecordKind::Spectrum));
    EXPECT_EQ(program->core.record.Get(), earlier);
    mock.failAccessesFrom = 0;
    mock.claimError = 0;
    program->Connect(kParallelPort);
  }
  EXPECT_THAT(program->Fast().Refused(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
