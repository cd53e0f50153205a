// Texts of numbers: general, fixed, grouped, hexadecimal.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

// General number format: the shortest text of at most 15 significant digits (7 for single
// precision), "." as decimal mark, "E-05" style exponents outside 0.0001 to 1E+15 (1E+07).
[[nodiscard]] std::string GeneralNumber(double value);
[[nodiscard]] std::string GeneralNumber(float value);
[[nodiscard]] std::string GeneralNumber(std::int32_t value);

// `decimals` places, half away from zero judged on 15 significant decimal digits: "0.000" is
// FixedNumber(value, 3). A result that rounds to zero carries no sign.
[[nodiscard]] std::string FixedNumber(double value, int decimals);

// Pattern "0.0###": one to four decimals.
[[nodiscard]] std::string OneToFourDecimals(double value);

// Pattern "##,##0": whole number with thousands separators.
[[nodiscard]] std::string GroupedWholeNumber(double value);

// Hexadecimal digits, capitals, no prefix and no padding; a negative value shows as the two's
// complement of its width.
[[nodiscard]] std::string Hex(std::int32_t value);
[[nodiscard]] std::string Hex(std::int16_t value);

}  // namespace kestrel
