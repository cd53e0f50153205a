// Which data-log file is next, and which earlier ones are in its way.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "seams/files.h"
#include "seams/locale.h"

namespace kestrel {

// Where the next capture is written, as name and number are set now.
[[nodiscard]] std::filesystem::path NextLogFile(Files& files, Locale& locale);

// How many files of this name have the next number or a higher one: the next captures replace them.
[[nodiscard]] int LogFilesInTheWay(Files& files, Locale& locale);

// One sentence on the files in the way; empty when there are none.
[[nodiscard]] std::string WarningOfFilesInTheWay(Files& files, Locale& locale);

}  // namespace kestrel
