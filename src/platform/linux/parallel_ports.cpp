// Reading the parallel ports' numbers and addresses from the system's settings.
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
  std::uint16_t number = 0;  // no sign
  const char* const end = name.data() + name.size();
  const auto parsed = std::from_chars(name.data() + kPrefix.size(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return number;
}

// The first word of "888 1912": base, extended base; 0 when it is no number that fits.
std::uint32_t ReadBase(const std::filesystem::path& file) {
  std::string word;
  std::ifstream(file) >> word;
  std::uint32_t base = 0;
  const char* const end = word.data() + word.size();
  const auto parsed = std::from_chars(word.data(), end, base);
  return parsed.ec == std::errc() && parsed.ptr == end ? base : 0;
}

}  // namespace

std::vector<SystemParallelPort> ParallelPorts(const ParallelPortFolders& folders) {
  std::vector<SystemParallelPort> ports;
  std::error_code absent;
  for (const auto& entry : std::filesystem::directory_iterator(folders.settings, absent)) {
    const std::string name = entry.path().filename().string();
    const std::optional<int> number = PortNumber(name);
    if (!number) continue;
    ports.push_back({*number, ReadBase(entry.path() / "base-addr"), folders.devices / name});
  }
  std::sort(ports.begin(), ports.end(),
            [](const auto& a, const auto& b) { return a.number < b.number; });
  return ports;
}

}  // namespace kestrel
