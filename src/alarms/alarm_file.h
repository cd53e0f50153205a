// The text of an alarm file and the rule for its name.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "alarms/band_table.h"

namespace kestrel {

inline constexpr const char* kDefaultAlarmFile = "AlarmSpectrum_Default.csv";

// Bytes; some thousand times a usual one.
inline constexpr std::size_t kLargestAlarmFile = 1U << 20U;

// "AlarmSpectrum_" at the start and ".csv" at the end, both in exactly these letters.
[[nodiscard]] bool IsAlarmFileName(std::string_view name);

// The whole table as an alarm file: a header and 24 lines, each ended by CR LF.
[[nodiscard]] std::string AlarmFileText(const BandTable& table);

// Takes the lines of an alarm file into the table; returns how many. Also takes what spreadsheets
// write: LF, a byte-order mark, blanks and quotes around numbers. A bad line throws RuntimeError
// that names the line number and the value; the lines before it have been taken.
int ReadAlarmFileText(std::string_view content, BandTable& table);

}  // namespace kestrel
