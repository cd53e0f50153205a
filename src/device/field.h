// One bit field of a register word: taken out, put in, described.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "numeric/conversions.h"
#include "regmap/bit_field.h"

namespace kestrel {

// One bit field of a register word.
struct Field {
  int lowestBit;
  std::int32_t mask;

  [[nodiscard]] std::int16_t Take(std::int32_t word) const {
    return ToInteger(static_cast<double>(word & mask) / static_cast<double>(1 << lowestBit));
  }

  // The field's share of a composed word. Not masked.
  [[nodiscard]] double Place(std::int16_t value) const {
    return static_cast<double>(value) * static_cast<double>(1 << lowestBit);
  }
};

// The meaning of the codes of a field, from 0 on. A code past the last one has no text.
using SettingTexts = std::span<const char* const>;

// A field of a word, described for display. Bits read "13:12", or "7" for a single one.
[[nodiscard]] cBitFieldProp DescribeField(const Field& field, std::int32_t word,
                                          const std::string& title, SettingTexts settings = {});

}  // namespace kestrel
