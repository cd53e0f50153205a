// RuntimeError: a fault of arithmetic or of a file that ends the handler it happens in.
// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace kestrel {

// A fault of the arithmetic or of a file that ends the handler it happens in; what() is the short
// text shown to the user ("Overflow", "Type mismatch", or a file's path and reason).
class RuntimeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr const char* kOverflow = "Overflow";
inline constexpr const char* kTypeMismatch = "Type mismatch";
inline constexpr const char* kSubscriptOutOfRange = "Subscript out of range";

}  // namespace kestrel
