// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "numeric/conversions.h"

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

}  // namespace kestrel
