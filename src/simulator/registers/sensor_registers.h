// The sensor's own transcription of its registers and STATUS bits.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

// The sensor's registers, in its own words; byte addresses of the low byte.
namespace kestrel::sensor {

inline constexpr std::uint8_t kEndurance = 0x00;
inline constexpr std::uint8_t kXNull = 0x02;
inline constexpr std::uint8_t kRecFlshCnt = 0x08;
inline constexpr std::uint8_t kSupplyOut = 0x0A;
inline constexpr std::uint8_t kTempOut = 0x0C;
inline constexpr std::uint8_t kFftAvg = 0x0E;
inline constexpr std::uint8_t kBufPntr = 0x10;
inline constexpr std::uint8_t kRecPntr = 0x12;
inline constexpr std::uint8_t kXBuf = 0x14;
inline constexpr std::uint8_t kZBuf = 0x18;
inline constexpr std::uint8_t kRecCnt = 0x1A;
inline constexpr std::uint8_t kRecCtrl = 0x1C;
inline constexpr std::uint8_t kRecPrd = 0x1E;
inline constexpr std::uint8_t kAlmFLow = 0x20;
inline constexpr std::uint8_t kAlmPntr = 0x30;
inline constexpr std::uint8_t kAlmSMag = 0x32;
inline constexpr std::uint8_t kAlmCtrl = 0x34;
inline constexpr std::uint8_t kDioCtrl = 0x36;
inline constexpr std::uint8_t kGpioCtrl = 0x38;
inline constexpr std::uint8_t kStatus = 0x3C;
inline constexpr std::uint8_t kCommand = 0x3E;
inline constexpr std::uint8_t kAlmXStat = 0x40;
inline constexpr std::uint8_t kAlmXPeak = 0x46;
inline constexpr std::uint8_t kTimeStmpL = 0x4C;
inline constexpr std::uint8_t kTimeStmpH = 0x4E;
inline constexpr std::uint8_t kStopRequest = 0x68;  // one byte, write only
inline constexpr std::uint8_t kAlmXFreq = 0x70;
inline constexpr std::uint8_t kRecInfo = 0x76;

inline constexpr std::uint8_t kStopKey = 0xE8;

// Tell about the record that is in the buffers, whether just captured or retrieved from flash.
inline constexpr std::array<std::uint8_t, 14> kRecordRegisters = {
    kSupplyOut,    kTempOut,      kRecInfo,      kTimeStmpL,   kTimeStmpH,
    kAlmXStat,     kAlmXStat + 2, kAlmXStat + 4, kAlmXPeak,    kAlmXPeak + 2,
    kAlmXPeak + 4, kAlmXFreq,     kAlmXFreq + 2, kAlmXFreq + 4};

// STATUS bits.
inline constexpr std::uint16_t kSupplyLow = 1U << 0;
inline constexpr std::uint16_t kSupplyHigh = 1U << 1;
inline constexpr std::uint16_t kFlashUpdateFailure = 1U << 2;
inline constexpr std::uint16_t kSpiFailure = 1U << 3;
inline constexpr std::uint16_t kRecordingEscape = 1U << 4;
inline constexpr std::uint16_t kSelfTestFailure = 1U << 5;
inline constexpr std::uint16_t kFlashMemoryFailure = 1U << 6;
inline constexpr std::uint16_t kDataReady = 1U << 7;
inline constexpr std::uint16_t kXAlarm1 = 1U << 8;  // then Y and Z
inline constexpr std::uint16_t kXAlarm2 = 1U << 11;
inline constexpr std::uint16_t kSystemAlarm = 1U << 14;

inline constexpr std::uint16_t kAlarms1 = 7 * kXAlarm1;
inline constexpr std::uint16_t kAlarms2 = 7 * kXAlarm2;
inline constexpr std::uint16_t kAlarmFlags = kAlarms1 | kAlarms2 | kSystemAlarm;

// What a restart does to a register.
enum class Keeps {
  Forever,   // wired, or counted in flash
  Settings,  // taken from flash, saved there by command
  Nothing,   // back to its reset value
};

struct RegisterSpec {
  std::uint8_t address;
  std::uint16_t reset;
  std::uint16_t writable;  // mask of the bits that a write frame changes
  Keeps keeps;
};

// clang-format off
inline constexpr std::array kRegisters = {
    //           address  reset   writable
    RegisterSpec{0x00, 0x0000, 0x0000, Keeps::Forever},   // ENDURANCE
    RegisterSpec{0x02, 0x0000, 0xFFFF, Keeps::Settings},  // X_NULL
    RegisterSpec{0x04, 0x0000, 0xFFFF, Keeps::Settings},  // Y_NULL
    RegisterSpec{0x06, 0x0000, 0xFFFF, Keeps::Settings},  // Z_NULL
    RegisterSpec{0x08, 0x0000, 0x0000, Keeps::Forever},   // REC_FLSH_CNT
    RegisterSpec{0x0A, 0x0000, 0x0000, Keeps::Nothing},   // SUPPLY_OUT
    RegisterSpec{0x0C, 0x0000, 0x0000, Keeps::Nothing},   // TEMP_OUT
    RegisterSpec{0x0E, 0x0008, 0xFFFF, Keeps::Settings},  // FFT_AVG
    RegisterSpec{0x10, 0x0000, 0xFFFF, Keeps::Nothing},   // BUF_PNTR
    RegisterSpec{0x12, 0x0000, 0x000F, Keeps::Settings},  // REC_PNTR
    RegisterSpec{0x1A, 0x0000, 0xFFFF, Keeps::Nothing},   // REC_CNT
    RegisterSpec{0x1C, 0x1030, 0x3FBF, Keeps::Settings},  // REC_CTRL: manual, 70 g, Hanning
    RegisterSpec{0x1E, 0x0000, 0xFFFF, Keeps::Settings},  // REC_PRD
    RegisterSpec{0x20, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_F_LOW
    RegisterSpec{0x22, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_F_HIGH
    RegisterSpec{0x24, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_X_MAG1
    RegisterSpec{0x26, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_Y_MAG1
    RegisterSpec{0x28, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_Z_MAG1
    RegisterSpec{0x2A, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_X_MAG2
    RegisterSpec{0x2C, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_Y_MAG2
    RegisterSpec{0x2E, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_Z_MAG2
    RegisterSpec{0x30, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_PNTR
    RegisterSpec{0x32, 0x0000, 0xFFFF, Keeps::Settings},  // ALM_S_MAG
    RegisterSpec{0x34, 0x0000, 0x0FFF, Keeps::Settings},  // ALM_CTRL
    RegisterSpec{0x36, 0x000F, 0x00FF, Keeps::Settings},  // DIO_CTRL: DIO1 busy, active high
    RegisterSpec{0x38, 0x0000, 0xFFFF, Keeps::Settings},  // GPIO_CTRL
    RegisterSpec{0x3C, 0x0000, 0xFFFF, Keeps::Nothing},   // STATUS
    RegisterSpec{0x40, 0x0000, 0x0000, Keeps::Nothing},   // ALM_X_STAT
    RegisterSpec{0x42, 0x0000, 0x0000, Keeps::Nothing},   // ALM_Y_STAT
    RegisterSpec{0x44, 0x0000, 0x0000, Keeps::Nothing},   // ALM_Z_STAT
    RegisterSpec{0x46, 0x0000, 0x0000, Keeps::Nothing},   // ALM_X_PEAK
    RegisterSpec{0x48, 0x0000, 0x0000, Keeps::Nothing},   // ALM_Y_PEAK
    RegisterSpec{0x4A, 0x0000, 0x0000, Keeps::Nothing},   // ALM_Z_PEAK
    RegisterSpec{0x4C, 0x0000, 0x0000, Keeps::Nothing},   // TIME_STMP_L
    RegisterSpec{0x4E, 0x0000, 0x0000, Keeps::Nothing},   // TIME_STMP_H
    RegisterSpec{0x50, 0x0000, 0xFFFF, Keeps::Nothing},   // KEYCODE
    RegisterSpec{0x52, 0x0E02, 0xFFFF, Keeps::Settings},  // REV 2, DAY 14
    RegisterSpec{0x54, 0x1506, 0xFFFF, Keeps::Settings},  // MONTH 6, YEAR 21
    RegisterSpec{0x56, 0x7AAF, 0x0000, Keeps::Forever},   // PROD_ID 31407
    RegisterSpec{0x58, 0x0000, 0xFFFF, Keeps::Nothing},   // SCRATCH_A
    RegisterSpec{0x60, 0x4B31, 0xFFFF, Keeps::Settings},  // SIGNTRL, SIGNTRM
    RegisterSpec{0x62, 0x9E07, 0xFFFF, Keeps::Settings},  // SIGNTRU, CHKSUML
    RegisterSpec{0x64, 0x25C8, 0xFFFF, Keeps::Settings},  // CHKSUMM, CHKSUMU
    RegisterSpec{0x66, 0x0000, 0xFFFF, Keeps::Nothing},   // ST_CTRL
    RegisterSpec{0x70, 0x0000, 0xFFFF, Keeps::Nothing},   // ALM_X_FREQ
    RegisterSpec{0x72, 0x0000, 0xFFFF, Keeps::Nothing},   // ALM_Y_FREQ
    RegisterSpec{0x74, 0x0000, 0xFFFF, Keeps::Nothing},   // ALM_Z_FREQ
    RegisterSpec{0x76, 0x0000, 0x0000, Keeps::Nothing},   // REC_INFO
};
// clang-format on

// Address of an axis's register in a group of three, X first.
[[nodiscard]] constexpr std::uint8_t OfAxis(std::uint8_t xAddress, std::size_t axis) {
  return static_cast<std::uint8_t>(xAddress + 2 * axis);
}

}  // namespace kestrel::sensor
