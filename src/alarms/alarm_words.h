// The alarm words of the sensor, read into a value.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "alarms/band_table.h"
#include "record/record.h"
#include "transport/register_access.h"

namespace kestrel {

// 0 or 1 for each band; element 0 is not used.
using AlarmFlags = std::array<std::int16_t, kAlarmBands + 1>;

// `earlier` with the alarm flags of the three axes, X first, as the sensor reports them now; none
// when it cannot be reached.
[[nodiscard]] std::optional<AlarmState> ReadAlarmFlags(RegisterAccess& registers,
                                                       const AlarmState& earlier);

// Likewise with peaks and peak bins; their scale stays as it was.
[[nodiscard]] std::optional<AlarmState> ReadAlarmPeaks(RegisterAccess& registers,
                                                       const AlarmState& earlier);

// Alarm 1 (warning) and alarm 2 (fault) of each band of an axis.
[[nodiscard]] AlarmFlags WarningsOf(const AxisAlarms& alarms);
[[nodiscard]] AlarmFlags FaultsOf(const AxisAlarms& alarms);

// The number of the band, 0 to 7.
[[nodiscard]] std::int16_t BandOf(const AxisAlarms& alarms);

// Whether the peaks and their bins are the same words.
[[nodiscard]] bool SamePeaks(const AlarmState& a, const AlarmState& b);

}  // namespace kestrel
