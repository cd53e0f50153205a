// A record and the sensor's state as text for people or JSON for scripts.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>

#include "cli/command.h"
#include "cli/number_report.h"
#include "record/record.h"

namespace kestrel {

struct RecordReport {
  Record record;
  int number = 0;                         // 1 for the first capture; 0 where there is only one
  bool withData = false;                  // every point in the text as well; JSON always has them
  bool stopped = false;                   // ended early
  std::filesystem::path file{};           // empty when none was written
  std::optional<NumberReport> numbers{};  // where they were asked for
};

// Reports a record: how it was taken, the peak of each axis, conditions, flags, alarms.
void WriteRecord(const Output& output, const RecordReport& report);

[[nodiscard]] Json RecordJson(const RecordReport& report);

// Supply and temperature, one line.
[[nodiscard]] std::string ConditionsText(const Conditions& conditions);

// The flags of STATUS by name.
[[nodiscard]] Json StatusJson(StatusFlags status);
// The same a line each, and the alarm state of the axes.
void PrintState(std::ostream& out, StatusFlags status, const AlarmState& alarms);

}  // namespace kestrel
