// What the sensor tells, read as values: STATUS, alarms, conditions, a record.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "acquisition/buffer_points.h"
#include "acquisition/fast_readout.h"
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

// The sensor's buffers with their information word and conditions. Expects ReadBuffersAs the same
// kind. STATUS, alarms, time and origin are left to the caller. The points are read as `fast` has
// it; where that is in blocks, a board is opened once for the whole record.
[[nodiscard]] std::optional<Record> ReadRecordBuffers(RegisterAccess& registers, FastReadout& fast,
                                                      RecordKind kind, const ReadoutSteps& steps);

}  // namespace kestrel
