// A moment as a number, and as text that every program reads: ISO 8601 in UTC.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace kestrel {

// In seconds since 1970.
[[nodiscard]] double SecondsOf(std::chrono::system_clock::time_point moment);

// "2024-03-14T08:26:53.000Z", with milliseconds, rounded down.
[[nodiscard]] std::string UtcText(std::chrono::system_clock::time_point moment);

// "2024-03-14", its first moment, or "2024-03-14T08:26", with seconds and parts of one, with a "Z"
// or without. Nothing of any other text, nor of years outside 1678 to 2261.
[[nodiscard]] std::optional<std::chrono::system_clock::time_point> UtcFrom(const std::string& text);

}  // namespace kestrel
