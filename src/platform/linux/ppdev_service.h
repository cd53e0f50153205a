// What stands for the port-access driver's service on Linux: the claimed port.
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/ppdev_port.h"
#include "seams/driver_service.h"

namespace kestrel {

// What stands for the port-access driver's service where the system guards the ports itself: it is
// there, and starts with the system, exactly when the port can be had. Nothing can be installed.
class PpdevService : public DriverService {
 public:
  explicit PpdevService(PpdevPort& port) : port_(port) {}

  // "2", starts with the system, for "Start" of "...\giveio" while the port is held; else empty.
  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override;
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override;
  [[nodiscard]] std::string ProgramFolder() override;
  void WriteBatchFile(const std::string& path, const std::string& content) override;

  // Runs nothing; its exit code is not 0.
  std::int32_t RunAndWait(const std::string& commandLine) override;

  [[nodiscard]] std::string Explanation() override { return port_.Explanation(); }

 private:
  PpdevPort& port_;
};

}  // namespace kestrel
