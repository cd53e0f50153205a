// Working out the digits of a number's text.
// SPDX-License-Identifier: MIT
#include "numeric/number_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace kestrel {
namespace {

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;

// Capitals, and "." as decimal mark whatever the process's locale is.
std::string Text(double value, std::chars_format format, int precision) {
  std::array<char, 40> text{};
  char* const end =
      std::to_chars(text.data(), text.data() + text.size(), value, format, precision).ptr;
  std::transform(text.data(), end, text.data(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return {text.data(), end};
}

std::string Significant(double value, int digits) {
  if (value == 0) return "0";  // no "-0"
  return Text(value, std::chars_format::general, digits);
}

// A finite number as decimal digits d1 d2 d3 ... with value 0.d1d2d3... x 10^exponent.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

Decimal ToDecimal(double magnitude) {
  const std::string scientific = Text(magnitude, std::chars_format::scientific, kDoubleDigits - 1);
  const std::size_t mark = scientific.find('E');
  Decimal decimal;
  decimal.digits = scientific.substr(0, 1) + scientific.substr(2, mark - 2);
  decimal.exponent = std::atoi(scientific.c_str() + mark + 1) + 1;
  return decimal;
}

// Keeps `count` digits, rounding half up; a carry out of the first digit raises the exponent.
void RoundTo(Decimal& decimal, int count) {
  if (count < 0) {
    decimal = {"0", 0};
    return;
  }
  const auto kept = static_cast<std::size_t>(count);
  if (kept >= decimal.digits.size()) return;
  bool carry = decimal.digits[kept] >= '5';
  decimal.digits.resize(kept);
  for (auto digit = decimal.digits.rbegin(); carry && digit != decimal.digits.rend(); ++digit) {
    carry = *digit == '9';
    *digit = carry ? '0' : static_cast<char>(*digit + 1);
  }
  if (carry) {
    decimal.digits.insert(decimal.digits.begin(), '1');
    ++decimal.exponent;
  }
}

char DigitAt(const Decimal& decimal, int position) {
  return position >= 0 && position < static_cast<int>(decimal.digits.size())
             ? decimal.digits[static_cast<std::size_t>(position)]
             : '0';
}

}  // namespace

std::string GeneralNumber(double value) {
  return Significant(value, kDoubleDigits);
}

std::string GeneralNumber(float value) {
  return Significant(static_cast<double>(value), kSingleDigits);
}

std::string GeneralNumber(std::int32_t value) {
  return std::to_string(value);
}

std::string FixedNumber(double value, int decimals) {
  if (!std::isfinite(value)) return Significant(value, kDoubleDigits);
  Decimal decimal = ToDecimal(std::fabs(value));
  RoundTo(decimal, decimal.exponent + decimals);
  const bool zero = decimal.digits.find_first_not_of('0') == std::string::npos;
  std::string text = value < 0 && !zero ? "-" : "";
  if (decimal.exponent <= 0) text += '0';
  for (int i = 0; i < decimal.exponent; ++i) text += DigitAt(decimal, i);
  if (decimals > 0) text += '.';
  for (int i = 0; i < decimals; ++i) text += DigitAt(decimal, decimal.exponent + i);
  return text;
}

std::string OneToFourDecimals(double value) {
  std::string text = FixedNumber(value, 4);
  const std::size_t mark = text.find('.');
  if (mark == std::string::npos) return text;
  const std::size_t last = std::max(text.find_last_not_of('0'), mark + 1);
  text.resize(last + 1);
  return text;
}

std::string GroupedWholeNumber(double value) {
  std::string text = FixedNumber(value, 0);
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  for (std::size_t end = text.size(); end > first + 3;) {
    end -= 3;
    text.insert(end, 1, ',');
  }
  return text;
}

std::string Hex(std::int32_t value) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string text;
  auto rest = static_cast<std::uint32_t>(value);
  do {
    text.insert(text.begin(), kDigits[rest % 16]);
    rest /= 16;
  } while (rest != 0);
  return text;
}

std::string Hex(std::int16_t value) {
  return Hex(static_cast<std::int32_t>(static_cast<std::uint16_t>(value)));
}

}  // namespace kestrel
