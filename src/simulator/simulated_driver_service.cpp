// A registry that knows the driver is installed, and counts what it is asked to change.
// SPDX-License-Identifier: MIT
#include "simulator/simulated_driver_service.h"

namespace kestrel {
namespace {

bool IsStartOfService(const std::string& key, const std::string& name) {
  return name == "Start" && key.ends_with("\\giveio");
}

}  // namespace

std::string SimulatedDriverService::ReadRegistryValue(const std::string& key,
                                                      const std::string& name) {
  return IsStartOfService(key, name) ? start_ : std::string();
}

void SimulatedDriverService::WriteRegistryValue(const std::string& key, const std::string& name,
                                                std::int32_t /*type*/, const std::string& value) {
  ++changes_;
  if (IsStartOfService(key, name)) start_ = value;
}

void SimulatedDriverService::WriteBatchFile(const std::string& /*path*/,
                                            const std::string& /*content*/) {
  ++changes_;
}

std::int32_t SimulatedDriverService::RunAndWait(const std::string& /*commandLine*/) {
  ++changes_;
  return -1;
}

}  // namespace kestrel
