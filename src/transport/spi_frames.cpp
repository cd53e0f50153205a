// Typed frames checked one by one.
// SPDX-License-Identifier: MIT
#include "transport/spi_frames.h"

#include <algorithm>

#include "transport/typed_word.h"

namespace kestrel {
namespace {

constexpr std::uint16_t kLastFrame = 0xFEFF;

TypedFrames Fault(int number, const std::string& what) {
  return {{}, number, "Frame " + std::to_string(number) + what + "\nNothing was sent."};
}

// Number of the last frame with a text; 0 for none.
int LastFilled(const FrameTexts& texts) {
  const auto last = std::find_if_not(texts.rbegin(), texts.rend(),
                                     [](const auto& text) { return IsBlank(text); });
  return static_cast<int>(texts.rend() - last);
}

}  // namespace

TypedFrames ReadTypedFrames(const FrameTexts& texts) {
  const int count = LastFilled(texts);
  if (count == 0) return Fault(1, " is empty. Enter the frames to send in hexadecimal digits.");
  TypedFrames typed;
  for (int number = 1; number <= count; ++number) {
    const std::string& text = texts.at(static_cast<std::size_t>(number - 1));
    if (IsBlank(text)) return Fault(number, " is empty. Fill it in, or clear those after it.");
    const TypedWord word = ReadTypedWord(text);
    if (!word.fault.empty()) return Fault(number, ": " + word.fault);
    if (word.value > kLastFrame) {
      return Fault(number, ": " + Quoted(text) +
                               " cannot be sent: a high byte of FF overflows in the adapter's "
                               "block. Frames go up to FEFF.");
    }
    typed.frames.push_back(word.value);
  }
  return typed;
}

}  // namespace kestrel
