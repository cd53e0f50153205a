// How many records there are, in words.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

// "1 record", "12 records".
[[nodiscard]] inline std::string RecordCount(std::int64_t count) {
  return std::to_string(count) + (count == 1 ? " record" : " records");
}

}  // namespace kestrel
