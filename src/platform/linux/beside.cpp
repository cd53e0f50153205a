// A program beside this one takes its place.
// SPDX-License-Identifier: MIT
#include "platform/beside.h"

#include <unistd.h>

#include <array>
#include <filesystem>
#include <system_error>

namespace kestrel {

std::optional<int> RunBeside(const std::string& name, char** argv) {
  std::error_code fault;
  const auto own = std::filesystem::read_symlink("/proc/self/exe", fault);
  if (fault) return std::nullopt;
  const auto folder = own.parent_path();
  for (const auto& place : {folder, folder / ".." / "libexec" / "kestrel"}) {
    ::execv((place / name).c_str(), argv);  // returns where it cannot
  }
  return std::nullopt;
}

}  // namespace kestrel
