// The frames of one transfer as the user types them.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "transport/usb_adapter.h"

namespace kestrel {

// Frame texts of one transfer; [0] is frame 1.
using FrameTexts = std::array<std::string, kFramesPerTransfer>;

// The frames of one transfer as the user typed them.
struct TypedFrames {
  std::vector<std::uint16_t> frames;  // frame 1 first; empty when there is a fault
  int faultyFrame = 0;                // 1..16, 0 for none
  std::string fault;                  // what is wrong, with the frame's number and text
};

// Frames are hexadecimal words, from frame 1 on without a gap. The adapter takes none with the high
// byte FF.
[[nodiscard]] TypedFrames ReadTypedFrames(const FrameTexts& texts);

}  // namespace kestrel
