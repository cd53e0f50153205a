// SPI frames and addresses of the sensor, apart from the program's table.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace kestrel {

// Byte addresses of the sensor's registers, transcribed apart from the program's table.
namespace address {
inline constexpr int kXNull = 0x02;
inline constexpr int kYNull = 0x04;
inline constexpr int kZNull = 0x06;
inline constexpr int kSupplyOut = 0x0A;
inline constexpr int kTempOut = 0x0C;
inline constexpr int kFftAvg = 0x0E;
inline constexpr int kBufPntr = 0x10;
inline constexpr int kRecPntr = 0x12;
inline constexpr int kXBuf = 0x14;
inline constexpr int kYBuf = 0x16;
inline constexpr int kZBuf = 0x18;
inline constexpr int kRecCnt = 0x1A;
inline constexpr int kRecCtrl = 0x1C;
inline constexpr int kRecPrd = 0x1E;
inline constexpr int kAlmCtrl = 0x34;
inline constexpr int kDioCtrl = 0x36;
inline constexpr int kGpioCtrl = 0x38;
inline constexpr int kStatus = 0x3C;
inline constexpr int kAlmXStat = 0x40;
inline constexpr int kAlmYStat = 0x42;
inline constexpr int kAlmZStat = 0x44;
inline constexpr int kAlmXPeak = 0x46;
inline constexpr int kAlmYPeak = 0x48;
inline constexpr int kAlmZPeak = 0x4A;
inline constexpr int kAlmXFreq = 0x70;
inline constexpr int kAlmYFreq = 0x72;
inline constexpr int kAlmZFreq = 0x74;
inline constexpr int kRecInfo = 0x76;
}  // namespace address

using Frames = std::vector<int>;

// The read command, sent twice: the answer comes with the second.
inline Frames ReadFrames(int address) {
  return {address * 256, address * 256};
}

// High byte first.
inline Frames WriteFrames(int address, int word) {
  return {0x8000 + (address + 1) * 256 + word / 256, 0x8000 + address * 256 + word % 256};
}

inline constexpr int kClearStatusFrame = 0xBE10;
inline constexpr int kCaptureFrame = 0xBF08;
inline constexpr int kStopFrame = 0xE8E8;

inline Frames operator+(Frames first, const Frames& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// Peak magnitude and bin, axis by axis.
inline Frames PeakFrames() {
  return ReadFrames(address::kAlmXPeak) + ReadFrames(address::kAlmXFreq) +
         ReadFrames(address::kAlmYPeak) + ReadFrames(address::kAlmYFreq) +
         ReadFrames(address::kAlmZPeak) + ReadFrames(address::kAlmZFreq);
}

inline Frames AlarmStatusFrames() {
  return ReadFrames(address::kAlmXStat) + ReadFrames(address::kAlmYStat) +
         ReadFrames(address::kAlmZStat);
}

// Peaks come before the status word.
inline Frames StatusFrames() {
  return PeakFrames() + ReadFrames(address::kStatus);
}

}  // namespace kestrel
