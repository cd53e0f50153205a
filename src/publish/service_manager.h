// What a service tells the system's service manager; nothing where the program is none.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace kestrel::publish {

// The service has started; `status` is one line for people. False where the manager could not be
// told: it would end a service that does not say so.
[[nodiscard]] bool TellReady(const std::string& status);
// It has begun to stop.
void TellStopping();
// Has to be told more often than WatchdogPeriod, or the manager starts the service again.
void TellAlive();
// None where nobody waits for TellAlive.
[[nodiscard]] std::optional<std::chrono::microseconds> WatchdogPeriod();

}  // namespace kestrel::publish
