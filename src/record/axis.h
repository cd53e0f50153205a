// The three axes and their letters.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

namespace kestrel {

enum class Axis { X, Y, Z };

inline constexpr std::array<Axis, 3> kAxes{Axis::X, Axis::Y, Axis::Z};

inline constexpr std::size_t Index(Axis axis) {
  return static_cast<std::size_t>(axis);
}

// 'X', 'Y' or 'Z'.
[[nodiscard]] constexpr char Letter(Axis axis) {
  return static_cast<char>('X' + Index(axis));
}

}  // namespace kestrel
