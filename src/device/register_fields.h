// Any register's word taken apart for display.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "regmap/bit_field.h"

namespace kestrel {

// The 16 bits of a word in groups of four, "0101 1100 0000 0001".
[[nodiscard]] std::string BitText(std::int32_t word);

// The fields of a register's word, highest bits first; none where the word is one number.
[[nodiscard]] std::vector<cBitFieldProp> DescribeRegister(std::int16_t row, std::int32_t word);

// A field's value and what it means, "1  Hanning [default]"; the value alone where nothing is to be
// added to it.
[[nodiscard]] std::string FieldText(const cBitFieldProp& field);

// The number that a register's 16 bits stand for: negative where the register is signed.
[[nodiscard]] std::int32_t SignedWord(std::int16_t row, std::int32_t word);

}  // namespace kestrel
