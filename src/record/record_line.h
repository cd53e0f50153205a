// What a record is, in one line and in full, from its own information word.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "record/record.h"

namespace kestrel {

// Range codes as the settings name them: "0 to 1g" to "0 to 70g".
[[nodiscard]] std::string RangeName(std::int16_t range);

// "0 to 1 g, Hanning, 8 averages".
[[nodiscard]] std::string SettingsName(const RecordSettings& settings);

// "Spectrum, 0 to 1 g, Hanning, 8 averages, option 0, Δf 195.7 Hz".
[[nodiscard]] std::string KindAndSettings(const Record& record);

// "Spectrum, 0 to 70 g, Hanning, 8 averages, option 0, Δf 195.7 Hz, 18:34:16"; of a time record
// "Time record, 0 to 70 g, option 0, Δt 9.98 µs, 18:34:16". `localTime` is the record's time as the
// user reads clocks; empty leaves it out. Empty for a record that was never taken.
[[nodiscard]] std::string RecordLine(const Record& record, const std::string& localTime);

// Everything that is known about the record, a line each: settings, points, scale, conditions,
// STATUS, where it came from.
[[nodiscard]] std::vector<std::string> RecordDetails(const Record& record,
                                                     const std::string& localTime);

// Parts of these texts: "Δf 195.7 Hz", "alarm, self-test", "31407, simulated, Ezusb-0".
[[nodiscard]] std::string StepText(const Record& record);
[[nodiscard]] std::string FlagsText(const StatusFlags& status);
[[nodiscard]] std::string SensorText(const SensorIdentity& sensor);

}  // namespace kestrel
