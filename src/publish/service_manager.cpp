// The manager's own library carries what is told.
// SPDX-License-Identifier: MIT
#include "publish/service_manager.h"

#include <systemd/sd-daemon.h>

#include "publish/names.h"

namespace kestrel::publish {

bool TellReady(const std::string& status) {
  return sd_notify(0, ("READY=1\nSTATUS=" + CleanText(status)).c_str()) >= 0;
}

void TellStopping() {
  sd_notify(0, "STOPPING=1");
}

void TellAlive() {
  sd_notify(0, "WATCHDOG=1");
}

std::optional<std::chrono::microseconds> WatchdogPeriod() {
  std::uint64_t microseconds = 0;
  if (sd_watchdog_enabled(0, &microseconds) <= 0) return {};
  return std::chrono::microseconds(microseconds);
}

}  // namespace kestrel::publish
