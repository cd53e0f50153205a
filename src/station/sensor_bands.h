// The alarm bands of a station's sensor, read and written whole.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "alarms/band_table.h"
#include "connection/core.h"
#include "seams/files.h"
#include "station/noted_messages.h"
#include "station/result.h"
#include "station/unattended_loop.h"
#include "station/watch.h"

namespace kestrel {

// A transfer takes seconds; an interrupt ends it before its next band, as a failure that tells how
// far it came. Thresholds are codes of the range that is set.
class SensorBands {
 public:
  SensorBands(Core& core, UnattendedLoop& loop, NotedMessages& messages, StepEnd& end,
              const Watch& watch)
      : core_(core), loop_(loop), messages_(messages), end_(end), watch_(watch) {}

  Result<BandTable> Read();
  // Clears the sensor's bands, then writes those of the table. Nothing is sent of a table with a
  // value that does not fit its register. The text tells how it ended.
  Result<std::string> Write(const BandTable& table);
  Result<std::string> Clear();

 private:
  class View;

  Result<std::string> End(const View& view);

  Core& core_;
  UnattendedLoop& loop_;
  NotedMessages& messages_;
  StepEnd& end_;
  const Watch& watch_;
};

// The bands of an alarm file. Refused with the path, the line and the value where it is none.
[[nodiscard]] Result<BandTable> ReadBandFile(Files& files, const std::filesystem::path& file);

}  // namespace kestrel
