// Registers taken apart into named fields.
// SPDX-License-Identifier: MIT
#include "device/register_fields.h"

#include <gtest/gtest.h>

#include "regmap/register_table.h"
#include "support/reset_device.h"

namespace kestrel {
namespace {

using Lines = std::vector<std::string>;

class RegisterFields : public testing::Test {
 protected:
  RegisterFields() { BuildRegisterTable(); }
  ~RegisterFields() override { ResetDevice(); }

  // Each field as "bits title: text".
  static Lines Describe(std::int16_t row, std::int32_t word) {
    Lines lines;
    for (const cBitFieldProp& field : DescribeRegister(row, word)) {
      lines.push_back(field.BFRange() + " " + field.BFTitle() + ": " + FieldText(field));
    }
    return lines;
  }
};

TEST_F(RegisterFields, BitsStandInGroupsOfFour) {
  EXPECT_EQ(BitText(0x5C01), "0101 1100 0000 0001");
  EXPECT_EQ(BitText(0xFFFE), "1111 1111 1111 1110");
  EXPECT_EQ(BitText(0), "0000 0000 0000 0000");
}

TEST_F(RegisterFields, RecordControl) {
  EXPECT_EQ(
      Describe(row::REC_CTRL, 0x11B6),
      (Lines{"13:12 Windowing: 1  Hanning [default]", "11:8 Sample Rate Option: 1  SR0 (FS / 8)",
             "7 Power-down: 1  On", "5:4 Signal Range: 3  0 - 70g",
             "3:2 Storage Method: 1  Alarm trig", "1:0 Record Mode: 2  Manual time"}));
}

TEST_F(RegisterFields, CodesWithoutAMeaningShowAsNumbers) {
  EXPECT_EQ(Describe(row::REC_CTRL, 0x3F4F),
            (Lines{"13:12 Windowing: 3  UK  v=3", "11:8 Sample Rate Option: 15",
                   "7 Power-down: 0  Off", "5:4 Signal Range: 0  0 - 1g", "3:2 Storage Method: 3",
                   "1:0 Record Mode: 3  Reserved"}));
  EXPECT_EQ(Describe(row::REC_PRD, 0x0305), (Lines{"9:8 Time Unit: 3", "7:0 Count: 5"}));
}

TEST_F(RegisterFields, RecordInformation) {
  EXPECT_EQ(
      Describe(row::REC_INFO, 0x5C08),
      (Lines{"15:14 Sample Rate Option: 1  SR0 (FS / 8)", "13:12 Windowing: 1  Hanning [default]",
             "11:10 Signal Range: 3  0 - 70g [default]", "8:0 FFT Averages: 8"}));
}

TEST_F(RegisterFields, AlarmControl) {
  EXPECT_EQ(Describe(row::ALM_CTRL, 0x0FB9),
            (Lines{"11:8 Response Delay: 15", "7 Latch Alarm Flags in STATUS: 1  On",
                   "6 Alarms 1 and 2 on DIO1 and DIO2: 0  Off",
                   "5 System Alarm When: 1  Greater than the limit",
                   "4 System Alarm Source: 1  Temperature", "3 System Alarm: 1  On",
                   "2 Spectral Alarm Z: 0  Off", "1 Spectral Alarm Y: 0  Off",
                   "0 Spectral Alarm X: 1  On"}));
}

TEST_F(RegisterFields, DigitalLines) {
  EXPECT_EQ(Describe(row::DIO_CTRL, 0x002D),
            (Lines{"5:4 DIO2 Function: 2  Capture trigger", "3:2 DIO1 Function: 3  Busy",
                   "1 DIO2 Polarity: 0  Active low", "0 DIO1 Polarity: 1  Active high"}));
  EXPECT_EQ(Describe(row::GPIO_CTRL, 0x0201),
            (Lines{"9 GPIO2 Output Level: 1  High", "8 GPIO1 Output Level: 0  Low",
                   "1 GPIO2 Direction: 0  Input", "0 GPIO1 Direction: 1  Output"}));
}

TEST_F(RegisterFields, StatusFlags) {
  const Lines lines = Describe(row::STATUS, 0xC081);
  ASSERT_EQ(lines.size(), 15U);
  EXPECT_EQ(lines[0], "14 System Alarm: 1  SET");
  EXPECT_EQ(lines[7], "7 Data Ready: 1  SET");
  EXPECT_EQ(lines[13], "1 Supply > 3.625 V: 0  OK");
  EXPECT_EQ(lines[14], "0 Supply < 3.150 V: 1  FAIL");
}

TEST_F(RegisterFields, CommandBitsByTheNameOfTheirFunction) {
  const Lines lines = Describe(row::COMMAND, 0x8801);
  ASSERT_EQ(lines.size(), 16U);
  EXPECT_EQ(lines[0], "15 Clear null values: 1  Start");
  EXPECT_EQ(lines[4], "11 Record start/stop: 1  Start");
  EXPECT_EQ(lines[9], "6 Flash Update/Save settings: 0");
  EXPECT_EQ(lines[15], "0 Autonull: 1  Start");
}

TEST_F(RegisterFields, AlarmPointer) {
  EXPECT_EQ(Describe(row::ALM_PNTR, 515), (Lines{"15:8 Sample Rate Option: 2", "7:0 Band: 3"}));
}

TEST_F(RegisterFields, RecordingPeriod) {
  EXPECT_EQ(Describe(row::REC_PRD, 0x010A), (Lines{"9:8 Time Unit: 1  Minutes", "7:0 Count: 10"}));
}

TEST_F(RegisterFields, AlarmStateOfEachAxis) {
  for (const std::int16_t axis : {row::ALM_X_STAT, row::ALM_Y_STAT, row::ALM_Z_STAT}) {
    const Lines lines = Describe(axis, 0x9013);
    ASSERT_EQ(lines.size(), 13U);
    EXPECT_EQ(lines[0], "15 Band 6 Alarm 2: 1  Fault");
    EXPECT_EQ(lines[1], "14 Band 6 Alarm 1: 0  OK");
    EXPECT_EQ(lines[3], "12 Band 5 Alarm 1: 1  Warning");
    EXPECT_EQ(lines[10], "5 Band 1 Alarm 2: 0  OK");
    EXPECT_EQ(lines[11], "4 Band 1 Alarm 1: 1  Warning");
    EXPECT_EQ(lines[12], "2:0 Band: 3");
  }
}

TEST_F(RegisterFields, ANumberHasNone) {
  EXPECT_EQ(Describe(row::REC_CNT, 0xFFFF), Lines{});
  EXPECT_EQ(SignedWord(row::REC_CNT, 0xFFFF), 65535);
  EXPECT_EQ(SignedWord(row::X_NULL, 0xFFFE), -2);
}

}  // namespace
}  // namespace kestrel
