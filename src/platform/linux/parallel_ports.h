// The list of the system's parallel ports.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace kestrel {

// Where the system keeps its parallel ports.
struct ParallelPortFolders {
  std::filesystem::path devices = "/dev";
  std::filesystem::path settings = "/proc/sys/dev/parport";
};

struct SystemParallelPort {
  int number = 0;
  std::uint32_t base = 0;        // I/O address; 0 for a port that has none, such as one on USB
  std::filesystem::path device;  // /dev/parportN, which need not exist
};

// The ports the system has found, by number.
[[nodiscard]] std::vector<SystemParallelPort> ParallelPorts(const ParallelPortFolders& folders);

}  // namespace kestrel
