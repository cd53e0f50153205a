// The plan of a read-out in blocks: which frames, and what they bring.
// SPDX-License-Identifier: MIT
#include "acquisition/buffer_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "regmap/register_table.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

class BufferFrames : public testing::Test {
 protected:
  BufferFrames() { BuildRegisterTable(); }
  ~BufferFrames() override { ResetRegisterTable(); }
};

TEST_F(BufferFrames, APointIsItsPointerAndThreeReads) {
  const auto frames = BufferFramesOf(2);
  EXPECT_THAT(frames,
              ElementsAre(BufferFrame{0x9100, {}}, BufferFrame{0x9000, {}},
                          BufferFrame{0x1400, BufferPlace{Axis::X, 0}},
                          BufferFrame{0x1600, BufferPlace{Axis::Y, 0}},
                          BufferFrame{0x1800, BufferPlace{Axis::Z, 0}}, BufferFrame{0x9001, {}},
                          BufferFrame{0x1400, BufferPlace{Axis::X, 1}},
                          BufferFrame{0x1600, BufferPlace{Axis::Y, 1}},
                          BufferFrame{0x1800, BufferPlace{Axis::Z, 1}}, BufferFrame{0x1800, {}}));
}

TEST_F(BufferFrames, TheHighByteGoesFirstAndOnlyWhereItChanges) {
  const auto frames = BufferFramesOf(512);
  const auto highBytes =
      std::ranges::count_if(frames, [](const auto& f) { return f.frame >> 8 == 0x91; });
  EXPECT_EQ(highBytes, 2);
  const auto second = std::ranges::find(frames, 0x9101, &BufferFrame::frame);
  ASSERT_NE(second, frames.end());
  EXPECT_EQ((second - 1)->asks, (BufferPlace{Axis::Z, 255}));
  EXPECT_EQ((second + 1)->frame, 0x9000);
  EXPECT_EQ((second + 2)->asks, (BufferPlace{Axis::X, 256}));
}

TEST_F(BufferFrames, EveryWordIsAskedForOnceAndNothingElseIsRead) {
  for (const int points : {256, 512}) {
    const auto frames = BufferFramesOf(points);
    EXPECT_EQ(frames.size(),
              4U * static_cast<std::size_t>(points) + static_cast<std::size_t>(points) / 256 + 1);
    for (const Axis axis : kAxes) {
      for (int point = 0; point < points; ++point) {
        ASSERT_EQ(
            std::ranges::count(frames, std::optional(BufferPlace{axis, point}), &BufferFrame::asks),
            1);
      }
    }
    EXPECT_FALSE(frames.back().asks) << "its answer would be lost";
  }
}

}  // namespace
}  // namespace kestrel
