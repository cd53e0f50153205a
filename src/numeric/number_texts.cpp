// How numbers are written: grouping, significant digits, bounds.
// SPDX-License-Identifier: MIT
#include "numeric/number_texts.h"

#include <algorithm>
#include <cmath>

#include "numeric/number_format.h"

namespace kestrel::analysis {
namespace {

constexpr const char* kMinus = "\u2212";

// 10 to the power of the first digit of a positive number.
int Exponent(double magnitude) {
  return static_cast<int>(std::floor(std::log10(magnitude)));
}

std::string Grouped(std::string digits) {
  const std::size_t mark = std::min(digits.find('.'), digits.size());
  for (std::size_t end = mark; end > 3;) {
    end -= 3;
    digits.insert(end, 1, ',');
  }
  return digits;
}

std::string Superscript(int number) {
  static constexpr const char* kDigits[] = {"\u2070", "\u00B9", "\u00B2", "\u00B3", "\u2074",
                                            "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
  std::string text = number < 0 ? "\u207B" : "";
  for (const char digit : std::to_string(std::abs(number))) text += kDigits[digit - '0'];
  return text;
}

std::string PowerText(double value, int digits) {
  int exponent = Exponent(std::fabs(value));
  double mantissa = value / std::pow(10.0, exponent);
  if (FixedNumber(std::fabs(mantissa), digits - 1).starts_with("10")) {
    mantissa /= 10;
    ++exponent;
  }
  return NumberText(mantissa, digits - 1) + "\u00D710" + Superscript(exponent);
}

double RoundedBy(double value, int digits, double (*round)(double)) {
  if (value == 0 || !std::isfinite(value)) return value;
  const int exponent = Exponent(std::fabs(value)) - digits + 1;
  const double step = std::pow(10.0, std::abs(exponent));
  const double scaled = exponent < 0 ? value * step : value / step;
  // A value that is the rounded one but for its last bits stays.
  const double nearest = std::round(scaled);
  const double whole =
      std::fabs(scaled - nearest) < 1e-9 * std::fabs(scaled) ? nearest : round(scaled);
  return exponent < 0 ? whole / step : whole * step;
}

}  // namespace

std::string NumberText(double value, int decimals) {
  if (!std::isfinite(value)) return kNoNumber;
  const double unit = decimals < 0 ? std::pow(10.0, -decimals) : 1;
  const std::string text =
      decimals < 0 ? FixedNumber(std::round(value / unit) * unit, 0) : FixedNumber(value, decimals);
  const bool negative = text.starts_with('-');
  return (negative ? kMinus : "") + Grouped(text.substr(negative ? 1 : 0));
}

std::string SignificantText(double value, int digits) {
  if (!std::isfinite(value)) return kNoNumber;
  if (value == 0) return "0";
  const double magnitude = std::fabs(value);
  if (magnitude >= 1e15 || magnitude < 1e-6) return PowerText(value, digits);
  int exponent = Exponent(magnitude);
  const double step = std::pow(10.0, exponent - digits + 1);
  if (std::round(magnitude / step) * step >= std::pow(10.0, exponent + 1)) ++exponent;
  return NumberText(value, digits - 1 - exponent);
}

double RoundedUp(double value, int digits) {
  return RoundedBy(value, digits, std::ceil);
}

double RoundedDown(double value, int digits) {
  return RoundedBy(value, digits, std::floor);
}

double RoundedTo(double value, int digits) {
  return RoundedBy(value, digits, std::round);
}

BoundDigits DigitsOfBound(double bound) {
  const double magnitude = std::fabs(bound);
  if (magnitude == 0 || !std::isfinite(magnitude)) return {};
  const double two = RoundedUp(magnitude, 2);
  const bool twoDigits = two / std::pow(10.0, Exponent(two)) < 2.95;
  const double rounded = RoundedUp(magnitude, twoDigits ? 2 : 1);
  const bool carried = !twoDigits && Exponent(rounded) > Exponent(two);  // 0.96 became 1
  return {.decimals = (twoDigits || carried ? 1 : 0) - Exponent(rounded), .bound = rounded};
}

BoundedText WithBound(double value, double bound) {
  if (!std::isfinite(value)) return {kNoNumber, ""};
  if (!std::isfinite(bound) || bound == 0) return {SignificantText(value, 6), ""};
  const BoundDigits digits = DigitsOfBound(bound);
  return {NumberText(value, digits.decimals),
          "\u00B1" + NumberText(digits.bound, std::max(digits.decimals, 0))};
}

BoundedNumber RoundedByBound(double value, double bound) {
  if (!std::isfinite(value)) return {value, 0};
  if (!std::isfinite(bound) || bound == 0) return {RoundedTo(value, 6), 0};
  const double magnitude = std::fabs(bound);
  const int decimals = DigitsOfBound(magnitude).decimals + 1;
  const double unit = std::pow(10.0, std::abs(decimals));
  const double rounded =
      decimals >= 0 ? std::round(value * unit) / unit : std::round(value / unit) * unit;
  return {rounded, RoundedUp(magnitude + std::fabs(rounded - value), 2)};
}

std::string HertzText(double hz) {
  if (std::fabs(hz) >= 10000) return SignificantText(hz / 1000, 3) + " kHz";
  return SignificantText(hz, 3) + " Hz";
}

std::string SecondsText(double seconds) {
  if (std::fabs(seconds) < 1) return SignificantText(seconds * 1000, 3) + " ms";
  return SignificantText(seconds, 3) + " s";
}

std::string SignedDecibelText(double db) {
  const std::string text = NumberText(db, 1);
  return db > 0 && std::isfinite(db) && text != "0.0" ? "+" + text : text;
}

}  // namespace kestrel::analysis
