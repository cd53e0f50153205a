// The length of a text in units of UTF-16.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "require.h"

namespace kestrel {

// The length of a text in units of UTF-16. Ends the program where it is no UTF-8.
inline std::size_t Utf16Units(std::string_view text) {
  std::size_t units = 0;
  while (!text.empty()) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    Require(lead < 0x80 || (lead >= 0xC2 && lead < 0xF5), "a character begins");
    Require(text.size() >= size, "and is whole");
    for (const char c : text.substr(1, size - 1)) {
      Require((static_cast<unsigned char>(c) & 0xC0U) == 0x80U, "and goes on");
    }
    units += size == 4 ? 2 : 1;
    text.remove_prefix(size);
  }
  return units;
}

}  // namespace kestrel
