// Arbitrary bytes imported as a data-log file.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "import_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kestrel::exchange::CheckImport({reinterpret_cast<const char*>(data), size});
  return 0;
}
