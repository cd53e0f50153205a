// Commands and answers through libusb, whole and broken off.
// SPDX-License-Identifier: MIT
// Commands and answers through libusb and a mock board, whole and broken off.

#include "platform/libusb/libusb_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hardware/libusb_bench.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class LibusbTransfer : public LibusbBench {};

TEST_F(LibusbTransfer, ACommandGoesOutOnPipeZeroAndItsAnswerComesBackOnPipeOne) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
  EXPECT_THAT(board.commands, ElementsAre(Bytes{0}));
}

TEST_F(LibusbTransfer, BulkReadFetchesAnswersAndRefusesTheCommandPipe) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  Bytes answer(2);
  EXPECT_EQ(Bulk(handle, 0, answer, kBulkRead), 87);
  EXPECT_THAT(board.commands, SizeIs(0));
  ASSERT_EQ(Send(handle, {0}), 0);
  EXPECT_EQ(Bulk(handle, 1, answer, kBulkRead), 0);
  EXPECT_THAT(answer, ElementsAre(1, 2));
}

TEST_F(LibusbTransfer, AShortAnswerIsASuccessWithFewerBytes) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  board.answerShort = true;
  ASSERT_EQ(Send(handle, {0}), 0);
  Bytes answer(2, 0xAA);
  EXPECT_EQ(Bulk(handle, 1, answer), 0);
  EXPECT_EQ(moved, 1U);
  EXPECT_THAT(answer, ElementsAre(1, 0xAA));
}

TEST_F(LibusbTransfer, AnAnswerThatDoesNotComeIsATimeOut) {
  bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  Bytes answer(2);
  EXPECT_EQ(Bulk(handle, 1, answer), 121);
  EXPECT_EQ(moved, 0U);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
}

TEST_F(LibusbTransfer, ByDefaultARequestIsGivenTwoSeconds) {
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
TEST_F(LibusbTransfer, AnAnswerThatComesTooLateIsDropped) {
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

TEST_F(LibusbTransfer, AnAnswerThatAnotherProgramLeftIsDropped) {
  bus.Plug({});
  {
    LibusbDriver other;
    const UsbDriver::Handle handle = other.CreateFile("\\\\.\\Ezusb-0", 0, 0, 0);
    Bytes command = {0};
    const Bytes pipe = {0, 0, 0, 0};
    ASSERT_TRUE(other.DeviceIoControl(handle, kBulkTransfer, pipe, command, moved));
  }
  const UsbDriver::Handle handle = Open(0);
  ASSERT_EQ(Send(handle, {1}), 0);
  Bytes answer(2);
  ASSERT_EQ(Bulk(handle, 1, answer), 0);
  EXPECT_THAT(answer, ElementsAre(0, 0));
}

TEST_F(LibusbTransfer, AnAnswerTooLongForItsBufferIsAFailureAndDoesNotComeAgain) {
  bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  ASSERT_EQ(Send(handle, {0}), 0);
  Bytes tooSmall(1);
  EXPECT_EQ(Bulk(handle, 1, tooSmall), 31);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
}

TEST_F(LibusbTransfer, ARefusedCommandFailsAndThePipeTakesTheNextOne) {
  MockBoard& board = bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  EXPECT_EQ(Send(handle, {99}), 31);
  EXPECT_EQ(board.haltsCleared, 1);
  EXPECT_THAT(Version(handle), ElementsAre(1, 2));
}

TEST_F(LibusbTransfer, PipesThatDoNotExistAndUnknownRequestsAreRefused) {
  bus.Plug({});
  const UsbDriver::Handle handle = Open(0);
  Bytes buffer(2);
  EXPECT_EQ(Bulk(handle, 4, buffer), 87);
  EXPECT_EQ(Bulk(handle, 1, buffer, 0x222014), 1);
  EXPECT_EQ(Bulk(handle + 1, 1, buffer), 6);
}

}  // namespace
}  // namespace kestrel
