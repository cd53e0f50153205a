// How a simulated adapter board presents itself on the bus.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kestrel {

// An adapter board as it presents itself on the bus. An empty string is one the board lacks.
struct BoardDescription {
  std::uint16_t vendor = 0x5A17;
  std::uint16_t product = 0xED03;
  std::u16string string1 = u"Kestrel";
  std::u16string string2 = u"simulated USB to SPI adapter";
  std::uint8_t firmwareMajor = 1;
  std::uint8_t firmwareMinor = 2;
  std::uint16_t pipe3PacketSize = 512;
};

inline constexpr std::size_t kDeviceDescriptorSize = 18;
inline constexpr std::size_t kPipeInformationSize = 356;

[[nodiscard]] std::array<std::uint8_t, kDeviceDescriptorSize> DeviceDescriptor(
    const BoardDescription& board);

// Empty when the board has no string of this index. Index 0 is the list of languages.
[[nodiscard]] std::vector<std::uint8_t> StringDescriptor(const BoardDescription& board,
                                                         std::uint8_t index);

// Interface header of 16 bytes, then 17 slots of 20 bytes, one a pipe.
[[nodiscard]] std::array<std::uint8_t, kPipeInformationSize> PipeInformation(
    const BoardDescription& board);

}  // namespace kestrel
