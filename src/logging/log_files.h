// Which data-log file is next, and which earlier ones are in its way.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "seams/files.h"
#include "seams/locale.h"

namespace kestrel {

// Where the next capture is written, as name and number are set now.
[[nodiscard]] std::filesystem::path NextLogFile(Files& files, Locale& locale);

// Numbers of the files of this name that have the next number or a higher one, least first: the
// next captures replace them.
[[nodiscard]] std::vector<int> LogNumbersInTheWay(Files& files, Locale& locale);

// The number behind all of them, the next number where there are none; nothing where no number is
// left.
[[nodiscard]] std::optional<std::int16_t> NextFreeLogNumber(Files& files, Locale& locale);

// "pump_1.csv", or "pump_1.csv to pump_7.csv"; empty when there are none.
[[nodiscard]] std::string NamesOfFilesInTheWay(Files& files, Locale& locale);

// How many files of this name have the next number or a higher one: the next captures replace them.
[[nodiscard]] int LogFilesInTheWay(Files& files, Locale& locale);

// One sentence on the files in the way; empty when there are none.
[[nodiscard]] std::string WarningOfFilesInTheWay(Files& files, Locale& locale);

}  // namespace kestrel
