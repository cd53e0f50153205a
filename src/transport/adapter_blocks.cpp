// Bytes of the adapter's command blocks.
// SPDX-License-Identifier: MIT
#include "transport/adapter_blocks.h"

#include "numeric/conversions.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

// Dividing by 255 gives the high byte for every high byte up to 254; 255 overflows the byte. No
// register frame has that high byte, and the board's firmware is used to the sender doing this.
std::uint8_t HighByte(std::int32_t frame) {
  const std::int32_t quotient = (frame & ~0xFF) / 255;
  return ToByte(static_cast<double>(quotient));
}

}  // namespace

std::size_t FrameBuffer::Checked(int number) {
  if (number < 1 || number > kFramesPerTransfer) throw RuntimeError(kSubscriptOutOfRange);
  return static_cast<std::size_t>(number - 1);
}

std::array<std::uint8_t, 4> PipeNumber(std::uint32_t pipe) {
  return {static_cast<std::uint8_t>(pipe & 0xFFU), static_cast<std::uint8_t>(pipe >> 8U & 0xFFU),
          static_cast<std::uint8_t>(pipe >> 16U & 0xFFU), static_cast<std::uint8_t>(pipe >> 24U)};
}

std::vector<std::uint8_t> TransferBlock(std::uint8_t command, std::uint8_t delay,
                                        const FrameBuffer& frames, int n) {
  std::vector<std::uint8_t> block{command, delay, static_cast<std::uint8_t>(n)};
  for (int i = 1; i <= n; ++i) {
    block.push_back(HighByte(frames(i)));
    block.push_back(static_cast<std::uint8_t>(frames(i) & 0xFF));
  }
  return block;
}

}  // namespace kestrel
