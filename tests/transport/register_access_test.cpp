// Registers over the USB adapter, and without any interface.
// SPDX-License-Identifier: MIT
// Registers over the USB adapter, and without any interface.

#include "transport/register_access.h"
#include "support/given.h"

#include <bit>
#include <chrono>

#include "numeric/runtime_error.h"
#include "regmap/register_table.h"
#include "support/fake_clock.h"
#include "support/recording_pointer.h"
#include "support/unused_hardware.h"
#include "usb_fixture.h"

namespace kestrel {
namespace {

using std::chrono::microseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class RegisterAccessTest : public UsbTest {
 protected:
  RegisterAccessTest() {
    Reset();
    delay_.SkipCalibration();
    BuildRegisterTable();
    registers_.Use(kUsbAdapter);
  }
  ~RegisterAccessTest() override { Reset(); }
  void SetUp() override { SelectABoard(); }

  // Reads a row while the sensor answers with this word; the first answer is of an earlier frame.
  void Read(std::int16_t row, int word) {
    boards_.answers = {
        {0xDE, 0xAD, static_cast<std::uint8_t>(word >> 8), static_cast<std::uint8_t>(word & 0xFF)}};
    registers_.ReadReg(row);
  }

  UnusedPort pins_;
  FakeClock clock_;
  RecordingPointer pointer_;
  SoftwareDelay delay_{clock_, pointer_};
  ParallelPort port_{pins_, delay_};
  RegisterAccess registers_{usb_, port_, delay_};

 private:
  static void Reset() {
    ResetDelayState();
    ResetRegisterTable();
    ResetRegisterAccessState();
  }
};

TEST_F(RegisterAccessTest, ReadSendsTheCommandTwiceAndTakesTheSecondAnswer) {
  Read(row::REC_CTRL, 0x1234);
  EXPECT_THAT(boards_.Log(), ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3",
                                         "send 0D 01 02 1C 00 1C 00", "receive 4", "close"));
  EXPECT_EQ(RegValue, 0x1234);
  EXPECT_EQ(RegScaled, 4660.0F);
  EXPECT_EQ(RegHighByte, 0x12);
  EXPECT_EQ(RegLowByte, 0x34);
  EXPECT_EQ(LptWord, 0x1234);
  EXPECT_THAT(clock_.Waits(), ElementsAre(microseconds{100}));
}

TEST_F(RegisterAccessTest, WordsAreDecodedByWidthAndSign) {
  struct Row {
    std::int16_t row;
    int word;
    int expected;
  };
  const Row rows[] = {{row::X_NULL, 0xFFFF, -1},     {row::X_NULL, 0xFFFE, -2},
                      {row::X_NULL, 0x8000, -32768}, {row::X_NULL, 0x7FFF, 32767},
                      {row::X_BUF, 0xFFFF, 65535},   {row::ALM_Y_MAG2, 0xFFFF, 32767},
                      {row::ALM_Y_MAG2, 0x8001, 1},  {row::REC_PNTR, 0x00F3, 3},
                      {row::DIO_CTRL, 0xA5C3, 0xC3}, {row::REC_INFO, 0xFFFF, 65535},
                      {row::STATUS, 0x8000, 0x8000}};
  for (const Row& row : rows) {
    Read(row.row, row.word);
    EXPECT_EQ(RegValue, row.expected) << RegName[row.row];
    EXPECT_EQ(RegHighByte, row.word / 256) << RegName[row.row];
    EXPECT_EQ(RegLowByte, row.word % 256) << RegName[row.row];
  }
}

TEST_F(RegisterAccessTest, SignIsTakenFromTheTableAtEachRead) {
  Given(RegSigned)[row::X_BUF] = true;
  Read(row::X_BUF, 0xFFFE);
  EXPECT_EQ(RegValue, -2);
  Given(RegSigned)[row::X_BUF] = false;
  Read(row::X_BUF, 0xFFFE);
  EXPECT_EQ(RegValue, 65534);
}

TEST_F(RegisterAccessTest, ScalingIsDoneInSinglePrecision) {
  Read(row::TEMP_OUT, 0);
  EXPECT_EQ(RegScaled, 625.0F);
  Read(row::TEMP_OUT, 1);
  EXPECT_EQ(RegScaled, 624.53F);
  Read(row::SUPPLY_OUT, 4096);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(RegScaled), 0x409FFFFFU);  // the factor times 2^12
  EXPECT_NEAR(RegScaled, 5.0F, 1e-5F);
  Read(row::X_NULL, 0xFFFF);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(RegScaled), 0xBB9C4001U);
}

// The product is rounded to single precision before the offset is added, in every case that a
// 12-bit word makes.
TEST_F(RegisterAccessTest, ProductIsRoundedBeforeTheOffsetIsAdded) {
  for (int word = 0; word < 4096; ++word) {
    Read(row::TEMP_OUT, word);
    volatile float product = static_cast<float>(word) * -0.47F;
    volatile float expected = product + 625.0F;
    ASSERT_EQ(RegScaled, expected) << word;
  }
}

TEST_F(RegisterAccessTest, UnreadableRowsSendNothingAndGiveZero) {
  for (const std::int16_t row :
       {row::COMMAND, row::SCRATCH_B, std::int16_t{58}, std::int16_t{85}}) {
    Given(RegValue) = 7;
    Given(RegScaled) = 7;
    registers_.ReadReg(row);
    EXPECT_EQ(RegValue, 0) << row;
    EXPECT_EQ(RegScaled, 0.0F) << row;
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_THAT(clock_.Waits(), IsEmpty());
}

TEST_F(RegisterAccessTest, RowsOutsideTheTableAreAnIndexError) {
  for (const std::int16_t row : {std::int16_t{-1}, std::int16_t{86}}) {
    for (const bool writes : {false, true}) {
      try {
        writes ? registers_.WriteReg(row, 0) : registers_.ReadReg(row);
        ADD_FAILURE() << row;
      } catch (const RuntimeError& error) {
        EXPECT_STREQ(error.what(), "Subscript out of range");
      }
    }
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

TEST_F(RegisterAccessTest, Bits15And14AreKeptForRowsThatAskForIt) {
  Read(row::STATUS, 0xFFFF);
  EXPECT_EQ(RegBit15, 0);
  EXPECT_EQ(RegBit14, 0);
  Given(RegKeepBit15)[row::STATUS] = true;
  Given(RegKeepBit14)[row::STATUS] = true;
  Read(row::STATUS, 0xC123);
  EXPECT_EQ(RegBit15, 0x8000);
  EXPECT_EQ(RegBit14, 0x4000);
  Read(row::STATUS, 0x3FFF);
  EXPECT_EQ(RegBit15, 0);
  EXPECT_EQ(RegBit14, 0);
}

TEST_F(RegisterAccessTest, WritesHaveTheByteOrderTheRowNeeds) {
  struct Row {
    std::int16_t row;
    std::int32_t value;
    const char* block;
    std::size_t answerSize;
  };
  const Row rows[] = {{row::COMMAND, 0x0800, "0D 01 01 BF 08", 2},
                      {row::COMMAND, 0x0001, "0D 01 01 BE 01", 2},
                      {row::COMMAND, 0x0010, "0D 01 01 BE 10", 2},
                      {row::COMMAND, 0x00FF, "0D 01 01 BE FF", 2},
                      {row::COMMAND, 0x0100, "0D 01 01 BF 01", 2},
                      {row::COMMAND, 0x0801, "0D 01 01 BF 08", 2},  // the low byte is not sent
                      {row::COMMAND, 0x0000, "0D 01 01 BE 00", 2},
                      {row::KEYCODE, 0x1234, "0D 01 02 D0 34 D1 12", 4},
                      {row::REC_CTRL, 0x1234, "0D 01 02 9D 12 9C 34", 4},
                      {row::ENDURANCE, 0xFFFF, "0D 01 02 81 FF 80 FF", 4},
                      {row::REC_INFO, 0x8000, "0D 01 02 F7 80 F6 00", 4},
                      {row::SCRATCH_B, 0x00A5, "0D 01 02 DB 00 DA A5", 4},
                      {row::REC_CTRL, 65536 + 0x1234, "0D 01 02 9D 12 9C 34", 4},
                      {row::REC_CTRL, -1, "0D 01 02 9D 00 9C FF", 4}};  // -1 \ 256 is 0
  for (const Row& row : rows) {
    boards_.ClearLog();
    boards_.answers = {std::vector<std::uint8_t>(row.answerSize)};
    clock_.ClearWaits();
    registers_.WriteReg(row.row, row.value);
    EXPECT_THAT(boards_.Log(),
                ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3", std::string("send ") + row.block,
                            "receive " + std::to_string(row.answerSize), "close"));
    EXPECT_THAT(clock_.Waits(), ElementsAre(microseconds{100}));
  }
}

TEST_F(RegisterAccessTest, EveryTransferUsesTheShortestDelayCode) {
  boards_.answers = {{0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}};
  Given(UsbSpiDelay) = 4;
  registers_.WriteReg(row::COMMAND, 1);
  EXPECT_EQ(UsbSpiDelay, 1);
  Given(UsbSpiDelay) = 4;
  registers_.WriteReg(row::STATUS, 1);
  EXPECT_EQ(UsbSpiDelay, 1);
  Given(UsbSpiDelay) = 4;
  registers_.ReadReg(row::STATUS);
  EXPECT_EQ(UsbSpiDelay, 1);
}

TEST_F(RegisterAccessTest, ByteOperationsMaskTheCallersVariables) {
  boards_.answers = {{0, 0}, {0, 0, 0, 0}, {0, 0, 0x12, 0x34}};
  std::int16_t address = 0x1BE;
  registers_.WriteRegByte(address, 0x10);
  EXPECT_EQ(address, 0x3E);
  std::int16_t address1 = -2;
  std::int16_t data1 = 0x1A5;
  std::int16_t address2 = 0x80;
  std::int16_t data2 = -2;
  registers_.WriteRegBytePair(address1, data1, address2, data2);
  EXPECT_EQ(address1, 126);
  EXPECT_EQ(data1, 0xA5);
  EXPECT_EQ(address2, 0);
  EXPECT_EQ(data2, 0xFE);
  std::int16_t readAddress = 0x9C;
  EXPECT_EQ(registers_.ReadRegWord(readAddress), 0x1234);
  EXPECT_EQ(readAddress, 0x1C);
}

TEST_F(RegisterAccessTest, Address127CannotBeWrittenOverUsb) {
  EXPECT_THROW(registers_.WriteRegByte(127, 0x10), RuntimeError);
  EXPECT_EQ(boards_.Opened(), boards_.Closed());
}

TEST_F(RegisterAccessTest, ByteOperationsThemselvesDoNotWait) {
  boards_.answers = {{0, 0}, {0, 0, 0, 0}};
  registers_.WriteRegByte(0x3E, 1);
  std::int16_t address = 0;
  static_cast<void>(registers_.ReadRegWord(address));
  EXPECT_THAT(clock_.Waits(), IsEmpty());
}

TEST_F(RegisterAccessTest, TableRowsKeepTheirAddresses) {
  Given(RegAddr)[row::STATUS] = 0xBC;
  Read(row::STATUS, 1);
  EXPECT_EQ(RegAddr[row::STATUS], 0xBC);
  EXPECT_THAT(boards_.Sent(), ElementsAre("0D 01 02 3C 00 3C 00"));
}

TEST_F(RegisterAccessTest, ReadThatFailsGivesTheEarlierAnswer) {
  Read(row::STATUS, 0x0080);
  EXPECT_TRUE(registers_.Reachable());
  boards_.FailAt(3);
  Read(row::STATUS, 0x0001);
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Reading SPI"));
  EXPECT_EQ(RegValue, 0x0080);
  EXPECT_FALSE(UsbPresent);
  EXPECT_FALSE(registers_.Reachable());
}

TEST_F(RegisterAccessTest, WithoutInterfaceReadsGiveZeroAndWritesOnlyWait) {
  for (const std::int16_t type : {kNoInterface, std::int16_t{7}}) {
    registers_.Use(type);
    clock_.ClearWaits();
    Given(RegValue) = 7;
    Given(LptWord) = 7;
    EXPECT_FALSE(registers_.Reachable());
    registers_.ReadReg(row::TEMP_OUT);
    EXPECT_EQ(RegValue, 0);
    EXPECT_EQ(RegScaled, 625.0F);  // the offset of a word of 0
    EXPECT_EQ(LptWord, 0);
    registers_.WriteReg(row::COMMAND, 1);
    registers_.WriteReg(row::KEYCODE, 1);
    registers_.WriteReg(row::STATUS, 1);
    EXPECT_EQ(clock_.Waits().size(), 4U);
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

TEST_F(RegisterAccessTest, ResetRestoresEveryName) {
  Given(RegValue) = Given(RegBit15) = Given(RegBit14) = Given(LptWord) = 1;
  Given(RegScaled) = 1;
  Given(RegLowByte) = Given(RegHighByte) = 1;
  ResetRegisterAccessState();
  EXPECT_EQ(RegValue, 0);
  EXPECT_EQ(RegScaled, 0.0F);
  EXPECT_EQ(RegLowByte, 0);
  EXPECT_EQ(RegHighByte, 0);
  EXPECT_EQ(RegBit15, 0);
  EXPECT_EQ(RegBit14, 0);
  EXPECT_EQ(LptWord, 0);
}

}  // namespace
}  // namespace kestrel
