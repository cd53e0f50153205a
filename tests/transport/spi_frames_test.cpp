// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "transport/spi_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FrameTexts Texts(const std::vector<std::string>& first) {
  FrameTexts texts;
  std::copy(first.begin(), first.end(), texts.begin());
  return texts;
}

void ExpectFault(const std::vector<std::string>& texts, int frame, const std::string& fault) {
  const TypedFrames typed = ReadTypedFrames(Texts(texts));
  EXPECT_EQ(typed.faultyFrame, frame);
  EXPECT_EQ(typed.fault, fault + "\nNothing was sent.");
  EXPECT_THAT(typed.frames, IsEmpty());
}

TEST(SpiFrames, AreTakenFromTheFirstToTheLastFilledBox) {
  const TypedFrames typed = ReadTypedFrames(Texts({"1c00", " 0x9D12 ", "0"}));
  EXPECT_EQ(typed.faultyFrame, 0);
  EXPECT_EQ(typed.fault, "");
  EXPECT_THAT(typed.frames, ElementsAre(0x1C00, 0x9D12, 0));
}

TEST(SpiFrames, SixteenAreTheMost) {
  FrameTexts texts;
  texts.fill("FEFF");
  EXPECT_EQ(ReadTypedFrames(texts).frames, std::vector<std::uint16_t>(16, 0xFEFF));
}

TEST(SpiFrames, AnEmptyBoxIsNamed) {
  ExpectFault({}, 1, "Frame 1 is empty. Enter the frames to send in hexadecimal digits.");
  ExpectFault({"", "1C00"}, 1, "Frame 1 is empty. Fill it in, or clear those after it.");
  ExpectFault({"1C00", "  ", "", "1"}, 2, "Frame 2 is empty. Fill it in, or clear those after it.");
}

TEST(SpiFrames, TextsThatAreNoWordsAreNamed) {
  ExpectFault({"12G4"}, 1, "Frame 1: \"12G4\" is no hexadecimal number.");
  ExpectFault({"1", "-1"}, 2, "Frame 2: \"-1\" is no hexadecimal number.");
  ExpectFault({"1", "2", "12345"}, 3, "Frame 3: \"12345\" does not fit 16 bits (0 to FFFF).");
}

TEST(SpiFrames, AHighByteOfFfIsRefusedBeforeItOverflows) {
  const std::string why =
      " cannot be sent: a high byte of FF overflows in the adapter's block. Frames go up to FEFF.";
  ExpectFault({"1", "FF00"}, 2, "Frame 2: \"FF00\"" + why);
  ExpectFault({"ffff"}, 1, "Frame 1: \"ffff\"" + why);
}

}  // namespace
}  // namespace kestrel
