// The text of a data-log file, shaped by the user's locale.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

// How the locale shapes a data-log file: where numbers have a decimal comma, columns are separated
// by tabs and the file is named ".txt".
struct DataLogFormat {
  char decimalMark = '.';
  std::string separator = ",";
  std::string extension = ".csv";
};

[[nodiscard]] DataLogFormat FormatFor(char decimalMark);

// The whole content of a data-log file of the last capture.
[[nodiscard]] std::string DataLogText(const DataLogFormat& format, const std::string& baseName,
                                      const std::string& date, const std::string& time);

}  // namespace kestrel
