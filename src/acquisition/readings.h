// What the sensor tells, read as values: STATUS, alarms, conditions, a record.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "record/record.h"
#include "transport/register_access.h"

namespace kestrel {

// Each is nothing when the sensor was lost on the way.

// The decoded word of a register by its row.
[[nodiscard]] std::optional<std::int32_t> ReadWord(RegisterAccess& registers, std::int16_t row);

[[nodiscard]] std::optional<StatusFlags> ReadStatusFlags(RegisterAccess& registers);

// Peaks and alarm flags as the sensor has them now; peaks in g by the range at which the record in
// its buffers was taken.
[[nodiscard]] std::optional<AlarmState> ReadAlarms(RegisterAccess& registers);

// Supply and temperature; the record count is not read.
[[nodiscard]] std::optional<Conditions> ReadConditions(RegisterAccess& registers);

// The buffers' words are read from now on as magnitudes, which are unsigned, or as signed samples.
void ReadBuffersAs(RecordKind kind);

// What happens while a record is read. All but `scale` may be left out.
struct ReadoutSteps {
  // REC_INFO is in the record's settings: gives it its scale, and REC_CTRL as it was set beside it.
  std::function<void(Record& record)> scale;
  std::function<void(std::int32_t recordCount)> counted;  // the rest follows
  std::function<void(float volts)> supply;
  std::function<void(float celsius)> temperature;
  std::function<void(int done, int total)> points;  // at every 64th point
};

// The sensor's buffers with their information word and conditions. Expects ReadBuffersAs the same
// kind. STATUS, alarms, time and origin are left to the caller.
[[nodiscard]] std::optional<Record> ReadRecordBuffers(RegisterAccess& registers, RecordKind kind,
                                                      const ReadoutSteps& steps);

}  // namespace kestrel
