// What went over the wire to the sensor as a waveform that logic analysers open.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "exchange/outcome.h"
#include "transport/wire_log.h"

namespace kestrel::exchange {

// One frame of 16 bits on the sensor's SPI port.
struct WireFrame {
  std::chrono::nanoseconds at{0};       // when chip select falls, or the frame begins under it
  std::uint16_t mosi = 0;               // to the sensor
  std::optional<std::uint16_t> miso{};  // from the sensor; none where no answer came
  bool selectedOn = false;              // chip select stays low up to the next frame
  bool operator==(const WireFrame&) const = default;
};

// The frames of a log, the adapter's settings left out. Frames of one transfer have its time, so
// they follow one another as fast as the waveform allows.
[[nodiscard]] std::vector<WireFrame> FramesOf(const WireLog& log);

// A value change dump with the lines cs (low when selected), sclk (high at rest), mosi and miso;
// bits change at the falling edge of sclk and hold at the rising one, the highest first. Frames are
// what was logged; edges within a frame are drawn at `bit` a bit, in steps of 100 ns. A frame that
// would begin before the one ahead of it has ended begins at that end; how many were put off stands
// in the dump.
[[nodiscard]] Exchanged<std::string> WireVcd(
    std::span<const WireFrame> frames, std::chrono::nanoseconds bit = std::chrono::microseconds(1));

}  // namespace kestrel::exchange
