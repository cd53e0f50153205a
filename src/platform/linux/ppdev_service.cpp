// The answers of a driver service that can neither be installed nor run.
// SPDX-License-Identifier: MIT
#include "platform/linux/ppdev_service.h"

namespace kestrel {

std::string PpdevService::ReadRegistryValue(const std::string& key, const std::string& name) {
  const bool asked = key.ends_with("\\giveio") && name == "Start";
  return asked && port_.Claim() ? "2" : "";
}

void PpdevService::WriteRegistryValue(const std::string& /*key*/, const std::string& /*name*/,
                                      std::int32_t /*type*/, const std::string& /*value*/) {}

std::string PpdevService::ProgramFolder() {
  return {};
}

void PpdevService::WriteBatchFile(const std::string& /*path*/, const std::string& /*content*/) {}

std::int32_t PpdevService::RunAndWait(const std::string& /*commandLine*/) {
  constexpr std::int32_t kCouldNotRun = 1;
  return kCouldNotRun;
}

}  // namespace kestrel
