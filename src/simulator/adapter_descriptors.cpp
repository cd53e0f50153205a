// Descriptors of a board, byte by byte.
// SPDX-License-Identifier: MIT
#include "simulator/adapter_descriptors.h"

#include <span>

namespace kestrel {
namespace {

constexpr std::uint8_t kDeviceType = 1;
constexpr std::uint8_t kStringType = 3;

void PutWord(std::span<std::uint8_t> bytes, std::size_t at, std::size_t word) {
  bytes[at] = static_cast<std::uint8_t>(word & 0xFFU);
  bytes[at + 1] = static_cast<std::uint8_t>((word >> 8U) & 0xFFU);
}

}  // namespace

std::array<std::uint8_t, kDeviceDescriptorSize> DeviceDescriptor(const BoardDescription& board) {
  std::array<std::uint8_t, kDeviceDescriptorSize> bytes{};
  bytes[0] = kDeviceDescriptorSize;
  bytes[1] = kDeviceType;
  PutWord(bytes, 2, board.pipe3PacketSize < 65 ? 0x0110 : 0x0200);  // USB 1.1 or 2.0
  bytes[4] = 0xFF;                                                  // class, vendor's own
  bytes[7] = 64;                                                    // packet size of endpoint 0
  PutWord(bytes, 8, board.vendor);
  PutWord(bytes, 10, board.product);
  bytes[12] = board.firmwareMinor;
  bytes[13] = board.firmwareMajor;
  bytes[14] = board.string1.empty() ? 0 : 1;
  bytes[15] = board.string2.empty() ? 0 : 2;
  bytes[17] = 1;  // configurations
  return bytes;
}

std::vector<std::uint8_t> StringDescriptor(const BoardDescription& board, std::uint8_t index) {
  if (index > 2) return {};
  const std::u16string languages = u"\x0409";  // English
  const std::u16string& text =
      index == 0 ? languages : (index == 1 ? board.string1 : board.string2);
  if (text.empty()) return {};
  std::vector<std::uint8_t> bytes(2 + 2 * text.size());
  bytes[0] = static_cast<std::uint8_t>(bytes.size());
  bytes[1] = kStringType;
  for (std::size_t i = 0; i < text.size(); ++i) PutWord(bytes, 2 + 2 * i, text[i]);
  return bytes;
}

std::array<std::uint8_t, kPipeInformationSize> PipeInformation(const BoardDescription& board) {
  constexpr std::size_t kHeaderSize = 16;
  constexpr std::size_t kSlotSize = 20;
  struct Pipe {
    std::uint16_t packetSize;
    std::uint8_t endpoint;
  };
  const std::array pipes = {Pipe{board.pipe3PacketSize, 0x02}, Pipe{board.pipe3PacketSize, 0x86},
                            Pipe{board.pipe3PacketSize, 0x04}, Pipe{board.pipe3PacketSize, 0x88}};

  std::array<std::uint8_t, kPipeInformationSize> bytes{};
  PutWord(bytes, 0, kHeaderSize + pipes.size() * kSlotSize);
  bytes[4] = 0xFF;       // class, vendor's own
  PutWord(bytes, 8, 1);  // interface handle
  PutWord(bytes, 12, pipes.size());
  std::size_t slot = kHeaderSize;
  for (const Pipe& pipe : pipes) {
    PutWord(bytes, slot, pipe.packetSize);
    bytes[slot + 2] = pipe.endpoint;
    slot += kSlotSize;
  }
  return bytes;
}

}  // namespace kestrel
