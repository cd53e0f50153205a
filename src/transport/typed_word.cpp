// Digits out of what was typed, or why there are none.
// SPDX-License-Identifier: MIT
#include "transport/typed_word.h"

#include <algorithm>

#include "numeric/number_format.h"
#include "numeric/number_parse.h"

namespace kestrel {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
constexpr std::size_t kMostDigits = 4;
constexpr std::size_t kShownLength = 40;

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Bytes of UTF-8 that go on with a character.
bool Continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

TypedWord ReadTypedWord(std::string_view text) {
  std::string_view digits = Trim(text);
  if (digits.starts_with("0x") || digits.starts_with("0X")) digits.remove_prefix(2);
  if (digits.empty() || digits.find_first_not_of(kDigits) != std::string_view::npos) {
    return {0, Quoted(text) + " is not a hexadecimal number."};
  }
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size() - 1));
  if (digits.size() > kMostDigits) {
    return {0, Quoted(text) + " does not fit 16 bits (0 to FFFF)."};
  }
  return {static_cast<std::uint16_t>(HexadecimalNumber(digits).value_or(0)), ""};
}

std::string Quoted(std::string_view text) {
  const std::string_view trimmed = Trim(text);
  if (trimmed.size() <= kShownLength) return '"' + std::string(trimmed) + '"';
  std::size_t end = kShownLength;
  while (end > 0 && Continues(trimmed[end])) --end;
  return '"' + std::string(trimmed.substr(0, end)) + "...\"";
}

bool IsBlank(std::string_view text) {
  return Trim(text).empty();
}

std::string PaddedHex(std::uint16_t value, std::size_t digits) {
  const std::string text = Hex(std::int32_t{value});
  return std::string(digits > text.size() ? digits - text.size() : 0, '0') + text;
}

}  // namespace kestrel
