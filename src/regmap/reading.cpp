// Decodes a register's word by the width, sign and scale of its row.
// SPDX-License-Identifier: MIT
#include "regmap/reading.h"

#include "regmap/register_table.h"

namespace kestrel {
namespace {

// Two's complement of `bits` bits, or the unsigned value of the low `bits` bits.
std::int32_t Decode(std::int32_t raw, std::int16_t bits, bool isSigned) {
  const std::int32_t top = 1 << (bits - 1);
  if (isSigned) return (raw & (top - 1)) - (raw & top);
  return raw & (2 * top - 1);
}

}  // namespace

// The product is rounded to single precision before the offset is added.
Reading DecodeReading(std::int16_t row, std::int32_t raw) {
  Reading reading{.raw = raw, .value = Decode(raw, RegBits[row], RegSigned[row]), .scaled = 0};
  const float product = static_cast<float>(reading.value) * RegScale[row];
  reading.scaled = product + RegOffset[row];
  return reading;
}

}  // namespace kestrel
