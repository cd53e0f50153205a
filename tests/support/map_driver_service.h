// A registry and a program folder in memory, every call kept.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "numeric/runtime_error.h"
#include "seams/driver_service.h"

namespace kestrel {

// A registry and a program folder in memory. Every call is kept as one line of text.
class MapDriverService : public DriverService {
 public:
  std::map<std::string, std::string> registry;  // "key|name" to value
  std::string folder = "C:\\Program Files\\Kestrel";
  std::function<void()> whileRunning;  // what the installer does
  std::int32_t exitCode = 0;           // of the installer
  std::string explanation;
  std::string batchFault;  // why no batch file can be written; empty when it can

  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override {
    log_.push_back("read " + key + "|" + name);
    const auto found = registry.find(key + "|" + name);
    return found == registry.end() ? "" : found->second;
  }
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override {
    log_.push_back("write " + key + "|" + name + " type " + std::to_string(type) + " " + value);
    registry[key + "|" + name] = value;
  }
  [[nodiscard]] std::string ProgramFolder() override { return folder; }
  void WriteBatchFile(const std::string& path, const std::string& content) override {
    if (!batchFault.empty()) throw RuntimeError(path + ": " + batchFault);
    log_.push_back("batch " + path + "\n" + content);
  }
  std::int32_t RunAndWait(const std::string& commandLine) override {
    log_.push_back("run " + commandLine);
    if (whileRunning) whileRunning();
    return exitCode;
  }
  [[nodiscard]] std::string Explanation() override { return explanation; }

  [[nodiscard]] const std::vector<std::string>& Log() const { return log_; }

 private:
  std::vector<std::string> log_;
};

}  // namespace kestrel
