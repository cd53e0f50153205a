// Conversions of numbers to integers of 8, 16 and 32 bits.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

// Conversions of a number to an integer: round half to even, then check the range. A number that
// does not fit, or is not finite, throws RuntimeError "Overflow".
[[nodiscard]] std::uint8_t ToByte(double value);
[[nodiscard]] std::int16_t ToInteger(double value);
[[nodiscard]] std::int32_t ToLong(double value);

// Throws RuntimeError "Overflow" when a product of 16-bit integers leaves the 16-bit range.
[[nodiscard]] std::int16_t MultiplyInteger(std::int16_t a, std::int16_t b);

// The value wrapped into 16 bits, as a register word kept in a signed 16-bit variable.
[[nodiscard]] std::int16_t NarrowToInteger(std::int32_t value);

}  // namespace kestrel
