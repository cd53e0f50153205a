// SPI frames: answers a frame later, bytes, masks.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using Frames = SensorTest;

TEST_F(Frames, AnswerComesInTheFrameAfterTheRead) {
  EXPECT_EQ(sensor.Exchange(0x5600), 0x0000);
  EXPECT_EQ(sensor.PendingAnswer(), 31407);
  EXPECT_EQ(sensor.Exchange(0x1C00), 31407);
  EXPECT_EQ(sensor.Exchange(0x0E00), 0x1030);
  EXPECT_EQ(sensor.Exchange(0x0E00), 0x0008);
}

TEST_F(Frames, ReadOfAnOddAddressGivesTheWholeWord) {
  EXPECT_EQ(Read(0x1D), 0x1030);
  EXPECT_EQ(Read(0x53), Read(0x52));
}

TEST_F(Frames, WriteChangesOneByte) {
  sensor.Exchange(0x9E12);
  EXPECT_EQ(Read(0x1E), 0x0012);
  sensor.Exchange(0x9F01);
  EXPECT_EQ(Read(0x1E), 0x0112);
}

TEST_F(Frames, AfterAWriteZeroIsShiftedOut) {
  sensor.Exchange(0x5600);
  EXPECT_EQ(sensor.Exchange(0x9E12), 31407);
  EXPECT_EQ(sensor.Exchange(0x0000), 0);
}

TEST_F(Frames, AnswerIsTheValueAtTheTimeOfTheReadFrame) {
  Write(reg::kRecPrd, 0x0105);
  sensor.Exchange(0x1E00);
  EXPECT_EQ(sensor.Exchange(0x9E09), 0x0105);
}

TEST_F(Frames, WrongNumberOfClocksSetsSpiFailureAndLosesTheAnswer) {
  sensor.Exchange(0x5600);
  sensor.FrameError();
  EXPECT_EQ(sensor.Exchange(0x0000), 0);
  EXPECT_EQ(Status(), 0x0008);
}

struct Row {
  const char* name;
  std::uint8_t address;
  std::uint16_t atPowerUp;
  std::uint16_t afterOnes;  // after 0xFFFF was written
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class Registers : public ::testing::TestWithParam<Row> {
 protected:
  Bench bench_;
};

TEST_P(Registers, StartAtTheFactoryValueAndTakeOnlyWhatMayBeWritten) {
  const Row& row = GetParam();
  ASSERT_EQ(bench_.Read(row.address), row.atPowerUp);
  bench_.Write(row.address, 0xFFFF);
  EXPECT_EQ(bench_.Read(row.address), row.afterOnes);
  const bool readOnly = row.afterOnes == row.atPowerUp;
  bench_.Write(row.address, 0x0000);
  EXPECT_EQ(bench_.Read(row.address), readOnly ? row.atPowerUp : 0x0000);
}

// clang-format off
constexpr Row kRows[] = {
    {"ENDURANCE",    0x00, 0x0000, 0x0000},
    {"X_NULL",       0x02, 0x0000, 0xFFFF},
    {"Y_NULL",       0x04, 0x0000, 0xFFFF},
    {"Z_NULL",       0x06, 0x0000, 0xFFFF},
    {"REC_FLSH_CNT", 0x08, 0x0000, 0x0000},
    {"SUPPLY_OUT",   0x0A,   2703,   2703},
    {"TEMP_OUT",     0x0C,   1277,   1277},
    {"FFT_AVG",      0x0E, 0x0008, 0xFFFF},
    {"BUF_PNTR",     0x10, 0x0000, 0xFFFF},
    {"REC_PNTR",     0x12, 0x0000, 0x000F},
    {"X_BUF",        0x14, 0x0000, 0x0000},
    {"Y_BUF",        0x16, 0x0000, 0x0000},
    {"Z_BUF",        0x18, 0x0000, 0x0000},
    {"REC_CNT",      0x1A, 0x0000, 0xFFFF},
    {"REC_CTRL",     0x1C, 0x1030, 0x3FBF},
    {"REC_PRD",      0x1E, 0x0000, 0xFFFF},
    {"ALM_F_LOW",    0x20, 0x0000, 0xFFFF},
    {"ALM_F_HIGH",   0x22, 0x0000, 0xFFFF},
    {"ALM_X_MAG1",   0x24, 0x0000, 0xFFFF},
    {"ALM_Y_MAG1",   0x26, 0x0000, 0xFFFF},
    {"ALM_Z_MAG1",   0x28, 0x0000, 0xFFFF},
    {"ALM_X_MAG2",   0x2A, 0x0000, 0xFFFF},
    {"ALM_Y_MAG2",   0x2C, 0x0000, 0xFFFF},
    {"ALM_Z_MAG2",   0x2E, 0x0000, 0xFFFF},
    {"ALM_PNTR",     0x30, 0x0000, 0xFFFF},
    {"ALM_S_MAG",    0x32, 0x0000, 0xFFFF},
    {"ALM_CTRL",     0x34, 0x0000, 0x0FFF},
    {"DIO_CTRL",     0x36, 0x000F, 0x00FF},
    {"GPIO_CTRL",    0x38, 0x0000, 0xFFFF},
    {"nothing_3A",   0x3A, 0x0000, 0x0000},
    {"STATUS",       0x3C, 0x0000, 0xFFFF},
    {"ALM_X_STAT",   0x40, 0x0000, 0x0000},
    {"ALM_Y_STAT",   0x42, 0x0000, 0x0000},
    {"ALM_Z_STAT",   0x44, 0x0000, 0x0000},
    {"ALM_X_PEAK",   0x46, 0x0000, 0x0000},
    {"ALM_Y_PEAK",   0x48, 0x0000, 0x0000},
    {"ALM_Z_PEAK",   0x4A, 0x0000, 0x0000},
    {"TIME_STMP_L",  0x4C, 0x0000, 0x0000},
    {"TIME_STMP_H",  0x4E, 0x0000, 0x0000},
    {"KEYCODE",      0x50, 0x0000, 0xFFFF},
    {"REV_DAY",      0x52, 0x0E02, 0xFFFF},
    {"MONTH_YEAR",   0x54, 0x1506, 0xFFFF},
    {"PROD_ID",      0x56,  31407,  31407},
    {"SCRATCH_A",    0x58, 0x0000, 0xFFFF},
    {"SCRATCH_B",    0x5A, 0x0000, 0x0000},
    {"SIGNTRL",      0x60, 0x4B31, 0xFFFF},
    {"SIGNTRU",      0x62, 0x9E07, 0xFFFF},
    {"CHKSUMM",      0x64, 0x25C8, 0xFFFF},
    {"ST_CTRL",      0x66, 0x0000, 0xFFFF},
    {"nothing_68",   0x68, 0x0000, 0x0000},
    {"ALM_X_FREQ",   0x70, 0x0000, 0xFFFF},
    {"ALM_Y_FREQ",   0x72, 0x0000, 0xFFFF},
    {"ALM_Z_FREQ",   0x74, 0x0000, 0xFFFF},
    {"REC_INFO",     0x76, 0x0000, 0x0000},
    {"nothing_7E",   0x7E, 0x0000, 0x0000},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, Registers, ::testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(Frames, CommandReadsZero) {
  sensor.Exchange(0xBE01);
  EXPECT_EQ(Read(reg::kCommand), 0);
}

TEST_F(Frames, WriteToABufferChangesTheWordPointedAt) {
  Capture();
  Write(reg::kPointer, 7);
  Write(reg::kXBuf, 0xA55A);
  const auto spectrum = Spectrum(0);
  EXPECT_EQ(spectrum[7], 0xA55A);
  EXPECT_EQ(spectrum[6], 0);
  EXPECT_EQ(Spectrum(1)[7], 0);
}

}  // namespace
}  // namespace kestrel
