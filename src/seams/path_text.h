// Paths from texts, which are UTF-8 whatever the system takes narrow names for.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace kestrel {

[[nodiscard]] inline std::filesystem::path PathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

// From the working directory, as a user names files on the command line.
[[nodiscard]] inline std::filesystem::path AbsolutePathOf(const std::string& utf8) {
  return std::filesystem::absolute(PathOf(utf8));
}

[[nodiscard]] inline std::string TextOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace kestrel
