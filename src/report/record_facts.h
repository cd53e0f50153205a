// What is known of a record apart from its points, as a report tells it.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "archive/kept_record.h"
#include "report/report.h"

namespace kestrel::report {

// Machine, point, orientation, speed, moment, tags.
[[nodiscard]] std::vector<Fact> PlaceFacts(const archive::KeptRecord& kept);

// Settings, conditions, sensor, program.
[[nodiscard]] std::vector<Fact> SettingFacts(const archive::KeptRecord& kept);

// "Pump 1, drive end"; empty where neither was noted.
[[nodiscard]] std::string PlaceText(const archive::Remarks& remarks);

// "Spectrum", "Time record".
[[nodiscard]] std::string KindText(const Record& record);

// What makes the numbers other than they seem, a sentence each.
[[nodiscard]] std::vector<std::string> NoticesOf(const Record& record);

// The state of each axis and band as the sensor reported it.
[[nodiscard]] Section AlarmSection(const Record& record);

// "fault in band 3", "warning in bands 1 and 2", "none", "not read" of one axis.
[[nodiscard]] std::string AlarmText(const Record& record, Axis axis);

}  // namespace kestrel::report
