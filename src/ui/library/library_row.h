// A record of the archive as a list has it: without its points.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "archive/kept_record.h"

namespace kestrel {

struct LibraryRow {
  std::int64_t id = 0;
  std::chrono::system_clock::time_point time;
  RecordKind kind = RecordKind::Spectrum;
  QString line;                // kind and settings, in short
  QString source;              // sensor, bench, program
  QString full;                // kind and settings, all of them
  archive::KeptLevels levels;  // X, Y, Z
  bool hasAlarm = false;
  archive::Remarks remarks;
};

[[nodiscard]] LibraryRow RowOf(const archive::KeptRecord& record);

}  // namespace kestrel
