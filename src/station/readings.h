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

// ALM_x_PEAK and ALM_x_FREQ, into what is known of the alarms; false when the sensor was lost.
[[nodiscard]] bool ReadAlarmPeaks(RegisterAccess& registers, AlarmState& alarms);
// ALM_x_STAT likewise.
[[nodiscard]] bool ReadAlarmFlags(RegisterAccess& registers, AlarmState& alarms);

// Supply and temperature, into conditions; false when the sensor was lost.
[[nodiscard]] bool ReadConditions(RegisterAccess& registers, Conditions& conditions);

// The sensor's buffers with their information word and conditions, scaled by the range code
// `range`. `earlier` is the record before: points beyond the new one's width stay as it had them.
// STATUS, alarms, time and origin are left to the caller. `progress` is told points done of all.
[[nodiscard]] std::optional<Record> ReadRecordBuffers(
    RegisterAccess& registers, RecordKind kind, std::int16_t range, const Record& earlier,
    const std::function<void(int done, int total)>& progress);

}  // namespace kestrel
