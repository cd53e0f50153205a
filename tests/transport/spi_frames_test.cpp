// Frames as they are typed.
// SPDX-License-Identifier: MIT
#include "transport/spi_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "support/seeds.h"

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
  ExpectFault({"12G4"}, 1, "Frame 1: \"12G4\" is not a hexadecimal number.");
  ExpectFault({"1", "-1"}, 2, "Frame 2: \"-1\" is not a hexadecimal number.");
  ExpectFault({"1", "2", "12345"}, 3, "Frame 3: \"12345\" does not fit 16 bits (0 to FFFF).");
}

TEST(SpiFrames, AHighByteOfFfIsRefusedBeforeItOverflows) {
  const std::string why =
      " cannot be sent: a high byte of FF overflows in the adapter's block. Frames go up to FEFF.";
  ExpectFault({"1", "FF00"}, 2, "Frame 2: \"FF00\"" + why);
  ExpectFault({"ffff"}, 1, "Frame 1: \"ffff\"" + why);
}

// However they are typed: in small letters or capitals, with zeros or a prefix before them.
TEST(SpiFrames, AnyFramesAreTakenAsTyped) {
  WithSeeds(200, [](Random& random) {
    const std::vector<std::string> starts{"", "0", "0x", "0X00", "  ", "\t"};
    FrameTexts texts;
    std::vector<std::uint16_t> frames;
    for (int count = random.Between(1, kFramesPerTransfer); count > 0; --count) {
      frames.push_back(static_cast<std::uint16_t>(random.Below(0xFF00)));
      std::ostringstream text;
      text << random.Of(starts) << std::hex << (random.OneIn(2) ? std::uppercase : std::nouppercase)
           << frames.back() << (random.OneIn(2) ? " " : "");
      texts.at(frames.size() - 1) = text.str();
    }
    EXPECT_EQ(ReadTypedFrames(texts).frames, frames);
    const auto at = static_cast<std::size_t>(random.Below(static_cast<int>(frames.size())));
    const std::vector<std::string> faults{"", "G", "ff00", "12345", "1 2", "-1"};
    texts.at(at) = random.Of(faults);
    const bool isLast = at + 1 == frames.size();
    const TypedFrames typed = ReadTypedFrames(texts);
    if (texts.at(at).empty() && isLast && at > 0) {
      frames.pop_back();
      EXPECT_EQ(typed.frames, frames);
    } else {
      EXPECT_EQ(typed.faultyFrame, static_cast<int>(at) + 1);
      EXPECT_THAT(typed.frames, IsEmpty());
    }
  });
}

}  // namespace
}  // namespace kestrel
