// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "platform/linux/parallel_ports.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>

namespace kestrel {
namespace {

// The N of "parportN"; the folder also holds settings for all ports.
std::optional<int> PortNumber(const std::string& name) {
  constexpr std::string_view kPrefix = "parport";
  if (!name.starts_with(kPrefix)) return std::nullopt;
  int number = 0;
  const char* const end = name.data() + name.size();
  const auto parsed = std::from_chars(name.data() + kPrefix.size(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return number;
}

}  // namespace

std::vector<SystemParallelPort> ParallelPorts(const ParallelPortFolders& folders) {
  std::vector<SystemParallelPort> ports;
  std::error_code absent;
  for (const auto& entry : std::filesystem::directory_iterator(folders.settings, absent)) {
    const std::string name = entry.path().filename().string();
    const std::optional<int> number = PortNumber(name);
    if (!number) continue;
    SystemParallelPort port{*number, 0, folders.devices / name};
    std::ifstream(entry.path() / "base-addr") >> port.base;  // "888 1912": base, extended base
    ports.push_back(std::move(port));
  }
  std::sort(ports.begin(), ports.end(),
            [](const auto& a, const auto& b) { return a.number < b.number; });
  return ports;
}

}  // namespace kestrel
