// Finding and opening boards through libusb on a mock bus.
// SPDX-License-Identifier: MIT
// The adapter driver over libusb itself, which finds mock boards on a mock bus.

#include "platform/libusb/libusb_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hardware/libusb_bench.h"
#include "support/other_user.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class LibusbDriverTest : public LibusbBench {};

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
