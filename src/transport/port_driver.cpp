// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "transport/port_driver.h"

namespace kestrel {
namespace {

constexpr const char* kServiceKey = "SYSTEM\\CurrentControlSet\\Services\\giveio";
constexpr const char* kStartValue = "Start";
constexpr const char* kStartsWithSystem = "2";
constexpr const char* kStartsOnDemand = "3";

std::string Quoted(const std::string& path) {
  return '"' + path + '"';
}

// First removes any half-installed service, then installs it.
std::string InstallBatch(const std::string& folder) {
  const std::string installer = Quoted(folder + "\\instdrv2");
  return installer + " giveio remove\r\n" + installer + " giveio " +
         Quoted(folder + "\\Giveio.sys") + "\r\n";
}

}  // namespace

void SetupGiveIO(DriverService& service, Messages& messages) {
  if (service.ReadRegistryValue(kServiceKey, kStartValue) == kStartsWithSystem) return;
  const std::string folder = service.ProgramFolder();
  const std::string batch = folder + "\\temp.bat";
  service.WriteBatchFile(batch, InstallBatch(folder));
  service.RunAndWait(Quoted(batch));
  if (service.ReadRegistryValue(kServiceKey, kStartValue) == kStartsOnDemand) {
    service.WriteRegistryValue(kServiceKey, kStartValue, kRegistryNumber, kStartsWithSystem);
    return;
  }
  const std::string explanation = service.Explanation();
  messages.Show("The required I/O drivers could not be installed." +
                    (explanation.empty() ? "" : "\n\n" + explanation),
                "Error");
}

}  // namespace kestrel
