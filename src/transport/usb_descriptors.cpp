// What a board says of itself: descriptors, firmware version, pipes.
// SPDX-License-Identifier: MIT
// What the board says of itself: descriptors, firmware version, pipes.

#include <array>
#include <vector>

#include "transport/usb_adapter.h"

namespace kestrel {
namespace {

constexpr std::uint16_t kVendor = 0x5A17;
constexpr std::uint16_t kProductFifo4 = 0xED03;
constexpr std::uint16_t kProductMcp = 0xEF00;

constexpr std::size_t kDeviceDescriptorBuffer = 147;
constexpr std::size_t kVendorOffset = 8;  // USB standard layout
constexpr std::size_t kProductOffset = 10;
constexpr std::size_t kIdsEnd = 12;

// Interface information as the system lays it out: a 16-byte head whose last 4 bytes count the
// pipes, then 20 bytes a pipe that begin with its maximum packet size.
constexpr std::size_t kPipeBuffer = 356;
constexpr std::size_t kPipeCountOffset = 12;
constexpr std::size_t kPipeHead = 16;
constexpr std::size_t kPipeSize = 20;

std::uint16_t LittleEndian(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
}

void AppendUtf8(std::string& text, std::uint32_t code) {
  const auto tail = [&](unsigned shift) {
    text += static_cast<char>(0x80U | (code >> shift & 0x3FU));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | code >> 6U);
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0U | code >> 12U);
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0U | code >> 18U);
    tail(12);
    tail(6);
    tail(0);
  }
}

// UTF-16 little endian; a half of a surrogate pair alone becomes the replacement character.
std::string FromUtf16(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    std::uint32_t code = LittleEndian(bytes, at);
    if (code >= 0xD800 && code < 0xE000) {
      const std::uint32_t low = at + 3 < bytes.size() ? LittleEndian(bytes, at + 2) : 0;
      const bool pair = code < 0xDC00 && low >= 0xDC00 && low < 0xE000;
      code = pair ? 0x10000 + ((code - 0xD800) << 10U) + (low - 0xDC00) : 0xFFFD;
      if (pair) at += 2;
    }
    AppendUtf8(text, code);
  }
  return text;
}

}  // namespace

// Nothing is concluded from bytes that a request did not deliver.

void UsbAdapter::GetBoardInfo(UsbDriver::Handle device, AdapterRecord& record) {
  if (!record.present || device < 1) return;
  constexpr std::size_t kSpeedPipe = 3;
  constexpr int kLargestFullSpeedPacket = 64;

  record.string1 = ReadStringDescriptor(device, 1);
  record.string2 = record.string1 == "None" ? "None" : ReadStringDescriptor(device, 2);
  const bool named = record.string1 != "None" && record.string2 != "None";
  const bool versionRead = named && ReadFirmwareVersion(device, record.firmwareVersion);
  const int packetSize = ReadPacketSize(device, kSpeedPipe);
  record.usbVersion = packetSize <= kLargestFullSpeedPacket ? "1.1" : "2";
  if (!versionRead || packetSize == 0) messages_.Show("Error getting Board Info");
}

std::string UsbAdapter::ReadBoardType(UsbDriver::Handle device, NameFinding& finding) {
  std::array<std::uint8_t, kDeviceDescriptorBuffer> buffer{};
  std::uint32_t returned = 0;
  const std::array<std::uint8_t, kDeviceDescriptorBuffer> request{};
  if (!driver_.DeviceIoControl(device, kGetDeviceDescriptor, request, buffer, returned) ||
      returned < kIdsEnd) {
    return "None";
  }
  finding.described = true;
  finding.vendor = LittleEndian(buffer, kVendorOffset);
  finding.product = LittleEndian(buffer, kProductOffset);
  if (finding.vendor != kVendor) return "None";
  switch (finding.product) {
    case kProductFifo4:
      return "FIFO4";
    case kProductMcp:
      return "MCP";
    default:
      return "None";
  }
}

// Asks twice: for the length, which is the descriptor's first byte, then for the whole.
std::string UsbAdapter::ReadStringDescriptor(UsbDriver::Handle device, std::uint8_t index) {
  constexpr std::size_t kHead = 2;  // length and descriptor type
  const std::array<std::uint8_t, 5> request{index};
  std::array<std::uint8_t, 4> start{};
  std::uint32_t returned = 0;
  if (!driver_.DeviceIoControl(device, kGetStringDescriptor, request, start, returned) ||
      returned == 0 || start[0] < kHead) {
    return "None";
  }
  std::vector<std::uint8_t> descriptor(start[0]);
  if (!driver_.DeviceIoControl(device, kGetStringDescriptor, request, descriptor, returned) ||
      returned < descriptor.size()) {
    return "None";
  }
  return FromUtf16(std::span(descriptor).subspan(kHead));
}

bool UsbAdapter::ReadFirmwareVersion(UsbDriver::Handle device, float& version) {
  std::array<std::uint8_t, 1> block{0};
  std::array<std::uint8_t, 2> answer{};
  if (BulkTransfer(device, 0, block) != 1 || BulkTransfer(device, 1, answer) != 1) return false;
  version = static_cast<float>(answer[0]) + static_cast<float>(answer[1]) / 10;
  return true;
}

// 0 when the board has no such pipe or does not tell.
int UsbAdapter::ReadPacketSize(UsbDriver::Handle device, std::size_t pipe) {
  std::array<std::uint8_t, kPipeBuffer> buffer{};
  const std::array<std::uint8_t, kPipeBuffer> request{};
  std::uint32_t returned = 0;
  if (!driver_.DeviceIoControl(device, kGetPipeInformation, request, buffer, returned)) return 0;
  const std::size_t at = kPipeHead + pipe * kPipeSize;
  if (returned < at + 2 || LittleEndian(buffer, kPipeCountOffset) <= pipe) return 0;
  return LittleEndian(buffer, at);
}

}  // namespace kestrel
