// The command blocks that the adapter's firmware understands, and the frames in them.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrel {

inline constexpr int kFramesPerTransfer = 16;

// Frame numbers run from 1 to 16.
class FrameBuffer {
 public:
  // These throw RuntimeError "Subscript out of range" outside 1..16.
  std::int32_t& operator()(int number) { return frames_[Checked(number)]; }
  std::int32_t operator()(int number) const { return frames_[Checked(number)]; }

 private:
  [[nodiscard]] static std::size_t Checked(int number);

  std::array<std::int32_t, kFramesPerTransfer> frames_{};
};

inline constexpr std::uint8_t kCommandReadSettings = 1;
inline constexpr std::uint8_t kCommandSetup = 11;
inline constexpr std::uint8_t kCommandBits = 12;
inline constexpr std::uint8_t kCommandTransferPerWord = 13;
inline constexpr std::uint8_t kCommandTransfer = 14;

// A pipe's number as the driver takes it.
[[nodiscard]] std::array<std::uint8_t, 4> PipeNumber(std::uint32_t pipe);

// The block that transfers frames 1 to n. A frame with high byte 255 throws RuntimeError
// "Overflow".
[[nodiscard]] std::vector<std::uint8_t> TransferBlock(std::uint8_t command, std::uint8_t delay,
                                                      const FrameBuffer& frames, int n);

}  // namespace kestrel
