// Rounding half to even, and the range checks behind each conversion.
// SPDX-License-Identifier: MIT
#include "numeric/conversions.h"

#include <cmath>
#include <limits>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

template <typename Integer>
Integer Checked(double value) {
  const double whole = std::nearbyint(value);  // default rounding mode: half to even
  if (!(whole >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
        whole <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
    throw RuntimeError(kOverflow);
  }
  return static_cast<Integer>(whole);
}

}  // namespace

std::uint8_t ToByte(double value) {
  return Checked<std::uint8_t>(value);
}
std::int16_t ToInteger(double value) {
  return Checked<std::int16_t>(value);
}
std::int32_t ToLong(double value) {
  return Checked<std::int32_t>(value);
}

std::int16_t MultiplyInteger(std::int16_t a, std::int16_t b) {
  return ToInteger(static_cast<double>(a) * static_cast<double>(b));
}

std::int16_t NarrowToInteger(std::int32_t value) {
  return static_cast<std::int16_t>(static_cast<std::uint32_t>(value) & 0xFFFFU);
}

}  // namespace kestrel
