// Numbers out of texts: decimal and hexadecimal, leading or whole.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrel {

// The number that a text starts with, blanks before it skipped; 0 when it starts with none.
// Decimal mark ".", optional sign and exponent ("2.5e1 mm" is 25).
[[nodiscard]] double LeadingNumber(std::string_view text);

// The number that a whole text stands for, blanks around it allowed; nothing for any other text.
[[nodiscard]] std::optional<double> WholeTextNumber(std::string_view text);

// A whole text of one to eight hexadecimal digits, blanks around it allowed; nothing otherwise.
[[nodiscard]] std::optional<std::uint32_t> HexadecimalNumber(std::string_view text);

// A whole text of one to four hexadecimal digits, "0x" or "&H" before them and blanks around it
// allowed; nothing otherwise.
[[nodiscard]] std::optional<std::uint16_t> HexadecimalWord(std::string_view text);

// The word that a text is converted to: the low 16 bits of the number that its hexadecimal digits
// make, "0x" or "&H" before them and blanks around it allowed, up to the first character that is
// none; 0 where it begins with none.
[[nodiscard]] std::uint16_t LeadingHexadecimalWord(std::string_view text);

}  // namespace kestrel
