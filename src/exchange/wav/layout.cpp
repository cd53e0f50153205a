// The walk through the chunks: sizes first, then format, then data.
// SPDX-License-Identifier: MIT
#include "exchange/wav/layout.h"

#include <optional>
#include <string>

#include "exchange/readers.h"
#include "exchange/texts.h"

namespace kestrel::exchange {
namespace {

constexpr std::size_t kHeader = 12;       // "RIFF", size, "WAVE"
constexpr std::size_t kChunkHeader = 8;   // name, size
constexpr std::size_t kFormatBytes = 16;  // of a plain format
constexpr std::uint16_t kWholeNumbers = 1;
constexpr std::uint16_t kFloats = 3;
constexpr std::uint16_t kExtensible = 0xFFFE;

struct Format {
  std::uint32_t rate = 0;
  std::uint16_t channels = 0;
  std::uint16_t bytesAFrame = 0;
};

std::uint32_t Number(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = size; i-- > 0;) {
    number = number << 8U | static_cast<unsigned char>(bytes[at + i]);
  }
  return number;
}

std::uint16_t Word(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint16_t>(Number(bytes, at, 2));
}

Format FormatOf(std::string_view bytes, std::size_t at, std::size_t size) {
  if (size < kFormatBytes) {
    StopAtByte(at, "the format takes " + std::to_string(size) + " bytes, and should take 16.");
  }
  std::uint16_t code = Word(bytes, at);
  // The code proper stands in the extension.
  if (code == kExtensible && size >= 26) code = Word(bytes, at + 24);
  if (code != kWholeNumbers && code != kFloats) {
    StopAtByte(at,
               "the format's code is " + std::to_string(code) +
                   "; only whole numbers (1) and floats (3) can be imported. A sound editor can "
                   "save the file as one of these.");
  }
  const Format format{.rate = Number(bytes, at + 4, 4),
                      .channels = Word(bytes, at + 2),
                      .bytesAFrame = Word(bytes, at + 12)};
  const unsigned bits = Word(bytes, at + 14);
  if (format.channels == 0) StopAtByte(at + 2, "the number of channels is 0.");
  if (format.rate == 0) StopAtByte(at + 4, "the sample rate is 0.");
  const bool known = code == kFloats ? bits == 32 || bits == 64
                                     : bits == 8 || bits == 16 || bits == 24 || bits == 32;
  if (!known) StopAtByte(at + 14, "a sample has " + std::to_string(bits) + " bits.");
  if (format.bytesAFrame != format.channels * bits / 8) {
    StopAtByte(at + 12, "the bytes of a frame are " + std::to_string(format.bytesAFrame) +
                            ", and " + std::to_string(format.channels) + " samples of " +
                            std::to_string(bits) + " bits take others.");
  }
  return format;
}

void CheckHeader(std::string_view bytes) {
  if (!bytes.starts_with("RIFF")) {
    StopAtByte(0, "this kind of WAV file, " + Shown(bytes.substr(0, 4)) +
                      ", cannot be imported; save it as a plain one (RIFF).");
  }
  if (bytes.size() < kHeader) StopAtByte(bytes.size(), "the file ends here; it has been cut off.");
  if (bytes.substr(8, 4) != "WAVE") {
    StopAtByte(8, "the file is of the kind " + Shown(bytes.substr(8, 4)) + " and not a WAV file.");
  }
  const std::size_t told = Number(bytes, 4, 4);
  if (told + kChunkHeader != bytes.size() && told + kChunkHeader + 1 != bytes.size()) {
    StopAtByte(4, "the file should have " + std::to_string(told + kChunkHeader) +
                      " bytes and has " + std::to_string(bytes.size()) +
                      "; it has been cut off or was not closed.");
  }
}

std::size_t FramesOf(const std::optional<Format>& format, std::size_t at, std::size_t size) {
  if (!format) StopAtByte(at, "the data come before their format.");
  if (size % format->bytesAFrame != 0 || size == 0) {
    StopAtByte(at - 4, "the data have " + std::to_string(size) + " bytes, and a frame has " +
                           std::to_string(format->bytesAFrame) + ".");
  }
  return size / format->bytesAFrame;
}

}  // namespace

WavLayout WavLayoutOf(std::string_view bytes) {
  CheckHeader(bytes);
  std::optional<Format> format;
  std::optional<std::size_t> frames;
  std::size_t at = kHeader;
  while (bytes.size() - at >= kChunkHeader) {
    const std::size_t size = Number(bytes, at + 4, 4);
    const std::string_view name = bytes.substr(at, 4);
    at += kChunkHeader;
    if (size > bytes.size() - at) {
      StopAtByte(at - 4, "the part " + Shown(name) + " should have " + std::to_string(size) +
                             " bytes, and the file ends after " +
                             std::to_string(bytes.size() - at) + ".");
    }
    if (name == "fmt " && format) StopAtByte(at, "there are two formats.");
    if (name == "fmt ") format = FormatOf(bytes, at, size);
    if (name == "data" && frames) StopAtByte(at, "there are two parts of data.");
    if (name == "data") frames = FramesOf(format, at, size);
    at += size + (size % 2 != 0 && size < bytes.size() - at ? 1 : 0);
  }
  if (!format || !frames) StopAtByte(bytes.size(), "the file holds no data.");
  return {.rate = format->rate, .channels = format->channels, .frames = *frames};
}

}  // namespace kestrel::exchange
