// Texts of files: UTF-8 that is always whole, and numbers that lose no bit.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrel::exchange {

[[nodiscard]] bool IsUtf8(std::string_view text);

// The same text with U+FFFD for every byte that is no UTF-8.
[[nodiscard]] std::string CleanUtf8(std::string_view text);

// Bytes of one byte a character (ISO 8859-1) as UTF-8; what is UTF-8 already stays.
[[nodiscard]] std::string AsUtf8(std::string_view text);

// The characters of UTF-8; what is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::u32string Characters(std::string_view text);

// At most so many bytes of a text, no character cut; "..." tells where something is left out.
[[nodiscard]] std::string Shortened(std::string_view text, std::size_t bytes);

// Line ends, tabs and other control characters become blanks; blanks at the ends are left out.
[[nodiscard]] std::string OneLine(std::string_view text);

// A value out of a file as a message shows it: quoted, one line, not long.
[[nodiscard]] std::string Shown(std::string_view value);

// The shortest text that is read as the same number, "." as decimal mark.
[[nodiscard]] std::string ExactText(double value);
[[nodiscard]] std::string ExactText(float value);

// As FORTRAN writes it with Ew.d: "  1.000000000000E+00". `width` characters, more where it does
// not fit.
[[nodiscard]] std::string FortranText(double value, std::size_t width, int decimals);

// A text at the end, or at the beginning, of so many columns; longer ones are cut.
[[nodiscard]] std::string AtRight(std::string_view text, std::size_t columns);
[[nodiscard]] std::string AtLeft(std::string_view text, std::size_t columns);

}  // namespace kestrel::exchange
