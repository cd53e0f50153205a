// The sensor's registers written down a second time, row by row.
// SPDX-License-Identifier: MIT
#include "regmap/register_table.h"
#include "support/given.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>

namespace kestrel {
namespace {

class RegisterTable : public testing::Test {
 protected:
  RegisterTable() { BuildRegisterTable(); }
  ~RegisterTable() override { ResetRegisterTable(); }
};

// The sensor's registers written down a second time: a slip in one of the two lists shows.
struct Row {
  std::int16_t number;
  const char* name;
  std::int32_t address;
  std::int16_t bits;
  const char* flags;  // s signed, r readable, w writable, x reserved
  std::uint32_t scaleBits;
  std::uint32_t offsetBits;
  int group;
};

// clang-format off
constexpr Row kRows[] = {
//   row  name            address bits flags  scale       offset      group
    { 0, "ENDURANCE",    0x00, 16, "-r--", 0x3F800000, 0x00000000, 2},
    { 1, "X_NULL",       0x02, 16, "srw-", 0x3B9C4001, 0x00000000, 2},
    { 2, "Y_NULL",       0x04, 16, "srw-", 0x3B9C4001, 0x00000000, 2},
    { 3, "Z_NULL",       0x06, 16, "srw-", 0x3B9C4001, 0x00000000, 2},
    { 4, "REC_FLSH_CNT", 0x08, 16, "-r--", 0x3F800000, 0x00000000, 2},
    { 5, "SUPPLY_OUT",   0x0A, 16, "sr--", 0x3A9FFFFF, 0x00000000, 2},
    { 6, "TEMP_OUT",     0x0C, 16, "sr--", 0xBEF0A3D7, 0x441C4000, 2},
    { 7, "FFT_AVG",      0x0E, 16, "srw-", 0x3F800000, 0x00000000, 2},
    { 8, "BUF_PNTR",     0x10, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    { 9, "REC_PNTR",     0x12,  4, "-rw-", 0x3F800000, 0x00000000, 2},
    {10, "X_BUF",        0x14, 16, "-rw-", 0x3B9C4001, 0x00000000, 2},
    {11, "Y_BUF",        0x16, 16, "-rw-", 0x3B9C4001, 0x00000000, 2},
    {12, "Z_BUF",        0x18, 16, "-rw-", 0x3B9C4001, 0x00000000, 2},
    {13, "REC_CNT",      0x1A, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {14, "REC_CTRL",     0x1C, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {15, "REC_PRD",      0x1E, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {16, "ALM_F_LOW",    0x20, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {17, "ALM_F_HIGH",   0x22, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {18, "ALM_X_MAG1",   0x24, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {19, "ALM_Y_MAG1",   0x26, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {20, "ALM_Z_MAG1",   0x28, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {21, "ALM_X_MAG2",   0x2A, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {22, "ALM_Y_MAG2",   0x2C, 15, "-rw-", 0x3F800000, 0x00000000, 2},
    {23, "ALM_Z_MAG2",   0x2E, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {24, "ALM_PNTR",     0x30, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {25, "ALM_S_MAG",    0x32, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {26, "ALM_CTRL",     0x34, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {27, "DIO_CTRL",     0x36,  8, "-rw-", 0x3F800000, 0x00000000, 1},
    {28, "GPIO_CTRL",    0x38, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {29, "STATUS",       0x3C, 16, "-rw-", 0x3F800000, 0x00000000, 2},
    {30, "COMMAND",      0x3E, 16, "--w-", 0x3F800000, 0x00000000, 4},
    {31, "ALM_X_STAT",   0x40, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {32, "ALM_Y_STAT",   0x42, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {33, "ALM_Z_STAT",   0x44, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {34, "ALM_X_PEAK",   0x46, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {35, "ALM_Y_PEAK",   0x48, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {36, "ALM_Z_PEAK",   0x4A, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {37, "TIME_STMP_L",  0x4C, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {38, "TIME_STMP_H",  0x4E, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {39, "KEYCODE",      0x50, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {40, "REV",          0x52, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {41, "DAY",          0x53, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {42, "MONTH",        0x54, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {43, "YEAR",         0x55, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {44, "PROD_ID",      0x56, 16, "-r--", 0x3F800000, 0x00000000, 4},
    {45, "SCRATCH_A",    0x58, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {46, "SCRATCH_B",    0x5A, 16, "---x", 0x3F800000, 0x00000000, 4},
    {47, "SIGNTRL",      0x60, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {48, "SIGNTRM",      0x61, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {49, "SIGNTRU",      0x62, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {50, "CHKSUML",      0x63, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {51, "CHKSUMM",      0x64, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {52, "CHKSUMU",      0x65, 16, "-rwx", 0x3F800000, 0x00000000, 4},
    {53, "ST_CTRL",      0x66, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {54, "ALM_X_FREQ",   0x70, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {55, "ALM_Y_FREQ",   0x72, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {56, "ALM_Z_FREQ",   0x74, 16, "-rw-", 0x3F800000, 0x00000000, 4},
    {57, "REC_INFO",     0x76, 26, "-r--", 0x3F800000, 0x00000000, 4},
};
// clang-format on

bool Has(const Row& row, char flag) {
  return std::string(row.flags).find(flag) != std::string::npos;
}

void ExpectEmpty(std::int16_t at) {
  SCOPED_TRACE(at);
  EXPECT_EQ(RegName[at], "");
  EXPECT_EQ(RegAddr[at], 0);
  EXPECT_EQ(RegBits[at], 0);
  EXPECT_EQ(RegGroup[at], 0);
  EXPECT_EQ(RegScale[at], 0.0F);
  EXPECT_EQ(RegOffset[at], 0.0F);
  for (const auto* flags :
       {&RegSigned, &RegReadable, &RegWritable, &RegReserved, &RegKeepBit15, &RegKeepBit14}) {
    EXPECT_FALSE((*flags)[at]);
  }
}

TEST_F(RegisterTable, EveryRowIsAsTheSensorHasIt) {
  ASSERT_EQ(std::size(kRows), 58U);
  std::int16_t expectedNumber = 0;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const std::int16_t at = row.number;
    EXPECT_EQ(at, expectedNumber++);
    EXPECT_EQ(RegName[at], row.name);
    EXPECT_EQ(RegAddr[at], row.address);
    EXPECT_EQ(RegBits[at], row.bits);
    EXPECT_EQ(RegSigned[at], Has(row, 's'));
    EXPECT_EQ(RegReadable[at], Has(row, 'r'));
    EXPECT_EQ(RegWritable[at], Has(row, 'w'));
    EXPECT_EQ(RegReserved[at], Has(row, 'x'));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(RegScale[at]), row.scaleBits);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(RegOffset[at]), row.offsetBits);
    EXPECT_EQ(RegGroup[at], row.group);
    EXPECT_FALSE(RegKeepBit15[at]);
    EXPECT_FALSE(RegKeepBit14[at]);
  }
}

TEST_F(RegisterTable, CountIsTheHighestFilledRow) {
  EXPECT_EQ(RegCount, 57);
}

TEST_F(RegisterTable, RowsPastTheCountAreEmpty) {
  for (std::int16_t at = 58; at <= 85; ++at) {
    ExpectEmpty(at);
  }
}

TEST_F(RegisterTable, RowsOutsideTheTableAreAnIndexError) {
  for (const std::int16_t at :
       {std::int16_t{-1}, std::int16_t{86}, std::int16_t{32767}, std::int16_t{-32768}}) {
    try {
      Given(RegName)[at] = "never";
      ADD_FAILURE() << "row " << at << " was accepted";
    } catch (const RuntimeError& error) {
      EXPECT_STREQ(error.what(), "Subscript out of range");
    }
    const auto& addresses = RegAddr;
    EXPECT_THROW(static_cast<void>(addresses[at]), RuntimeError) << at;
  }
}

TEST_F(RegisterTable, RowVariablesNumberTheRowsInOrder) {
  std::int16_t expected = 0;
#define KESTREL_EXPECT_ROW(name)    \
  EXPECT_EQ(row::name, expected++); \
  EXPECT_EQ(RegName[row::name], #name);
  KESTREL_REGISTER_NAMES(KESTREL_EXPECT_ROW)
#undef KESTREL_EXPECT_ROW
  EXPECT_EQ(expected, 58);
}

TEST_F(RegisterTable, RowVariablesOfTheBestKnownRows) {
  EXPECT_EQ(row::ENDURANCE, 0);
  EXPECT_EQ(row::REC_CTRL, 14);
  EXPECT_EQ(row::STATUS, 29);
  EXPECT_EQ(row::COMMAND, 30);
  EXPECT_EQ(row::KEYCODE, 39);
  EXPECT_EQ(row::REC_INFO, 57);
}

TEST_F(RegisterTable, BuildingAgainUndoesChangesOfTheRun) {
  Given(RegName)[row::STATUS] = "STATUS      ";
  Given(RegSigned)[row::X_BUF] = true;
  Given(row::COMMAND) = 5;
  Given(RegCount) = 3;
  BuildRegisterTable();
  EXPECT_EQ(RegName[29], "STATUS");
  EXPECT_FALSE(RegSigned[10]);
  EXPECT_EQ(row::COMMAND, 30);
  EXPECT_EQ(RegCount, 57);
}

TEST_F(RegisterTable, ResetEmptiesTheTable) {
  ResetRegisterTable();
  EXPECT_EQ(RegCount, 0);
  for (std::int16_t at = 0; at <= 85; ++at) {
    ExpectEmpty(at);
  }
#define KESTREL_EXPECT_NO_ROW(name) EXPECT_EQ(row::name, -1) << #name;
  KESTREL_REGISTER_NAMES(KESTREL_EXPECT_NO_ROW)
#undef KESTREL_EXPECT_NO_ROW
}

}  // namespace
}  // namespace kestrel
