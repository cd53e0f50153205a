// A number that texts are told apart by, the same on every machine and for ever.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace kestrel {

// FNV-1a, 64 bits; going on from an earlier hash joins texts.
inline constexpr std::uint64_t kHashOfNothing = 0xcbf29ce484222325;
[[nodiscard]] constexpr std::uint64_t HashOf(std::string_view text,
                                             std::uint64_t from = kHashOfNothing) {
  for (const char letter : text) {
    from = (from ^ static_cast<std::uint8_t>(letter)) * 0x100000001b3;
  }
  return from;
}

}  // namespace kestrel
