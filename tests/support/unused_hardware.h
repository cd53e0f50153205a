// Port and drivers that no test of this kind may touch.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "seams/driver_service.h"
#include "seams/port_io.h"

namespace kestrel {

// A parallel port that no test of this kind may touch.
class UnusedPort : public PortIo {
 public:
  void giveio() override { ADD_FAILURE() << "giveio"; }
  void vbOut(std::int16_t port, std::int16_t value) override {
    ADD_FAILURE() << "vbOut " << port << ", " << value;
  }
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override {
    ADD_FAILURE() << "vbInp " << port;
    return 0;
  }
};

// A system whose drivers no test of this kind may touch.
class UnusedDriverService : public DriverService {
 public:
  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override {
    ADD_FAILURE() << "ReadRegistryValue " << key << ", " << name;
    return "";
  }
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t /*type*/,
                          const std::string& /*value*/) override {
    ADD_FAILURE() << "WriteRegistryValue " << key << ", " << name;
  }
  [[nodiscard]] std::string ProgramFolder() override {
    ADD_FAILURE() << "ProgramFolder";
    return "";
  }
  void WriteBatchFile(const std::string& path, const std::string& /*content*/) override {
    ADD_FAILURE() << "WriteBatchFile " << path;
  }
  std::int32_t RunAndWait(const std::string& commandLine) override {
    ADD_FAILURE() << "RunAndWait " << commandLine;
    return 0;
  }
};

}  // namespace kestrel
