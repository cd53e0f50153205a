// Register accesses as SPI frames, and the variables that the last read is left in.
// SPDX-License-Identifier: MIT
#include "transport/register_access.h"

#include <array>

#include "app/program_state.h"
#include "regmap/register_table.h"

namespace kestrel {

std::int32_t RegValue = 0;
float RegScaled = 0;
std::int16_t RegLowByte = 0;
std::int16_t RegHighByte = 0;
std::int32_t RegBit15 = 0;
std::int32_t RegBit14 = 0;

namespace {

constexpr std::int16_t kAddressMask = 127;
constexpr std::int16_t kByteMask = 255;
constexpr std::int32_t kWriteFrame = 0x8000;
// Idle time the sensor needs after each register access.
constexpr float kAccessGapMs = 0.1F;

void MaskInPlace(std::int16_t& value, std::int16_t mask) {
  value = static_cast<std::int16_t>(value & mask);
}

std::int32_t WriteFrame(std::int16_t address, std::int32_t data) {
  return address * 256 + kWriteFrame + data;
}

}  // namespace

void ResetRegisterAccessState() {
  RegValue = 0;
  RegScaled = 0;
  RegLowByte = 0;
  RegHighByte = 0;
  RegBit15 = 0;
  RegBit14 = 0;
  LptWord = 0;
}

// InterfaceType is the choice; this is the one place that looks at it.
SpiLink& RegisterAccess::Link() {
  if (InterfaceType == kUsbAdapter) return overAdapter_;
  if (InterfaceType == kParallelPort) return overPort_;
  return none_;
}

std::optional<Reading> RegisterAccess::Read(std::int16_t row) {
  RegScaled = 0;
  RegValue = 0;
  if (!RegReadable[row]) return std::nullopt;
  auto address = static_cast<std::int16_t>(RegAddr[row]);
  const Reading reading = DecodeReading(row, ReadRegWord(address));
  RegHighByte = static_cast<std::int16_t>(reading.raw / 256);
  RegLowByte = static_cast<std::int16_t>(reading.raw & kByteMask);
  if (RegKeepBit15[row]) RegBit15 = reading.raw & ~0x7FFF;
  if (RegKeepBit14[row]) RegBit14 = reading.raw & 0x4000;
  RegValue = reading.value;
  RegScaled = reading.scaled;
  delay_.Delay(float{kAccessGapMs});
  return last_ ? std::optional(reading) : std::nullopt;
}

// The order of the bytes matters to the sensor: COMMAND acts on the one byte that is written,
// KEYCODE takes its low byte first, all others the high byte first.
bool RegisterAccess::Write(std::int16_t row, std::int32_t value) {
  auto low = static_cast<std::int16_t>(value & kByteMask);
  auto high = static_cast<std::int16_t>(value / 256 & kByteMask);
  auto lowAddress = static_cast<std::int16_t>(RegAddr[row]);
  auto highAddress = static_cast<std::int16_t>(lowAddress + 1);
  if (row == kestrel::row::COMMAND) {
    if ((value & ~kByteMask) != 0) {
      WriteRegByte(highAddress, static_cast<std::uint8_t>(high));
    } else {
      WriteRegByte(lowAddress, static_cast<std::uint8_t>(low));
    }
  } else if (row == kestrel::row::KEYCODE) {
    WriteRegBytePair(lowAddress, low, highAddress, high);
  } else {
    WriteRegBytePair(highAddress, high, lowAddress, low);
  }
  delay_.Delay(float{kAccessGapMs});
  return static_cast<bool>(last_);
}

bool RegisterAccess::WriteRegByte(std::int16_t& address, std::uint8_t data) {
  MaskInPlace(address, kAddressMask);
  return Send(std::array{WriteFrame(address, data)});
}

bool RegisterAccess::WriteRegBytePair(std::int16_t& address1, std::int16_t& data1,
                                      std::int16_t& address2, std::int16_t& data2) {
  MaskInPlace(address1, kAddressMask);
  MaskInPlace(address2, kAddressMask);
  MaskInPlace(data1, kByteMask);
  MaskInPlace(data2, kByteMask);
  return Send(std::array{WriteFrame(address1, data1), WriteFrame(address2, data2)});
}

std::int32_t RegisterAccess::ReadRegWord(std::int16_t& address) {
  LptWord = 0;
  MaskInPlace(address, kAddressMask);
  last_ = Link().Ask(address * 256, LptWord);
  return LptWord;
}

bool RegisterAccess::Send(std::span<const std::int32_t> frames) {
  last_ = Link().Send(frames);
  return static_cast<bool>(last_);
}

}  // namespace kestrel
