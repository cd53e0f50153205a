// The seam to registry, batch files and processes, for the port-access driver's set-up.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

inline constexpr std::int32_t kRegistryString = 1;
inline constexpr std::int32_t kRegistryNumber = 4;  // 4-byte number

// What the set-up of the port-access driver needs of the system.
class DriverService {
 public:
  virtual ~DriverService() = default;

  // A value under the local-machine hive as text (a number in decimal); empty when there is none.
  [[nodiscard]] virtual std::string ReadRegistryValue(const std::string& key,
                                                      const std::string& name) = 0;
  virtual void WriteRegistryValue(const std::string& key, const std::string& name,
                                  std::int32_t type, const std::string& value) = 0;

  // The program's own folder, without a trailing separator.
  [[nodiscard]] virtual std::string ProgramFolder() = 0;
  virtual void WriteBatchFile(const std::string& path, const std::string& content) = 0;

  // Runs a command line to its end and returns its exit code.
  virtual std::int32_t RunAndWait(const std::string& commandLine) = 0;

  // Why the ports cannot be had and what to do about it, where the system tells; empty when they
  // can, or when it does not tell.
  [[nodiscard]] virtual std::string Explanation() { return {}; }
};

}  // namespace kestrel
