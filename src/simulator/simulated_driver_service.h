// A system on which the port-access driver is installed.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "seams/driver_service.h"

namespace kestrel {

// A system on which the port-access driver is installed and starts by itself: nothing needs to be
// written or run. What is written all the same is kept and counted.
class SimulatedDriverService : public DriverService {
 public:
  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override;
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override;
  [[nodiscard]] std::string ProgramFolder() override { return "."; }
  void WriteBatchFile(const std::string& path, const std::string& content) override;

  // Runs nothing; the exit code tells so.
  std::int32_t RunAndWait(const std::string& commandLine) override;

  // How often anything was to be changed or run.
  [[nodiscard]] unsigned Changes() const { return changes_; }

 private:
  std::string start_ = "2";  // "Start" of the service: automatic
  unsigned changes_ = 0;
};

}  // namespace kestrel
