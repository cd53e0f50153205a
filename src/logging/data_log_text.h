// The text of a data-log file, shaped by the user's locale.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "record/record.h"
#include "record/status_flags.h"

namespace kestrel {

// STATUS bit 0 first. Spellings and trailing blanks are part of the file format.
inline constexpr std::array<const char*, kStatusFlags> kDataLogFlagNames{"VsL",
                                                                         "VsH",
                                                                         "FUF",
                                                                         "SPI",
                                                                         "Recording Escape ",
                                                                         "STD",
                                                                         "FMF",
                                                                         "DR",
                                                                         "X-Axis Spectral Alarm 1",
                                                                         "Y-Axis Spectral Alarm 1",
                                                                         "Z-Axis Spectral Alarm 1",
                                                                         "X-Axis Spectral Alarm 2 ",
                                                                         "Y-Axis Spectral Alarm 2 ",
                                                                         "Z-Axis Spectral Alarm 2",
                                                                         "System Alarm Flag"};

// How the locale shapes a data-log file: where numbers have a decimal comma, columns are separated
// by tabs and the file is named ".txt".
struct DataLogFormat {
  char decimalMark = '.';
  std::string separator = ",";
  std::string extension = ".csv";
};

[[nodiscard]] DataLogFormat FormatFor(char decimalMark);

// What a file says beside the record.
struct DataLogHead {
  std::string baseName;
  std::string date;            // as the locale writes it
  std::string time;            // likewise
  double averageExponent = 0;  // 2 to this power is the number of FFT averages
};

enum class DataLogValues { Scaled, RawWords };

// The whole content of a data-log file of a record.
[[nodiscard]] std::string DataLogText(const Record& record, const DataLogFormat& format,
                                      const DataLogHead& head, DataLogValues values);

// The heading over the columns of a record whose last point has this index; any other index than
// 255 and 511 gives no titles.
[[nodiscard]] std::string DataLogHeading(std::int16_t width, const std::string& separator);

}  // namespace kestrel
