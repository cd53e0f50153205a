// The interface in use, in words for the status line.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

struct InterfaceText {
  std::string line;    // what is connected, in a few words
  std::string detail;  // what else is known of it
};

// The interface in use, from the program-wide state.
[[nodiscard]] InterfaceText DescribeInterface();

}  // namespace kestrel
