// Set-up of the port-access driver, and preparation of the port.
// SPDX-License-Identifier: MIT
#include "transport/port_driver.h"

#include <exception>
#include <string>

namespace kestrel {
namespace {

bool ready = false;

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

// Why it failed, and what the system says of it.
void ShowNotInstalled(DriverService& service, Messages& messages, const std::string& reason) {
  const std::string explanation = service.Explanation();
  messages.ShowExplained(
      "The required I/O drivers could not be installed.", "Error",
      reason + (reason.empty() || explanation.empty() ? "" : "\n") + explanation);
}

bool Install(DriverService& service) {
  if (service.ReadRegistryValue(kServiceKey, kStartValue) == kStartsWithSystem) return true;
  const std::string folder = service.ProgramFolder();
  const std::string batch = folder + "\\temp.bat";
  service.WriteBatchFile(batch, InstallBatch(folder));
  service.RunAndWait(Quoted(batch));
  if (service.ReadRegistryValue(kServiceKey, kStartValue) != kStartsOnDemand) return false;
  service.WriteRegistryValue(kServiceKey, kStartValue, kRegistryNumber, kStartsWithSystem);
  return true;
}

}  // namespace

const bool& PortReady = ready;

void ResetPortDriver() {
  ready = false;
}

// A program's folder that cannot be written keeps the driver out, not the program.
bool SetupGiveIO(DriverService& service, Messages& messages) {
  std::string reason;
  try {
    if (Install(service)) return true;
  } catch (const std::exception& error) {
    reason = error.what();
  }
  ShowNotInstalled(service, messages, reason);
  return false;
}

// Without giveio the system keeps the program off the ports, installed driver or not.
void PreparePort(DriverService& service, PortIo& io, ParallelPort& port, Messages& messages) {
  const bool installed = SetupGiveIO(service, messages);
  io.giveio();
  ready = true;
  if (installed && !port.IsHeld()) ShowNotInstalled(service, messages, "");
  port.LptPortReset();
}

}  // namespace kestrel
