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

// Supply and temperature, into conditions; false when the sensor was lost.
[[nodiscard]] bool ReadConditions(RegisterAccess& registers, Conditions& conditions);

// The sensor's buffers with their information word and conditions, scaled by the range code
// `range`. STATUS, alarms, time and origin are left to the caller. `progress` is told points done
// of all.
[[nodiscard]] std::optional<Record> ReadRecordBuffers(
    RegisterAccess& registers, RecordKind kind, std::int16_t range,
    const std::function<void(int done, int total)>& progress);

}  // namespace kestrel
