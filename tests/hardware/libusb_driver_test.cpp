// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// The adapter driver over libusb itself, which finds mock boards on a mock bus.

#include "platform/linux/libusb_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hardware/mock_usb_bus.h"
#include "simulator/simulated_sensor.h"
#include "support/fake_clock.h"
#include "support/other_user.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::SizeIs;

using Bytes = std::vector<std::uint8_t>;
constexpr std::chrono::milliseconds kShortLimit{400};

MockBoardPlan Board(int bus, const std::string& ports, int address, std::uint16_t product) {
  MockBoardPlan plan{.bus = bus, .ports = ports, .address = address};
  plan.description.product = product;
  return plan;
}

class LibusbDriverTest : public testing::Test {
 protected:
  UsbDriver::Handle Open(int n) {
    return driver.CreateFile("\\\\.\\Ezusb-" + std::to_string(n), 0x40000000, 2, 3);
  }

  // What the driver says went wrong; 0 when the request succeeded.
  std::int32_t OpenError(int n) {
    const UsbDriver::Handle handle = Open(n);
    if (handle < 1) return driver.LastError();
    driver.CloseHandle(handle);
    return 0;
  }

  std::int32_t Bulk(UsbDriver::Handle handle, std::uint8_t pipe, Bytes& buffer,
                    std::uint32_t code = kBulkTransfer) {
    const Bytes input = {pipe, 0, 0, 0};
    return driver.DeviceIoControl(handle, code, input, buffer, moved) ? 0 : driver.LastError();
  }
  std::int32_t Send(UsbDriver::Handle handle, Bytes block) { return Bulk(handle, 0, block); }

  // The firmware's version, which command 0 asks for; empty when that fails.
  Bytes Version(UsbDriver::Handle handle) {
    Bytes answer(2);
    if (Send(handle, {0}) != 0 || Bulk(handle, 1, answer) != 0) return {};
    return answer;
  }

  int ProductOf(int n) {
    const UsbDriver::Handle handle = Open(n);
    if (handle < 1) return -1;
    Bytes buffer(147);
    EXPECT_TRUE(driver.DeviceIoControl(handle, kGetDeviceDescriptor, buffer, buffer, moved));
    driver.CloseHandle(handle);
    return buffer[10] + 256 * buffer[11];
  }

  Bytes PipeInformation(UsbDriver::Handle handle) {
    Bytes buffer(356);
    EXPECT_TRUE(driver.DeviceIoControl(handle, kGetPipeInformation, buffer, buffer, moved));
    return buffer;
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockUsbBus bus{sensor};
  LibusbDriver driver{kShortLimit};
  std::uint32_t moved = 0;
};

TEST_F(LibusbDriverTest, WithoutABoardEveryNameIsNotAttached) {
  for (int n = 0; n < 4; ++n) EXPECT_EQ(OpenError(n), 2);
}

TEST_F(LibusbDriverTest, NamesOutsideTheFourAreNotAttached) {
  bus.Plug({});
  EXPECT_EQ(OpenError(0), 0);
  for (const char* name : {"Ezusb-0", "\\\\.\\Ezusb-4", "\\\\.\\Ezusb-", "\\\\.\\Ezusb-00",
                           "\\\\.\\ezusb-0", "\\\\.\\Ezusb-x", ""}) {
    EXPECT_LT(driver.CreateFile(name, 0x40000000, 2, 3), 1) << name;
    EXPECT_EQ(driver.LastError(), 2) << name;
  }
}

TEST_F(LibusbDriverTest, BoardsAreNumberedInBusOrderWhateverOrderTheyWerePluggedIn) {
  bus.Plug(Board(2, "1", 3, 0xEF00));
  bus.Plug(Board(1, "2.1", 9, 0xED03));
  bus.Plug(Board(1, "1", 12, 0x1234));  // foreign, but the vendor's
  MockBoardPlan stranger = Board(1, "3", 5, 0xED03);
  stranger.description.vendor = 0x04B4;
  bus.Plug(stranger);
  EXPECT_EQ(ProductOf(0), 0x1234);
  EXPECT_EQ(ProductOf(1), 0xED03);
  EXPECT_EQ(ProductOf(2), 0xEF00);
  EXPECT_EQ(OpenError(3), 2);
}

TEST_F(LibusbDriverTest, AFifthBoardHasNoName) {
  for (int i = 0; i < 5; ++i) bus.Plug(Board(1, std::to_string(i + 3), 10 + i, 0xED03));
  EXPECT_EQ(OpenError(3), 0);
  EXPECT_EQ(OpenError(4), 2);
}

TEST_F(LibusbDriverTest, TheDeviceDescriptorIsTheBoards) {
  const MockBoardPlan plan;
  bus.Plug(plan);
  const UsbDriver::Handle handle = Open(0);
  Bytes buffer(147, 0xAA);
  ASSERT_TRUE(driver.DeviceIoControl(handle, kGetDeviceDescriptor, buffer, buffer, moved));
  EXPECT_EQ(moved, 18U);
  EXPECT_THAT(Bytes(buffer.begin(), buffer.begin() + 18),
              ElementsAreArray(DeviceDescriptor(plan.description)));
  Bytes small(146);
  EXPECT_FALSE(driver.DeviceIoControl(handle, kGetDeviceDescriptor, small, small, moved));
  EXPECT_EQ(driver.LastError(), 122);
}

TEST_F(LibusbDriverTest, AStringComesShortOrWholeInTheBoardsLanguage) {
  MockBoardPlan plan;
  plan.description.string2 = u"Schwingung \u00B5\U0001F600";
  MockBoard& board = bus.Plug(plan);
  const UsbDriver::Handle handle = Open(0);
  const Bytes whole = StringDescriptor(plan.description, 2);
  const Bytes request = {2, 0, 0, 0, 0};
  Bytes start(4);
  ASSERT_TRUE(driver.DeviceIoControl(handle, kGetStringDescriptor, request, start, moved));
  EXPECT_EQ(moved, 4U);
  EXPECT_THAT(start, ElementsAreArray(Bytes(whole.begin(), whole.begin() + 4)));
  Bytes buffer(start[0]);
  ASSERT_TRUE(driver.DeviceIoControl(handle, kGetStringDescriptor, request, buffer, moved));
  EXPECT_EQ(buffer, whole);
  EXPECT_THAT(board.languagesAsked, ElementsAre(0, 0x0409, 0, 0x0409));
}

TEST_F(LibusbDriverTest, AMissingStringIsAFailureOfTheDevice) {
  bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  const Bytes request = {7, 0, 0, 0, 0};
  Bytes buffer(4);
  EXPECT_FALSE(driver.DeviceIoControl(handle, kGetStringDescriptor, request, buffer, moved));
  EXPECT_EQ(driver.LastError(), 31);
}

TEST_F(LibusbDriverTest, PipesZeroAndOneAreTheFirstBulkOutputAndInput) {
  MockBoardPlan plan;
  plan.endpoints = {{0x83, 3, 8}, {0x81, 2, 64}, {0x04, 2, 512}, {0x01, 2, 64}, {0x88, 2, 512}};
  bus.Plug(plan);
  const Bytes information = PipeInformation(Open(0));
  EXPECT_EQ(moved, 356U);
  EXPECT_EQ(information[12], 5);
  Bytes endpoints;
  for (std::size_t i = 0; i < 5; ++i) endpoints.push_back(information[16 + 20 * i + 2]);
  EXPECT_THAT(endpoints, ElementsAre(0x04, 0x81, 0x01, 0x88, 0x83));
  EXPECT_EQ(information[16 + 3 * 20] + 256 * information[16 + 3 * 20 + 1], 512);
}

TEST_F(LibusbDriverTest, PipeThreeTellsTheBusSpeedOnABoardWithFewerBulkPipes) {
  for (const std::uint16_t packetSize : {std::uint16_t{64}, std::uint16_t{512}}) {
    MockBoardPlan plan;
    plan.endpoints = {{0x02, 2, packetSize}, {0x86, 2, packetSize}, {0x81, 3, 8}};
    MockBoard& board = bus.Plug(plan);
    const UsbDriver::Handle handle = Open(0);
    const Bytes information = PipeInformation(handle);
    EXPECT_EQ(information[12], 5);
    EXPECT_EQ(information[16 + 3 * 20] + 256 * information[16 + 3 * 20 + 1], packetSize);
    driver.CloseHandle(handle);
    bus.Unplug(board);
    while (OpenError(0) == 0) {
    }
  }
}

TEST_F(LibusbDriverTest, ABoardWithoutBulkPipesOpensAndHasNoPipes) {
  MockBoardPlan plan;
  plan.endpoints = {{0x81, 3, 8}};
  bus.Plug(plan);
  const UsbDriver::Handle handle = Open(0);
  EXPECT_GE(handle, 1);
  EXPECT_EQ(PipeInformation(handle)[12], 0);
  EXPECT_EQ(Send(handle, {0}), 87);
}

TEST_F(LibusbDriverTest, ACommandGoesOutOnPipeZeroAndItsAnswerComesBackOnPipeOne) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
  EXPECT_THAT(board.commands, ElementsAre(Bytes{0}));
}

TEST_F(LibusbDriverTest, BulkReadFetchesAnswersAndRefusesTheCommandPipe) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  Bytes answer(2);
  EXPECT_EQ(Bulk(handle, 0, answer, kBulkRead), 87);
  EXPECT_THAT(board.commands, SizeIs(0));
  ASSERT_EQ(Send(handle, {0}), 0);
  EXPECT_EQ(Bulk(handle, 1, answer, kBulkRead), 0);
  EXPECT_THAT(answer, ElementsAre(1, 2));
}

TEST_F(LibusbDriverTest, AShortAnswerIsASuccessWithFewerBytes) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  board.answerShort = true;
  ASSERT_EQ(Send(handle, {0}), 0);
  Bytes answer(2, 0xAA);
  EXPECT_EQ(Bulk(handle, 1, answer), 0);
  EXPECT_EQ(moved, 1U);
  EXPECT_THAT(answer, ElementsAre(1, 0xAA));
}

TEST_F(LibusbDriverTest, AnAnswerThatDoesNotComeIsATimeOut) {
  bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  Bytes answer(2);
  EXPECT_EQ(Bulk(handle, 1, answer), 121);
  EXPECT_EQ(moved, 0U);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
}

TEST_F(LibusbDriverTest, ByDefaultARequestIsGivenTwoSeconds) {
  bus.Plug({});
  LibusbDriver patient;
  const UsbDriver::Handle handle = patient.CreateFile("\\\\.\\Ezusb-0", 0, 0, 0);
  const Bytes pipe = {1, 0, 0, 0};
  Bytes answer(2);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(patient.DeviceIoControl(handle, kBulkTransfer, pipe, answer, moved));
  EXPECT_EQ(patient.LastError(), 121);
  EXPECT_GE(std::chrono::steady_clock::now() - start, LibusbDriver::kTimeLimit);
}

// A late answer must not be taken for the answer to the next command.
TEST_F(LibusbDriverTest, AnAnswerThatComesTooLateIsDropped) {
  MockBoard& board = bus.Plug({});
  UsbDriver::Handle handle = Open(0);
  ASSERT_EQ(Send(handle, {12, 120}), 0);
  ASSERT_EQ(Send(handle, {11, 25}), 0);
  board.holdAnswers = true;
  ASSERT_EQ(Send(handle, {0}), 0);
  Bytes answer(2);
  ASSERT_EQ(Bulk(handle, 1, answer), 121);
  driver.CloseHandle(handle);
  board.holdAnswers = false;
  handle = Open(0);
  ASSERT_EQ(Send(handle, {1}), 0);
  ASSERT_EQ(Bulk(handle, 1, answer), 0);
  EXPECT_THAT(answer, ElementsAre(120, 25));
}

TEST_F(LibusbDriverTest, ARefusedCommandFailsAndThePipeTakesTheNextOne) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  EXPECT_EQ(Send(handle, {99}), 31);
  EXPECT_EQ(board.haltsCleared, 1);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
}

TEST_F(LibusbDriverTest, PipesThatDoNotExistAndUnknownRequestsAreRefused) {
  bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  Bytes buffer(2);
  EXPECT_EQ(Bulk(handle, 4, buffer), 87);
  EXPECT_EQ(Bulk(handle, 1, buffer, 0x222014), 1);
  EXPECT_EQ(Bulk(handle + 1, 1, buffer), 6);
}

TEST_F(LibusbDriverTest, ABoardIsClaimedWhileItsHandleIsOpen) {
  MockBoard& board = bus.Plug({});
  EXPECT_FALSE(board.Claimed());
  const UsbDriver::Handle handle = Open(0);
  EXPECT_TRUE(board.Claimed());
  EXPECT_EQ(OpenError(0), 32);
  driver.CloseHandle(handle);
  EXPECT_FALSE(board.Claimed());
  EXPECT_EQ(OpenError(0), 0);
  EXPECT_EQ(board.claims, 2);
  EXPECT_EQ(board.releases, 2);
}

TEST_F(LibusbDriverTest, HandlesLeftOpenAreClosedWithTheDriver) {
  MockBoard& board = bus.Plug({});
  {
    LibusbDriver other;
    EXPECT_GE(other.CreateFile("\\\\.\\Ezusb-0", 0, 0, 0), 1);
    EXPECT_TRUE(board.Claimed());
  }
  EXPECT_FALSE(board.Claimed());
}

TEST_F(LibusbDriverTest, ABoardThatAnotherProgramHasIsBusy) {
  MockBoard& board = bus.Plug({});
  board.claimError = EBUSY;
  EXPECT_EQ(OpenError(0), 32);
  board.claimError = 0;
  EXPECT_EQ(OpenError(0), 0);
}

TEST_F(LibusbDriverTest, ADriverOfTheKernelGivesWayAndGetsTheBoardBack) {
  MockBoardPlan plan;
  plan.kernelDriver = "usbtest";
  MockBoard& board = bus.Plug(plan);
  const UsbDriver::Handle handle = Open(0);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
  EXPECT_EQ(board.driverDetached, 1);
  driver.CloseHandle(handle);
  EXPECT_EQ(board.driverAttached, 1);
}

TEST_F(LibusbDriverTest, ABoardWithoutPermissionIsNamedSo) {
  const MockBoardPlan plan;
  bus.Plug(plan);
  ASSERT_EQ(OpenError(0), 0);
  bus.Permit(plan, false);
  {
    const OtherUser ordinary;
    EXPECT_EQ(OpenError(0), 5);
  }
  bus.Permit(plan, true);
  EXPECT_EQ(OpenError(0), 0);
}

TEST_F(LibusbDriverTest, ABoardPulledOutBetweenTwoTransfersFailsAtOnce) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  ASSERT_EQ(Send(handle, {0}), 0);
  bus.Unplug(board);
  Bytes answer(2);
  EXPECT_EQ(Bulk(handle, 1, answer), 2);
  EXPECT_EQ(Send(handle, {0}), 2);
  driver.CloseHandle(handle);
  EXPECT_EQ(OpenError(0), 2);
}

TEST_F(LibusbDriverTest, ABoardThatIsPluggedInAgainIsFoundAgain) {
  MockBoardPlan plan;
  for (int address = 4; address < 7; ++address) {
    plan.address = address;
    MockBoard& board = bus.Plug(plan);
    UsbDriver::Handle handle = -1;
    while (handle < 1) handle = Open(0);  // until the system's message has come through
    EXPECT_THAT(Version(handle), ElementsAre(1, 2));
    driver.CloseHandle(handle);
    bus.Unplug(board);
    EXPECT_EQ(OpenError(0), 2);
  }
}

}  // namespace
}  // namespace kestrel
