// What one read of a register gave: the raw word, and what the register's row makes of it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

struct Reading {
  std::int32_t raw = 0;    // the word as the sensor sent it, 0..65535
  std::int32_t value = 0;  // by the row's width and sign
  float scaled = 0;        // value x scale + offset of the row, in single precision
  bool operator==(const Reading&) const = default;
};

// A word of this row's register. A row outside the table throws RuntimeError "Subscript out of
// range".
[[nodiscard]] Reading DecodeReading(std::int16_t row, std::int32_t raw);

}  // namespace kestrel
