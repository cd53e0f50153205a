// A moment as text that every program reads: ISO 8601 in UTC.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

namespace kestrel {

// "2024-03-14T08:26:53.000Z", with milliseconds, rounded down.
[[nodiscard]] std::string UtcText(std::chrono::system_clock::time_point moment);

}  // namespace kestrel
