// Scanning a text for the number it begins with, or is as a whole.
// SPDX-License-Identifier: MIT
#include "numeric/number_parse.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace kestrel {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool StartsNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

// Whether a number that no double can hold is too small for one rather than too large.
bool IsTiny(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, mark);
  const std::size_t first = mantissa.find_first_of("123456789");
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  std::string_view digits = number.substr(std::min(mark + 1, number.size()));
  if (digits.starts_with('+')) digits.remove_prefix(1);
  std::int64_t exponent = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (parsed.ec == std::errc::result_out_of_range) return digits.starts_with('-');
  constexpr std::int64_t kDecides = std::int64_t{1} << 62U;  // more than any text has digits
  exponent = std::clamp(exponent, -kDecides, kDecides);
  return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + exponent < 0;
}

// The number at the start of `text` and how many characters it took; 0 characters for none.
std::pair<double, std::size_t> Scan(std::string_view text) {
  std::size_t skipped = 0;
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    skipped = 1;
    if (text.starts_with('-')) return {0, 0};
  }
  if (!StartsNumber(text)) return {0, 0};  // keeps "inf" and "nan" out
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    const std::string_view number = text.substr(0, static_cast<std::size_t>(end - text.data()));
    value = IsTiny(number) ? 0 : (text.starts_with('-') ? -HUGE_VAL : HUGE_VAL);
  }
  return {value, skipped + static_cast<std::size_t>(end - text.data())};
}

}  // namespace

double LeadingNumber(std::string_view text) {
  return Scan(Trim(text)).first;
}

std::optional<double> WholeTextNumber(std::string_view text) {
  const std::string_view trimmed = Trim(text);
  const auto [value, length] = Scan(trimmed);
  if (length == 0 || length != trimmed.size()) return std::nullopt;
  return value;
}

std::optional<std::uint32_t> HexadecimalNumber(std::string_view text) {
  const std::string_view digits = Trim(text);
  std::uint32_t value = 0;
  if (digits.empty() || digits.size() > 8) return std::nullopt;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

namespace {

std::string_view WithoutPrefix(std::string_view digits) {
  for (const std::string_view prefix : {"0x", "0X", "&H", "&h"}) {
    if (digits.starts_with(prefix)) return digits.substr(prefix.size());
  }
  return digits;
}

}  // namespace

std::uint16_t LeadingHexadecimalWord(std::string_view text) {
  std::string_view digits = WithoutPrefix(Trim(text));
  digits = digits.substr(0, digits.find_first_not_of("0123456789abcdefABCDEF"));
  if (digits.size() > 4) digits.remove_prefix(digits.size() - 4);
  return static_cast<std::uint16_t>(HexadecimalNumber(digits).value_or(0));
}

std::optional<std::uint16_t> HexadecimalWord(std::string_view text) {
  const std::string_view digits = WithoutPrefix(Trim(text));
  if (digits.size() > 4 || digits != Trim(digits)) return std::nullopt;
  const std::optional<std::uint32_t> number = HexadecimalNumber(digits);
  if (!number) return std::nullopt;
  return static_cast<std::uint16_t>(*number);
}

}  // namespace kestrel
