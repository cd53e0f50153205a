// Registry, batch files and processes, for the set-up of the port-access driver.
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/locked_port.h"
#include "platform/windows/port_libraries.h"
#include "seams/driver_service.h"

namespace kestrel {

// The system's registry and processes, as the set-up of the port-access driver needs them.
class ServiceRegistry : public DriverService {
 public:
  // `port` is the one that is reached through the libraries.
  ServiceRegistry(PortLibraries& libraries, const LockedPort& port)
      : libraries_(libraries), port_(port) {}

  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override;
  // Nothing is written where the user may not.
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override;
  [[nodiscard]] std::string ProgramFolder() override;
  // Throws RuntimeError with path and reason when it cannot.
  void WriteBatchFile(const std::string& path, const std::string& content) override;
  // -1 when the command cannot be started.
  std::int32_t RunAndWait(const std::string& commandLine) override;
  // Who else uses the port, why the libraries cannot be used, and that installing the driver takes
  // an administrator where it is missing and the user is none.
  [[nodiscard]] std::string Explanation() override;

 private:
  PortLibraries& libraries_;
  const LockedPort& port_;
};

}  // namespace kestrel
