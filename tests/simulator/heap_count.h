// How many bytes the test program holds at this moment.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace kestrel {

// Bytes that this program holds from operator new at this moment.
[[nodiscard]] std::size_t HeapBytes();

}  // namespace kestrel
