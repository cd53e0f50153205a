// Repeated captures in words.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "acquisition/repeat.h"
#include "acquisition/wide_run.h"

namespace kestrel {

// "12 s", "2 min 05 s", "3 h 20 min", "2 d 4 h".
[[nodiscard]] QString DurationWords(double seconds);

// How far it is, in one line: "3 of 10 captures done, the next in 7 s, 1 min 10 s left".
[[nodiscard]] QString RepeatLine(const RepeatProgress& progress);

// How far a wide spectrum is: "Wide: option 2, 2 of 4, 1 min 10 s left".
[[nodiscard]] QString WideLine(const WideProgress& progress);
// What has to be known of how it ended; empty where all went well or the user stopped it.
[[nodiscard]] QString WideTrouble(const WideProgress& progress);

// One gap, in local time: "2026-03-14 09:26:53 to 09:27:10: The sensor was lost."
[[nodiscard]] QString GapLine(const RepeatGap& gap);

}  // namespace kestrel
