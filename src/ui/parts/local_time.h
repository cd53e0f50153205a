// A moment as the user reads clocks.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>

namespace kestrel {

// "18:34:16", the date before it when not of today.
[[nodiscard]] QString LocalTime(std::chrono::system_clock::time_point time);

}  // namespace kestrel
