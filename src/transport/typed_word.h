// A 16-bit word entered in hexadecimal digits.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel {

// What the user entered as a 16-bit word in hexadecimal digits, "0x" before them allowed.
struct TypedWord {
  std::uint16_t value = 0;
  std::string fault;  // the text and why it is no such word; empty when it is one
};

[[nodiscard]] TypedWord ReadTypedWord(std::string_view text);

// A text of the user's in quotation marks, shortened to fit a message.
[[nodiscard]] std::string Quoted(std::string_view text);

// Whether a text is empty or blank.
[[nodiscard]] bool IsBlank(std::string_view text);

// At least `digits` hexadecimal digits, capitals.
[[nodiscard]] std::string PaddedHex(std::uint16_t value, std::size_t digits);

}  // namespace kestrel
