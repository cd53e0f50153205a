// A moment as the user reads clocks.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <cstdint>

namespace kestrel {

// "18:34:16", the date before it when not of today.
[[nodiscard]] QString LocalTime(std::chrono::system_clock::time_point time);

// How far local clocks are ahead of UTC at a moment, in seconds; the moment in seconds since 1970.
[[nodiscard]] std::int64_t LocalOffset(std::int64_t utc);

}  // namespace kestrel
