// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "transport/register_access.h"

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
constexpr std::uint8_t kShortestSpiDelay = 1;
// Idle time the sensor needs after each register access.
constexpr float kAccessGapMs = 0.1F;

void MaskInPlace(std::int16_t& value, std::int16_t mask) {
  value = static_cast<std::int16_t>(value & mask);
}

std::int32_t WriteFrame(std::int16_t address, std::int32_t data) {
  return address * 256 + kWriteFrame + data;
}

// Two's complement of `bits` bits, or the unsigned value of the low `bits` bits.
std::int32_t Decode(std::int32_t raw, std::int16_t bits, bool isSigned) {
  const std::int32_t top = 1 << (bits - 1);
  if (isSigned) return (raw & (top - 1)) - (raw & top);
  return raw & (2 * top - 1);
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

bool RegisterAccess::Usable() {
  return InterfaceType == kParallelPort || (InterfaceType == kUsbAdapter && UsbPresent);
}

void RegisterAccess::ReadReg(std::int16_t row) {
  RegScaled = 0;
  RegValue = 0;
  if (!RegReadable[row]) return;
  auto address = static_cast<std::int16_t>(RegAddr[row]);
  const std::int32_t raw = ReadRegWord(address);
  RegHighByte = static_cast<std::int16_t>(raw / 256);
  RegLowByte = static_cast<std::int16_t>(raw & kByteMask);
  if (RegKeepBit15[row]) RegBit15 = raw & ~0x7FFF;
  if (RegKeepBit14[row]) RegBit14 = raw & 0x4000;
  RegValue = Decode(raw, RegBits[row], RegSigned[row]);
  const float product = static_cast<float>(RegValue) * RegScale[row];
  RegScaled = product + RegOffset[row];
  delay_.Delay(float{kAccessGapMs});
}

// The order of the bytes matters to the sensor: COMMAND acts on the one byte that is written,
// KEYCODE takes its low byte first, all others the high byte first.
void RegisterAccess::WriteReg(std::int16_t row, std::int32_t value) {
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
}

void RegisterAccess::WriteRegByte(std::int16_t& address, std::uint8_t data) {
  MaskInPlace(address, kAddressMask);
  const std::int32_t frame = WriteFrame(address, data);
  if (InterfaceType == kUsbAdapter) {
    SpiTx(1) = frame;
    UsbSpiDelay = kShortestSpiDelay;
    usb_.UsbSpiTransfer(1);
  } else if (InterfaceType == kParallelPort) {
    port_.LptShiftOut(frame);
  }
}

void RegisterAccess::WriteRegBytePair(std::int16_t& address1, std::int16_t& data1,
                                      std::int16_t& address2, std::int16_t& data2) {
  MaskInPlace(address1, kAddressMask);
  MaskInPlace(address2, kAddressMask);
  MaskInPlace(data1, kByteMask);
  MaskInPlace(data2, kByteMask);
  const std::int32_t frame1 = WriteFrame(address1, data1);
  const std::int32_t frame2 = WriteFrame(address2, data2);
  if (InterfaceType == kUsbAdapter) {
    SpiTx(1) = frame1;
    SpiTx(2) = frame2;
    UsbSpiDelay = kShortestSpiDelay;
    usb_.UsbSpiTransfer(2);
  } else if (InterfaceType == kParallelPort) {
    port_.LptShiftOut(frame1);
    port_.LptShiftOut(frame2);
  }
}

// Over USB the read command is sent twice: the sensor answers in the second frame.
std::int32_t RegisterAccess::ReadRegWord(std::int16_t& address) {
  LptWord = 0;
  MaskInPlace(address, kAddressMask);
  if (InterfaceType == kUsbAdapter) {
    SpiTx(1) = address * 256;
    SpiTx(2) = address * 256;
    UsbSpiDelay = kShortestSpiDelay;
    usb_.UsbSpiTransfer(2);
    LptWord = SpiRx(2);
    return LptWord;
  }
  if (InterfaceType == kParallelPort) return port_.LptReadWord(address);
  return 0;
}

}  // namespace kestrel
