// The simulated driver: opening, closing, requests, plugging.
// SPDX-License-Identifier: MIT

#include "simulator/simulated_adapter_bench.h"

namespace kestrel {
namespace {

TEST_F(AdapterTest, BoardOpensUnderItsNameOnly) {
  EXPECT_GE(Open(), 1);
  for (const char* name : {"Ezusb-1", "Ezusb-4", "Ezusb-00", "ezusb-0", ""}) {
    EXPECT_LT(Open(name), 1) << name;
    EXPECT_EQ(adapter_.LastError(), 2) << name;
  }
  EXPECT_LT(adapter_.CreateFile("Ezusb-0", 0x40000000, 2, 3), 1);
}

TEST_F(AdapterTest, BoardOpensOnlyForWritingSharedAndExisting) {
  const std::string path = "\\\\.\\Ezusb-0";
  EXPECT_LT(adapter_.CreateFile(path, 0x80000000, 2, 3), 1);
  EXPECT_LT(adapter_.CreateFile(path, 0x40000000, 0, 3), 1);
  EXPECT_LT(adapter_.CreateFile(path, 0x40000000, 2, 1), 1);
  EXPECT_EQ(adapter_.OpenHandles(), 0);
}

TEST_F(AdapterTest, EveryHandleIsClosedExactlyOnce) {
  const auto first = Open();
  const auto second = Open();
  EXPECT_NE(first, second);
  EXPECT_EQ(adapter_.OpenHandles(), 2);
  adapter_.CloseHandle(first);
  adapter_.CloseHandle(second);
  EXPECT_EQ(adapter_.OpenHandles(), 0);
  EXPECT_EQ(adapter_.HandleErrors(), 0);

  adapter_.CloseHandle(first);
  EXPECT_EQ(adapter_.HandleErrors(), 1);
  EXPECT_FALSE(Send(second, {0}));
  EXPECT_EQ(adapter_.HandleErrors(), 2);
  EXPECT_EQ(adapter_.LastError(), 6);
}

TEST_F(AdapterTest, DeviceDescriptorNamesVendorAndProduct) {
  const auto device = Open();
  Bytes buffer(147);
  ASSERT_TRUE(Request(device, 0x222004, Bytes(147), buffer));
  EXPECT_EQ(buffer[0], 18);
  EXPECT_EQ(buffer[1], 1);
  EXPECT_EQ(buffer[8] | buffer[9] << 8, 0x5A17);
  EXPECT_EQ(buffer[10] | buffer[11] << 8, 0xED03);
  EXPECT_EQ(buffer[14], 1);
  EXPECT_EQ(buffer[15], 2);

  Bytes tooSmall(17);
  EXPECT_FALSE(Request(device, 0x222004, tooSmall, tooSmall));
}

TEST_F(AdapterTest, StringsAreReadByLengthThenWhole) {
  const auto device = Open();
  EXPECT_EQ(StringOf(device, 1), "Kestrel");
  EXPECT_EQ(StringOf(device, 2), "simulated USB to SPI adapter");
  EXPECT_EQ(StringOf(device, 3), "failed");
  Bytes buffer(4);
  EXPECT_FALSE(Request(device, 0x222044, {1}, buffer)) << "the request has five bytes";
}

TEST_F(AdapterTest, BoardWithoutAStringFailsThatRequest) {
  adapter_.SetBoard(0, {.string2 = u""});
  const auto device = Open();
  EXPECT_EQ(StringOf(device, 1), "Kestrel");
  EXPECT_EQ(StringOf(device, 2), "failed");
}

TEST_F(AdapterTest, PipeInformationHoldsThePacketSizes) {
  adapter_.SetBoard(0, {.pipe3PacketSize = 64});
  Bytes buffer(356);
  ASSERT_TRUE(Request(Open(), 0x222000, Bytes(356), buffer));
  EXPECT_EQ(returned_, 356);
  EXPECT_EQ(buffer[0] | buffer[1] << 8, 16 + 4 * 20);
  EXPECT_EQ(buffer[12], 4);
  EXPECT_EQ(buffer[16 + 3 * 20] | buffer[16 + 3 * 20 + 1] << 8, 64);
  EXPECT_EQ(buffer[16 + 2] & 0x80, 0) << "pipe 0 goes to the board";
  EXPECT_EQ(buffer[16 + 20 + 2] & 0x80, 0x80) << "pipe 1 comes from the board";
}

TEST_F(AdapterTest, VersionCommandAnswersMajorAndMinor) {
  const auto device = Open();
  ASSERT_TRUE(Send(device, {0}));
  EXPECT_EQ(returned_, 1);
  EXPECT_THAT(Fetch(device, 2), ElementsAre(1, 2));
}

TEST_F(AdapterTest, SpiValuesAreReportedAsLastReceived) {
  const auto device = Open();
  ASSERT_TRUE(Send(device, {11, 25}));
  ASSERT_TRUE(Send(device, {12, 120}));
  ASSERT_TRUE(Send(device, {1}));
  EXPECT_THAT(Fetch(device, 2), ElementsAre(120, 25));
}

TEST_F(AdapterTest, TransferExchangesFramesWithTheSensor) {
  const auto device = OpenSet();
  ASSERT_TRUE(Send(device, {13, 1, 3, 0x1C, 0x00, 0x56, 0x00, 0x56, 0x00}));
  EXPECT_THAT(Fetch(device, 6), ElementsAre(0, 0, 0x10, 0x30, 0x7A, 0xAF));
  ASSERT_TRUE(Send(device, {14, 5, 1, 0x8E, 0x11}));
  EXPECT_THAT(Fetch(device, 2), ElementsAre(0x7A, 0xAF));
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 0x11);
}

TEST_F(AdapterTest, SixteenFramesFitIntoOneTransfer) {
  const auto device = OpenSet();
  Bytes block = {14, 1, 16};
  for (int frame = 0; frame < 16; ++frame) block.insert(block.end(), {0x56, 0x00});
  ASSERT_TRUE(Send(device, block));
  const Bytes answer = Fetch(device, 32);
  ASSERT_EQ(answer.size(), 32);
  EXPECT_EQ(answer[30], 0x7A);
  EXPECT_EQ(answer[31], 0xAF);
}

TEST_F(AdapterTest, ABoardTransfersNothingUntilBothSettingsWereMadeSincePowerUp) {
  const Bytes frame = {14, 1, 1, 0x8E, 0x11};
  for (const Bytes& setting : {Bytes{12, 120}, Bytes{11, 25}}) {
    adapter_.Unplug(0);
    adapter_.Replug(0);
    const auto device = Open();
    EXPECT_FALSE(Send(device, frame));
    ASSERT_TRUE(Send(device, setting));
    EXPECT_FALSE(Send(device, frame));
    adapter_.CloseHandle(device);
  }
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 8);
  EXPECT_TRUE(Send(OpenSet(), frame));
}

TEST_F(AdapterTest, AnswerIsShortWhenLessIsPendingAndFailsWhenNothingIs) {
  const auto device = Open();
  EXPECT_TRUE(Fetch(device, 2).empty());
  ASSERT_TRUE(Send(device, {0}));
  EXPECT_EQ(Fetch(device, 32).size(), 2);
  EXPECT_TRUE(Fetch(device, 2).empty());
}

TEST_F(AdapterTest, NewBlockDiscardsAnAnswerNobodyFetched) {
  const auto device = OpenSet();
  ASSERT_TRUE(Send(device, {0}));
  ASSERT_TRUE(Send(device, {14, 1, 1, 0x56, 0x00}));
  EXPECT_THAT(Fetch(device, 32), ElementsAre(0, 0));
  ASSERT_TRUE(Send(device, {0}));
  ASSERT_TRUE(Send(device, {11, 25}));
  EXPECT_TRUE(Fetch(device, 32).empty());
}

TEST_F(AdapterTest, UnknownPipeCodeAndPipeNumberFormAreRefused) {
  const auto device = Open();
  Bytes block = {0};
  EXPECT_FALSE(Request(device, 0x222051, {2, 0, 0, 0}, block));
  EXPECT_FALSE(Request(device, 0x222051, {0}, block));
  EXPECT_FALSE(Request(device, 0x222099, {0, 0, 0, 0}, block));
}

class MalformedBlock : public AdapterTest, public ::testing::WithParamInterface<Bytes> {};

TEST_P(MalformedBlock, StallsAndNothingReachesTheSensor) {
  const auto device = OpenSet();
  EXPECT_FALSE(Send(device, GetParam()));
  EXPECT_EQ(returned_, 0);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 8);
  EXPECT_EQ(bench_.Status(), 0);
}

Bytes TransferOf(std::size_t frames) {
  Bytes block = {14, 1, static_cast<std::uint8_t>(frames)};
  for (std::size_t i = 0; i < frames; ++i) block.insert(block.end(), {0x8E, 0x11});
  return block;
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, MalformedBlock,
    ::testing::Values(Bytes{}, Bytes{0, 0}, Bytes{1, 0}, Bytes{2}, Bytes{10, 1},
                      Bytes{15, 1, 1, 0, 0}, Bytes{11}, Bytes{11, 0}, Bytes{11, 25, 0}, Bytes{12},
                      Bytes{12, 120, 0}, Bytes{13}, Bytes{13, 1}, Bytes{13, 1, 0},  // no frame
                      Bytes{13, 1, 1, 0x8E}, Bytes{13, 1, 1, 0x8E, 0x11, 0x00},     // wrong length
                      Bytes{14, 1, 2, 0x8E, 0x11},                                  // one missing
                      Bytes{14, 0, 1, 0x8E, 0x11}, Bytes{14, 6, 1, 0x8E, 0x11},     // delay
                      TransferOf(17)));

TEST_F(AdapterTest, SixteenIsTheLimitAndAWellFormedBlockOfItDoesReachTheSensor) {
  ASSERT_TRUE(Send(OpenSet(), TransferOf(16)));
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 0x11);
}

}  // namespace
}  // namespace kestrel
