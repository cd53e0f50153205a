// Operators new and delete that count what they hold.
// SPDX-License-Identifier: MIT
#include "simulator/heap_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> heldBytes{0};

// In front of each block, its size.
constexpr std::size_t kHeader = alignof(std::max_align_t);
static_assert(kHeader >= sizeof(std::size_t));

}  // namespace

std::size_t kestrel::HeapBytes() {
  return heldBytes;
}

void* operator new(std::size_t size) {
  void* block = std::malloc(size + kHeader);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  heldBytes += size;
  return static_cast<std::byte*>(block) + kHeader;
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  void* block = static_cast<std::byte*>(memory) - kHeader;
  heldBytes -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  operator delete(memory);
}
