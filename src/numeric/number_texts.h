// Numbers as a reader sees them: thousands grouped, digits that follow the error bound.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel::analysis {

// What stands for a number that is not known or not finite.
inline constexpr const char* kNoNumber = "\u2013";

// `decimals` places, thousands grouped by commas, U+2212 as minus: "−22,698.2". A number that is
// not finite gives kNoNumber, as in all functions below.
[[nodiscard]] std::string NumberText(double value, int decimals);

// `digits` significant digits: "0.0123", "1,230". Beyond 1E+15 and below 1E−6 as "1.2×10⁻⁸".
[[nodiscard]] std::string SignificantText(double value, int digits = 3);

// Rounded to `digits` significant digits upwards (downwards), so that a limit errs to the safe
// side.
[[nodiscard]] double RoundedUp(double value, int digits = 3);
[[nodiscard]] double RoundedDown(double value, int digits = 3);

// The nearest number of `digits` significant digits.
[[nodiscard]] double RoundedTo(double value, int digits);

// How many decimals a value with this error bound carries, and the bound's own text. The bound
// keeps one digit, two where it begins with 1 or 2, and is rounded up; negative decimals round to
// tens.
struct BoundDigits {
  int decimals = 0;
  double bound = 0;  // rounded
};
[[nodiscard]] BoundDigits DigitsOfBound(double bound);

// A value and its bound: {"22,698.2", "±0.9"}. A bound of 0, or none, leaves its text empty and the
// value at six digits.
struct BoundedText {
  std::string value{};
  std::string bound{};
  bool operator==(const BoundedText&) const = default;
};
[[nodiscard]] BoundedText WithBound(double value, double bound);

// The same for a reader that goes on calculating: the value at one digit more than its text has,
// and its bound at two digits, rounding included. A bound of 0, or none, stays 0 and leaves the
// value at six digits.
struct BoundedNumber {
  double value = 0;
  double bound = 0;
  bool operator==(const BoundedNumber&) const = default;
};
[[nodiscard]] BoundedNumber RoundedByBound(double value, double bound);

// A frequency in Hz with three significant digits and its unit: "587 Hz", "49.9 kHz".
[[nodiscard]] std::string HertzText(double hz);

// A time in s: "5.11 ms", "2.61 s".
[[nodiscard]] std::string SecondsText(double seconds);

// Decibels with their sign: "+4.3", "−0.6", "0.0".
[[nodiscard]] std::string SignedDecibelText(double db);

}  // namespace kestrel::analysis
