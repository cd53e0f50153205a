// What the chunks of a WAV file say, checked against the bytes that are there.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestrel::exchange {

struct WavLayout {
  std::uint32_t rate = 0;  // samples a second
  std::size_t channels = 0;
  std::size_t frames = 0;  // samples of each channel
};

// Stops, with the byte and the value, where a count does not fit the file or its samples are no
// whole numbers or floats.
[[nodiscard]] WavLayout WavLayoutOf(std::string_view bytes);

}  // namespace kestrel::exchange
