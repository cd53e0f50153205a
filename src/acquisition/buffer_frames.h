// The read-out of the buffers as blocks of frames, planned as a value and carried out.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "acquisition/buffer_points.h"

namespace kestrel {

// A frame, and the word it asks for: that word comes in during the frame after it.
struct BufferFrame {
  std::int32_t frame = 0;
  std::optional<BufferPlace> asks;
  bool operator==(const BufferFrame&) const = default;
};

// The frames that read points 0 to `points` - 1 of all axes: the pointer, its high byte only where
// that changes, then the three buffers. The last frame asks for nothing new, it brings the last
// answer. Blocks may begin at any frame.
[[nodiscard]] std::vector<BufferFrame> BufferFramesOf(int points);

// Decoded words by axis and point.
using BufferWords = std::array<std::vector<std::int32_t>, 3>;

// Sends these frames in blocks as large as they may be. `told` hears every now and then how many
// points have been asked for. Nothing when the sensor was lost.
[[nodiscard]] std::optional<BufferWords> ReadInBlocks(RegisterAccess& registers, int points,
                                                      const std::function<void(int done)>& told);

}  // namespace kestrel
