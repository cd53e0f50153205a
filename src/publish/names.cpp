// Names and texts are taken apart character by character.
// SPDX-License-Identifier: MIT
#include "publish/names.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "numeric/hash.h"

namespace kestrel::publish {
namespace {

constexpr std::size_t kHashDigits = 16;
constexpr const char* kReplacement = "\xEF\xBF\xBD";

struct Character {
  std::string_view bytes;
  char32_t code = 0;
  bool isValid = false;  // else one byte that is no UTF-8
};

// How many bytes a character has that begins so; 0 where none does.
std::size_t LengthOf(std::uint8_t first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

bool IsSmallestForm(char32_t code, std::size_t length) {
  constexpr std::array<char32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code < 0xE000;
  return code >= kLeast.at(length) && code <= 0x10FFFF && !isSurrogate;
}

// The first character of a text that is not empty.
Character FirstOf(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const std::size_t length = LengthOf(byte(0));
  if (length == 1) return {text.substr(0, 1), byte(0), true};
  if (length == 0 || text.size() < length) return {text.substr(0, 1)};
  char32_t code = byte(0) & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return {text.substr(0, 1)};
    code = code << 6U | (byte(i) & 0x3FU);
  }
  if (!IsSmallestForm(code, length)) return {text.substr(0, 1)};
  return {text.substr(0, length), code, true};
}

// Control characters, separators of lines, and characters that are none.
bool MayBeExchanged(const Character& character) {
  const char32_t code = character.code;
  if (!character.isValid || code < 0x20 || (code >= 0x7F && code < 0xA0)) return false;
  if (code == 0x2028 || code == 0x2029 || (code >= 0xFDD0 && code < 0xFDF0)) return false;
  return (code & 0xFFFEU) != 0xFFFE;
}

std::string HexOf(std::string_view bytes) {
  std::string text;
  for (const char letter : bytes) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), "%%%02X",
                  static_cast<unsigned>(static_cast<std::uint8_t>(letter)));
    text += digits.data();
  }
  return text;
}

std::string EscapedInTopic(const Character& character) {
  constexpr std::string_view kForbidden = "/+#$%";
  const bool isForbidden = character.bytes.size() == 1 &&
                           kForbidden.find(character.bytes.front()) != std::string_view::npos;
  const bool isPlain = MayBeExchanged(character) && !isForbidden;
  return isPlain ? std::string(character.bytes) : HexOf(character.bytes);
}

}  // namespace

std::string TopicLevel(std::string_view name) {
  if (name.empty()) return "%";
  std::string level;
  std::string whole;
  constexpr std::size_t kRoom = kLongestCleanName - kHashDigits - 2;
  for (std::string_view rest = name; !rest.empty();) {
    const Character character = FirstOf(rest);
    rest.remove_prefix(character.bytes.size());
    const std::string escaped = EscapedInTopic(character);
    if (whole.size() == level.size() && level.size() + escaped.size() <= kRoom) level += escaped;
    whole += escaped;
    if (whole.size() > kLongestCleanName) break;
  }
  if (whole.size() <= kLongestCleanName) return whole;
  std::array<char, kHashDigits + 3> digits{};
  std::snprintf(digits.data(), digits.size(), "%%~%016llx",
                static_cast<unsigned long long>(HashOf(name)));
  return level + digits.data();
}

std::string TopicOf(const Names& names, std::string_view leaf) {
  return "kestrel/" + TopicLevel(names.bench) + "/" + TopicLevel(names.sensor) + "/" +
         std::string(leaf);
}

std::string CleanText(std::string_view text, std::size_t longest) {
  std::string clean;
  while (!text.empty()) {
    const Character character = FirstOf(text);
    text.remove_prefix(character.bytes.size());
    const std::string_view next = MayBeExchanged(character) ? character.bytes : kReplacement;
    if (clean.size() + next.size() > longest) break;
    clean += next;
  }
  return clean;
}

}  // namespace kestrel::publish
