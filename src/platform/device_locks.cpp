// Names of lock files, and what they tell.
// SPDX-License-Identifier: MIT
#include "platform/device_locks.h"

#include <algorithm>

namespace kestrel {

std::string LockFileOf(std::string device) {
  std::ranges::replace_if(
      device,
      [](char c) {
        return !((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                 c == '-' || c == '.');
      },
      '_');
  return "kestrel-" + device + ".lock";
}

std::string HolderOf(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
  return text.empty() ? "another program" : text;
}

}  // namespace kestrel
