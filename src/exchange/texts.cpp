// How texts are checked, shortened and padded, and numbers written.
// SPDX-License-Identifier: MIT
#include "exchange/texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace kestrel::exchange {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::size_t kShown = 40;  // bytes of a value in a message

// The character that a text begins with and its bytes; 0 bytes where none begins.
struct Character {
  char32_t code = 0;
  std::size_t bytes = 0;
};

bool IsCharacter(char32_t code, std::size_t bytes) {
  constexpr std::array<char32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  return code >= kLeast[bytes] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Character FirstOf(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1};
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
  if (bytes == 0 || lead >= 0xF8 || text.size() < bytes) return {};
  char32_t code = lead & (0x7FU >> bytes);
  for (const char c : text.substr(1, bytes - 1)) {
    const auto next = static_cast<unsigned char>(c);
    if ((next & 0xC0U) != 0x80U) return {};
    code = code << 6U | (next & 0x3FU);
  }
  return IsCharacter(code, bytes) ? Character{code, bytes} : Character{};
}

void Append(std::string& text, char32_t code) {
  const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xC0U | code >> 6U);
  } else if (code < 0x10000) {
    add(0xE0U | code >> 12U);
    add(0x80U | (code >> 6U & 0x3FU));
  } else {
    add(0xF0U | code >> 18U);
    add(0x80U | (code >> 12U & 0x3FU));
    add(0x80U | (code >> 6U & 0x3FU));
  }
  add(0x80U | (code & 0x3FU));
}

template <typename Take>
void ForEachCharacter(std::string_view text, Take take) {
  while (!text.empty()) {
    const Character first = FirstOf(text);
    take(first.bytes == 0 ? kReplacement : first.code);
    text.remove_prefix(std::max<std::size_t>(first.bytes, 1));
  }
}

template <typename Number>
std::string Shortest(Number value) {
  std::array<char, 40> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), end.ptr};
}

}  // namespace

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const Character first = FirstOf(text);
    if (first.bytes == 0) return false;
    text.remove_prefix(first.bytes);
  }
  return true;
}

std::string CleanUtf8(std::string_view text) {
  std::string clean;
  ForEachCharacter(text, [&clean](char32_t code) { Append(clean, code); });
  return clean;
}

std::string AsUtf8(std::string_view text) {
  if (IsUtf8(text)) return std::string(text);
  std::string converted;
  for (const char c : text) Append(converted, static_cast<unsigned char>(c));
  return converted;
}

std::u32string Characters(std::string_view text) {
  std::u32string characters;
  ForEachCharacter(text, [&characters](char32_t code) { characters += code; });
  return characters;
}

std::string Shortened(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return std::string(text);
  constexpr std::string_view kCut = "...";
  if (bytes < kCut.size()) return "";
  std::size_t end = bytes - kCut.size();
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return std::string(text.substr(0, end)) + std::string(kCut);
}

std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
  }
  const std::size_t first = line.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

std::string Shown(std::string_view value) {
  return "\"" + Shortened(OneLine(CleanUtf8(value.substr(0, 4 * kShown))), kShown) + "\"";
}

std::string ExactText(double value) {
  return Shortest(value);
}

std::string ExactText(float value) {
  return Shortest(value);
}

std::string FortranText(double value, std::size_t width, int decimals) {
  std::array<char, 40> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::scientific, decimals);
  std::string text(digits.data(), end.ptr);
  std::ranges::replace(text, 'e', 'E');
  return text.size() < width ? AtRight(text, width) : text;
}

std::string AtRight(std::string_view text, std::size_t columns) {
  const std::string_view kept = text.substr(0, columns);
  return std::string(columns - kept.size(), ' ') + std::string(kept);
}

std::string AtLeft(std::string_view text, std::size_t columns) {
  const std::string_view kept = text.substr(0, columns);
  return std::string(kept) + std::string(columns - kept.size(), ' ');
}

}  // namespace kestrel::exchange
