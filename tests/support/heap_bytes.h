// How much of the heap is in use, with and without the address sanitizer.
// SPDX-License-Identifier: MIT
#pragma once

#include <malloc.h>

#include <cstddef>

#ifdef __SANITIZE_ADDRESS__
// Of the sanitizer's run-time library.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace kestrel {

// Bytes that are allocated and not yet freed. What the allocator itself holds back is not counted:
// the sanitizer holds back all that is freed for a while.
[[nodiscard]] inline std::size_t HeapBytes() {
#ifdef __SANITIZE_ADDRESS__
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 now = mallinfo2();
  return now.uordblks + now.hblkhd;
#endif
}

}  // namespace kestrel
