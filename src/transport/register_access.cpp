// Register accesses as SPI frames, and the variables that the last read is left in.
// SPDX-License-Identifier: MIT
#include "transport/register_access.h"

#include <array>

#include "app/program_state.h"
#include "regmap/register_table.h"

namespace kestrel {

namespace {

struct LastRead {
  std::int32_t value = 0;
  float scaled = 0;
  std::int16_t lowByte = 0;
  std::int16_t highByte = 0;
  std::int32_t bit15 = 0;
  std::int32_t bit14 = 0;
};

LastRead last;

constexpr std::int16_t kAddressMask = 127;
constexpr std::int16_t kByteMask = 255;
constexpr std::int32_t kWriteFrame = 0x8000;
// Idle time the sensor needs after each register access.
constexpr float kAccessGapMs = 0.1F;

void MaskInPlace(std::int16_t& value, std::int16_t mask) {
  value = static_cast<std::int16_t>(value & mask);
}

}  // namespace

std::int32_t ReadFrameOf(std::int16_t address) {
  return address * 256;
}

std::int32_t WriteFrameOf(std::int16_t address, std::int32_t data) {
  return address * 256 + kWriteFrame + data;
}

const std::int32_t& RegValue = last.value;
const float& RegScaled = last.scaled;
const std::int16_t& RegLowByte = last.lowByte;
const std::int16_t& RegHighByte = last.highByte;
const std::int32_t& RegBit15 = last.bit15;
const std::int32_t& RegBit14 = last.bit14;

void ResetRegisterAccessState() {
  last = {};
  KeepLptWord(0);
}

void RegisterAccess::Use(std::int16_t interfaceType) {
  ChooseInterface(interfaceType);
  ++connections_;
  link_ = &none_;
  if (interfaceType == kUsbAdapter) link_ = &overAdapter_;
  if (interfaceType == kParallelPort) link_ = &overPort_;
}

std::optional<Reading> RegisterAccess::Read(std::int16_t row) {
  last.scaled = 0;
  last.value = 0;
  if (!RegReadable[row]) return std::nullopt;
  auto address = static_cast<std::int16_t>(RegAddr[row]);
  const Reading reading = Keep(row, ReadRegWord(address));
  delay_.Delay(float{kAccessGapMs});
  return last_ ? std::optional(reading) : std::nullopt;
}

Reading RegisterAccess::Keep(std::int16_t row, std::int32_t word) {
  const Reading reading = DecodeReading(row, word);
  last.highByte = static_cast<std::int16_t>(reading.raw / 256);
  last.lowByte = static_cast<std::int16_t>(reading.raw & kByteMask);
  if (RegKeepBit15[row]) last.bit15 = reading.raw & ~0x7FFF;
  if (RegKeepBit14[row]) last.bit14 = reading.raw & 0x4000;
  last.value = reading.value;
  last.scaled = reading.scaled;
  return reading;
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
  return Send(std::array{WriteFrameOf(address, data)});
}

bool RegisterAccess::WriteRegBytePair(std::int16_t& address1, std::int16_t& data1,
                                      std::int16_t& address2, std::int16_t& data2) {
  MaskInPlace(address1, kAddressMask);
  MaskInPlace(address2, kAddressMask);
  MaskInPlace(data1, kByteMask);
  MaskInPlace(data2, kByteMask);
  return Send(std::array{WriteFrameOf(address1, data1), WriteFrameOf(address2, data2)});
}

std::int32_t RegisterAccess::ReadRegWord(std::int16_t& address) {
  KeepLptWord(0);
  MaskInPlace(address, kAddressMask);
  std::int32_t word = 0;
  last_ = link_->Ask(ReadFrameOf(address), word);
  KeepLptWord(word);
  return word;
}

bool RegisterAccess::Exchange(std::span<const std::int32_t> frames,
                              std::span<std::int32_t> answers) {
  KeepLptWord(0);
  last_ = link_->Exchange(frames, answers);
  if (last_) KeepLptWord(answers.back());
  delay_.Delay(float{kAccessGapMs});
  return static_cast<bool>(last_);
}

bool RegisterAccess::Send(std::span<const std::int32_t> frames) {
  last_ = link_->Send(frames);
  return static_cast<bool>(last_);
}

}  // namespace kestrel
