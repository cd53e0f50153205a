// What must always hold; the program ends where it does not.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

namespace kestrel {

// Ends the program, which keeps the input at hand, when something does not hold that always must.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace kestrel
