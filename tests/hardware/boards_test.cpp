// Boards that come and go on a mock bus: which one a name means, and what a returning one needs.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <atomic>

#include "hardware/libusb_bench.h"
#include "hardware/program_bench.h"
#include "transport/adapter_choice.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Boards : public LibusbBench {
 protected:
  // The system's message of a change takes a while to come through.
  bool Settles(int n, bool attached) {
    const std::string name = "Ezusb-" + std::to_string(n);
    for (int tries = 0; tries < 2000 && driver.Attached(name) != attached; ++tries) usleep(1000);
    return driver.Attached(name) == attached;
  }
};

TEST_F(Boards, KeepTheirNumbersWhileOthersComeAndGo) {
  const MockBoardPlan plan = Board(1, "1", 4, 0xED03);
  MockBoard& first = bus.Plug(plan);
  bus.Plug(Board(1, "3", 5, 0xEF00));
  ASSERT_EQ(ProductOf(0), 0xED03);
  ASSERT_EQ(ProductOf(1), 0xEF00);
  bus.Unplug(first);
  ASSERT_TRUE(Settles(0, false));
  EXPECT_EQ(OpenError(0), kUsbNotAttached);
  EXPECT_EQ(ProductOf(1), 0xEF00);
  bus.Plug(Board(1, "1", 9, 0xED03));
  ASSERT_TRUE(Settles(0, true));
  EXPECT_EQ(ProductOf(0), 0xED03);
  EXPECT_EQ(ProductOf(1), 0xEF00);
}

TEST_F(Boards, ABoardBeforeTheOthersInBusOrderDoesNotMoveThem) {
  bus.Plug(Board(1, "3", 5, 0xEF00));
  ASSERT_EQ(ProductOf(0), 0xEF00);
  bus.Plug(Board(1, "1", 6, 0xED03));
  ASSERT_TRUE(Settles(1, true));
  EXPECT_EQ(ProductOf(0), 0xEF00);
  EXPECT_EQ(ProductOf(1), 0xED03);
}

TEST_F(Boards, AnotherBoardInAnotherPlaceDoesNotTakeTheNumberOfOneThatIsAway) {
  MockBoard& first = bus.Plug(Board(1, "1", 4, 0xED03));
  ASSERT_EQ(ProductOf(0), 0xED03);
  bus.Unplug(first);
  ASSERT_TRUE(Settles(0, false));
  bus.Plug(Board(1, "3", 5, 0xEF00));
  ASSERT_TRUE(Settles(1, true));
  EXPECT_EQ(OpenError(0), kUsbNotAttached);
  EXPECT_EQ(ProductOf(1), 0xEF00);
}

TEST_F(Boards, AReplugIsAnotherPluggingInOfTheSameNumber) {
  MockBoard& board = bus.Plug(Board(1, "1", 4, 0xED03));
  const UsbDriver::Handle before = Open(0);
  const std::uint32_t plugging = driver.Plugging(before);
  EXPECT_NE(plugging, 0U);
  driver.CloseHandle(before);
  bus.Unplug(board);
  ASSERT_TRUE(Settles(0, false));
  bus.Plug(Board(1, "1", 5, 0xED03));
  ASSERT_TRUE(Settles(0, true));
  const UsbDriver::Handle after = Open(0);
  EXPECT_NE(driver.Plugging(after), plugging);
  driver.CloseHandle(after);
}

TEST_F(Boards, ABoardThatAnotherProgramUsesIsAttachedAllTheSame) {
  MockBoard& board = bus.Plug({});
  board.claimError = EBUSY;
  EXPECT_TRUE(driver.Attached("Ezusb-0"));
  EXPECT_FALSE(driver.Attached("Ezusb-1"));
  EXPECT_FALSE(driver.Attached("Ezusb-7"));
  EXPECT_EQ(board.claims, 0);
}

TEST_F(Boards, ThatComeAndGoAreToldByTheSystemWithoutBeingAskedFor) {
  std::atomic<int> told = 0;
  const auto isTold = [&told](int before) {
    for (int tries = 0; tries < 2000 && told == before; ++tries) usleep(1000);
    return told > before;
  };
  ASSERT_TRUE(driver.Watch([&told] { ++told; }));
  EXPECT_EQ(told, 0);
  MockBoard& board = bus.Plug(Board(1, "1", 4, 0xED03));
  EXPECT_TRUE(isTold(0));
  EXPECT_EQ(board.claims, 0);
  const int after = told;
  bus.Unplug(board);
  EXPECT_TRUE(isTold(after));
}

TEST_F(Boards, WhoWatchesNoMoreIsToldNothing) {
  std::atomic<int> told = 0;
  ASSERT_TRUE(driver.Watch([&told] { ++told; }));
  EXPECT_TRUE(driver.Watch({}));
  bus.Plug(Board(1, "1", 4, 0xED03));
  ASSERT_TRUE(Settles(0, true));
  EXPECT_EQ(told, 0);
}

// Transfers have the library's events to themselves.
TEST_F(Boards, TheWatchTakesNoTransferItsEndAway) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  ASSERT_TRUE(driver.Watch([] {}));
  const UsbDriver::Handle handle = Open(0);
  for (int i = 0; i < 200; ++i) ASSERT_EQ(Version(handle).size(), 2U) << i;
  driver.CloseHandle(handle);
}

// Two boards with a sensor each, the first one chosen.
class TwoBoards : public Boards {
 protected:
  static constexpr int kAverages = 20;

  // What the sensor itself holds, asked past all adapters.
  static int AveragesOf(SimulatedSensor& asked) {
    asked.Exchange(0x0E00);
    return asked.Exchange(0);
  }

  SimulatedSensor otherSensor{clock, RunningMachine()};
  MockBoardPlan plan = Board(1, "1", 4, 0xED03);
  MockBoard* chosen = &bus.Plug(plan);
  MockBoard* other = &bus.Plug(Board(1, "3", 5, 0xED03), otherSensor);
  UnusedPort port;
  UnusedDriverService service;
  Program program{{&driver, &port, &service}, clock};
};

TEST_F(TwoBoards, AWriteToTheBoardThatIsGoneDoesNotReachTheOtherSensor) {
  ASSERT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
  const int before = AveragesOf(otherSensor);
  ASSERT_NE(before, kAverages);
  bus.Unplug(*chosen);
  ASSERT_TRUE(Settles(0, false));
  EXPECT_FALSE(program.core.registers.Write(row::FFT_AVG, kAverages));
  EXPECT_EQ(program.core.registers.LastOutcome().Why().where, "Ezusb-0");
  EXPECT_THAT(program.messages.Texts(), ElementsAre("Error Writing SPI"));
  EXPECT_EQ(AveragesOf(otherSensor), before);
}

TEST_F(TwoBoards, TheOtherWayRoundTheReturningBoardDoesNotTakeTheWritesOfTheOneInUse) {
  bus.Unplug(*chosen);
  ASSERT_TRUE(Settles(0, false));
  program.Connect();
  ASSERT_EQ(SelectedAdapter.deviceName, "Ezusb-1");
  plan.address = 9;
  bus.Plug(plan);
  ASSERT_TRUE(Settles(0, true));
  const int before = AveragesOf(sensor);
  EXPECT_TRUE(program.core.registers.Write(row::FFT_AVG, kAverages));
  EXPECT_EQ(AveragesOf(otherSensor), kAverages);
  EXPECT_EQ(AveragesOf(sensor), before);
}

TEST_F(TwoBoards, ACaptureDoesNotTakeTheOtherSensorsDataUnasked) {
  bus.Unplug(*chosen);
  ASSERT_TRUE(Settles(0, false));
  ASSERT_FALSE(program.core.registers.Write(row::FFT_AVG, kAverages));
  program.messages.Clear();
  const std::size_t commands = other->commands.size();
  program.Capture();
  EXPECT_THAT(program.messages.Texts(),
              ElementsAre("Ezusb-0 is gone. Ezusb-1 is selected now; it may have another sensor. "
                          "Try again to take data from it."));
  ASSERT_EQ(other->commands.size(), commands + 4) << "found, set up, its settings read";
  EXPECT_EQ(other->commands.back(), (Bytes{13, 1, 2, 0x1C, 0, 0x1C, 0}));
  program.messages.Clear();
  program.Capture();
  EXPECT_THAT(program.messages.Texts(), IsEmpty());
}

TEST_F(TwoBoards, AReplugThatNobodyNoticedIsSetUpAgainBeforeTheNextTransfer) {
  bus.Unplug(*chosen);
  ASSERT_TRUE(Settles(0, false));
  plan.address = 9;
  chosen = &bus.Plug(plan);
  ASSERT_TRUE(Settles(0, true));
  EXPECT_TRUE(program.core.registers.Write(row::FFT_AVG, kAverages));
  EXPECT_THAT(program.messages.Texts(), IsEmpty());
  ASSERT_GE(chosen->commands.size(), 3U);
  EXPECT_EQ(chosen->commands[0], (Bytes{12, 120}));
  EXPECT_EQ(chosen->commands[1], (Bytes{11, 25}));
  EXPECT_EQ(AveragesOf(sensor), kAverages);
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
}

TEST_F(TwoBoards, AfterAReplugThatNobodyNoticedACaptureIsWhole) {
  bus.Unplug(*chosen);
  ASSERT_TRUE(Settles(0, false));
  plan.address = 9;
  bus.Plug(plan);
  ASSERT_TRUE(Settles(0, true));
  program.Capture();
  EXPECT_THAT(program.messages.Texts(), IsEmpty());
  EXPECT_EQ(program.Averages(), 8);
}

// A board that takes every command and answers none.
TEST_F(Boards, AMuteBoardHoldsOneActionUpForOneTimeLimitAndSaysSo) {
  bus.Plug({}).holdAnswers = true;
  std::vector<bool> waiting;
  LibusbDriver patient(kShortLimit, [&](bool now) { waiting.push_back(now); });
  RecordingMessages messages;
  UsbAdapter usb(patient, messages);
  ResetProgram();
  const auto start = std::chrono::steady_clock::now();
  usb.SelectUsbAdapter();
  ASSERT_TRUE(UsbPresent);
  usb.UsbSetSpiBits(120);
  usb.UsbSetupSpi(25);
  usb.UsbSpiTransfer(1);
  const auto taken = std::chrono::steady_clock::now() - start;
  ResetProgram();
  EXPECT_THAT(messages.Texts(), ElementsAre("Error getting Board Info", "Error Reading SPI"));
  EXPECT_GE(taken, kShortLimit);
  EXPECT_LT(taken, kShortLimit * 7 / 4);
  EXPECT_THAT(waiting, ElementsAre(true, false));
}

}  // namespace
}  // namespace kestrel
