// Command blocks and their answers.
// SPDX-License-Identifier: MIT
// Command blocks and their answers.

#include "numeric/runtime_error.h"
#include "support/given.h"
#include "usb_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOpen = "open \\\\.\\Ezusb-0 40000000 2 3";

class UsbAdapterTest : public UsbTest {
 protected:
  void SetUp() override { SelectABoard(); }
};

TEST_F(UsbAdapterTest, TwoFramesInOneTransfer) {
  Given(SpiTx)(1) = 0x1C00;
  Given(SpiTx)(2) = 0x1C00;
  boards_.answers = {{0x12, 0x34, 0xFF, 0xFE}};
  usb_.UsbSpiTransfer(2);
  EXPECT_THAT(boards_.Log(), ElementsAre(kOpen, "send 0D 01 02 1C 00 1C 00", "receive 4", "close"));
  EXPECT_EQ(SpiRx(1), 0x1234);
  EXPECT_EQ(SpiRx(2), 0xFFFE);
  EXPECT_EQ(SpiWordCount, 2);
}

TEST_F(UsbAdapterTest, SixteenFramesAreTheMost) {
  std::string block = "0D 01 10";
  std::vector<std::uint8_t> answer;
  for (int i = 1; i <= 16; ++i) {
    Given(SpiTx)(i) = i * 256 + 15 * i;
    char frame[8];
    std::snprintf(frame, sizeof frame, " %02X %02X", static_cast<unsigned>(i),
                  static_cast<unsigned>(15 * i));
    block += frame;
    answer.push_back(static_cast<std::uint8_t>(100 + i));
    answer.push_back(static_cast<std::uint8_t>(200 + i));
  }
  boards_.answers = {answer};
  usb_.UsbSpiTransfer(16);
  EXPECT_THAT(boards_.Log(), ElementsAre(kOpen, "send " + block, "receive 32", "close"));
  for (int i = 1; i <= 16; ++i) EXPECT_EQ(SpiRx(i), (100 + i) * 256 + 200 + i);
}

TEST_F(UsbAdapterTest, OtherNumbersOfFramesAreRefused) {
  for (const int n : {0, -1, 17}) {
    EXPECT_THROW(usb_.UsbSpiTransfer(n), RuntimeError) << n;
    EXPECT_THROW(Given(SpiTx)(n) = 1, RuntimeError) << n;
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

TEST_F(UsbAdapterTest, CommandTellsWhetherChipSelectFallsPerWord) {
  boards_.answers = {{0, 0}, {0, 0}};
  Given(UsbCsPerWord) = false;
  usb_.UsbSpiTransfer(1);
  Given(UsbCsPerWord) = true;
  usb_.UsbSpiTransfer(1);
  EXPECT_THAT(boards_.Sent(), ElementsAre("0E 01 01 00 00", "0D 01 01 00 00"));
}

TEST_F(UsbAdapterTest, DelayCodeIsKeptFrom1To5) {
  struct Row {
    std::uint8_t asked;
    std::uint8_t used;
    const char* block;
  };
  for (const Row& row :
       {Row{0, 1, "0D 01 01 00 00"}, Row{1, 1, "0D 01 01 00 00"}, Row{3, 3, "0D 03 01 00 00"},
        Row{5, 5, "0D 05 01 00 00"}, Row{6, 5, "0D 05 01 00 00"}, Row{9, 5, "0D 05 01 00 00"},
        Row{255, 5, "0D 05 01 00 00"}}) {
    boards_.ClearLog();
    boards_.answers = {{0, 0}};
    Given(UsbSpiDelay) = row.asked;
    usb_.UsbSpiTransfer(1);
    EXPECT_EQ(UsbSpiDelay, row.used) << int{row.asked};
    EXPECT_THAT(boards_.Sent(), ElementsAre(row.block)) << int{row.asked};
  }
}

TEST_F(UsbAdapterTest, EveryHighByteUpTo254IsSentAsItIs) {
  for (int high = 0; high <= 254; ++high) {
    boards_.ClearLog();
    boards_.answers = {{0, 0}};
    Given(SpiTx)(1) = high * 256 + 0xA5;
    usb_.UsbSpiTransfer(1);
    char block[20];
    std::snprintf(block, sizeof block, "0D 01 01 %02X A5", static_cast<unsigned>(high));
    EXPECT_THAT(boards_.Sent(), ElementsAre(block));
  }
}

TEST_F(UsbAdapterTest, HighByte255Overflows) {
  Given(SpiTx)(1) = 0x1C00;
  Given(SpiTx)(2) = 0xFF00;
  try {
    usb_.UsbSpiTransfer(2);
    FAIL() << "was sent";
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(), "Overflow");
  }
  EXPECT_THAT(boards_.Log(), ElementsAre(kOpen, "close"));
  EXPECT_TRUE(UsbPresent);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbAdapterTest, NothingIsSentWithoutABoard) {
  Given(UsbPresent) = false;
  Given(SpiRx)(1) = 77;
  Given(UsbSpiDelay) = 9;
  Given(UsbSpiBits) = 120;
  usb_.UsbSpiTransfer(1);
  usb_.UsbSetupSpi(3);
  usb_.UsbSetSpiBits(4);
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_EQ(SpiRx(1), 77);
  EXPECT_EQ(UsbSpiDelay, 9);
  EXPECT_EQ(UsbSpiBits, 120);
  EXPECT_EQ(UsbSpiSetupValue, 25);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbAdapterTest, SettingsAreTwoByteBlocks) {
  usb_.UsbSetSpiBits(120);
  usb_.UsbSetupSpi(25);
  EXPECT_THAT(boards_.Log(),
              ElementsAre(kOpen, "send 0C 78", "close", kOpen, "send 0B 19", "close"));
}

TEST_F(UsbAdapterTest, SettingsAreKept) {
  usb_.UsbSetSpiBits(0);
  usb_.UsbSetupSpi(0);
  EXPECT_EQ(UsbSpiBits, 0);
  EXPECT_EQ(UsbSpiSetupValue, 1);
  EXPECT_THAT(boards_.Sent(), ElementsAre("0C 00", "0B 01"));
  usb_.UsbSetSpiBits(255);
  usb_.UsbSetupSpi(254);
  EXPECT_EQ(UsbSpiBits, 255);
  EXPECT_EQ(UsbSpiSetupValue, 254);
}

TEST_F(UsbAdapterTest, BulkTransferIsOneRequest) {
  const UsbDriver::Handle handle = usb_.OpenDevice("Ezusb-0");
  boards_.ClearLog();
  boards_.answers = {{8, 9}};
  std::array<std::uint8_t, 1> block{1};
  std::array<std::uint8_t, 2> answer{};
  EXPECT_EQ(usb_.BulkTransfer(handle, 0, block), 1);
  EXPECT_EQ(usb_.BulkTransfer(handle, 1, answer), 1);
  EXPECT_THAT(boards_.Log(), ElementsAre("send 01", "receive 2"));
  EXPECT_THAT(answer, ElementsAre(8, 9));
  boards_.CloseHandle(handle);
}

TEST_F(UsbAdapterTest, BulkTransferWithoutHandleIsRefused) {
  std::array<std::uint8_t, 1> block{1};
  EXPECT_EQ(usb_.BulkTransfer(0, 0, block), -2);
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

TEST_F(UsbAdapterTest, BulkTransferThatFailsIsNotRepeated) {
  const UsbDriver::Handle handle = usb_.OpenDevice("Ezusb-0");
  boards_.ClearLog();
  std::array<std::uint8_t, 1> block{1};
  boards_.FailAt(1);
  EXPECT_EQ(usb_.BulkTransfer(handle, 0, block), 0);
  EXPECT_THAT(boards_.Log(), ElementsAre("send 01"));
  boards_.CloseHandle(handle);
}

TEST_F(UsbAdapterTest, ResetRestoresEveryName) {
  Given(SpiTx)(1) = 1;
  Given(SpiTx)(16) = 1;
  Given(SpiRx)(1) = 1;
  Given(SpiRx)(16) = 1;
  Given(SpiWordCount) = 4;
  ResetAdapterState();
  for (int i = 1; i <= 16; ++i) {
    EXPECT_EQ(SpiTx(i), 0);
    EXPECT_EQ(SpiRx(i), 0);
  }
  EXPECT_EQ(SpiWordCount, 0);
  EXPECT_EQ(AdapterCount, 0);
  EXPECT_EQ(SelectedAdapterNumber, -1);
  EXPECT_FALSE(AdapterRecords[0].present);
  EXPECT_FALSE(SelectedAdapter.present);
  EXPECT_EQ(SelectedAdapter.deviceName, "");
}

}  // namespace
}  // namespace kestrel
