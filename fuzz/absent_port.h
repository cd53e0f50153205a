// A computer without a parallel port and without a way to a driver for one.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/driver_service.h"
#include "seams/port_io.h"

namespace kestrel {

// A computer without a parallel port, and without a way to install a driver for one.
class AbsentPort : public PortIo {
 public:
  void giveio() override {}
  void vbOut(std::int16_t /*port*/, std::int16_t /*value*/) override {}
  [[nodiscard]] std::int16_t vbInp(std::int16_t /*port*/) override { return 0xFF; }
};

class AbsentDriverService : public DriverService {
 public:
  [[nodiscard]] std::string ReadRegistryValue(const std::string& /*key*/,
                                              const std::string& /*name*/) override {
    return "";
  }
  void WriteRegistryValue(const std::string& /*key*/, const std::string& /*name*/,
                          std::int32_t /*type*/, const std::string& /*value*/) override {}
  [[nodiscard]] std::string ProgramFolder() override { return ""; }
  void WriteBatchFile(const std::string& /*path*/, const std::string& /*content*/) override {}
  std::int32_t RunAndWait(const std::string& /*commandLine*/) override { return 1; }
};

}  // namespace kestrel
