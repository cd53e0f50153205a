// Four frames a point, sixteen a block, each answer taken from the frame after.
// SPDX-License-Identifier: MIT
#include "acquisition/buffer_frames.h"

#include <algorithm>
#include <span>

#include "regmap/register_table.h"
#include "transport/adapter_blocks.h"

namespace kestrel {
namespace {

constexpr std::size_t kMostFrames = kFramesPerTransfer;
constexpr std::size_t kBlocksPerProgressStep = 8;

std::int16_t AddressOf(std::int16_t row) {
  return static_cast<std::int16_t>(RegAddr[row]);
}

// What the frames of a plan bring in, as it comes.
class Answers {
 public:
  explicit Answers(int points) {
    for (auto& axis : words_) axis.resize(static_cast<std::size_t>(points));
  }

  void Take(RegisterAccess& registers, const BufferFrame& sent, std::int32_t cameIn) {
    if (awaited_) {
      auto& axis = words_[Index(awaited_->axis)];
      axis[static_cast<std::size_t>(awaited_->point)] =
          registers.Keep(BufferRow(awaited_->axis), cameIn).value;
    }
    awaited_ = sent.asks;
  }
  [[nodiscard]] BufferWords Words() && { return std::move(words_); }

 private:
  BufferWords words_;
  std::optional<BufferPlace> awaited_;
};

bool SendBlock(RegisterAccess& registers, std::span<const BufferFrame> block, Answers& answers) {
  std::array<std::int32_t, kMostFrames> frames{};
  std::array<std::int32_t, kMostFrames> cameIn{};
  std::ranges::transform(block, frames.begin(), &BufferFrame::frame);
  if (!registers.Exchange(std::span(frames).first(block.size()),
                          std::span(cameIn).first(block.size()))) {
    return false;
  }
  for (std::size_t i = 0; i < block.size(); ++i) answers.Take(registers, block[i], cameIn[i]);
  return true;
}

}  // namespace

std::vector<BufferFrame> BufferFramesOf(int points) {
  const std::int16_t pointer = AddressOf(row::BUF_PNTR);
  std::vector<BufferFrame> frames;
  for (int point = 0; point < points; ++point) {
    if (point % 256 == 0) {
      frames.push_back({WriteFrameOf(static_cast<std::int16_t>(pointer + 1), point / 256), {}});
    }
    frames.push_back({WriteFrameOf(pointer, point % 256), {}});
    for (const Axis axis : kAxes) {
      frames.push_back({ReadFrameOf(AddressOf(BufferRow(axis))), BufferPlace{axis, point}});
    }
  }
  frames.push_back({frames.back().frame, {}});
  return frames;
}

std::optional<BufferWords> ReadInBlocks(RegisterAccess& registers, int points,
                                        const std::function<void(int done)>& told) {
  const std::vector<BufferFrame> frames = BufferFramesOf(points);
  Answers answers(points);
  std::size_t block = 0;
  for (std::size_t at = 0; at < frames.size(); at += kMostFrames, ++block) {
    const std::size_t count = std::min(kMostFrames, frames.size() - at);
    if (!SendBlock(registers, std::span(frames).subspan(at, count), answers)) return std::nullopt;
    if (block % kBlocksPerProgressStep == 0 && told) {
      told(static_cast<int>(at * static_cast<std::size_t>(points) / frames.size()));
    }
  }
  return std::move(answers).Words();
}

}  // namespace kestrel
