// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "cli/command.h"
#include "cli/hidden_window.h"

namespace kestrel {

struct RecordReport {
  int number = 0;              // 1 for the first; 0 where there is only one
  bool withData = false;       // every point as well
  bool stopped = false;        // ended early
  std::filesystem::path file;  // empty when none was written
};

// Reports the record at hand: how it was taken, the peak of each axis, conditions, flags, alarms.
void WriteRecord(const Output& output, const HiddenWindow& window, const RecordReport& report);

// Supply and temperature, one line.
[[nodiscard]] std::string ConditionsText(double supplyV, double temperatureC);

// The flags of STATUS by name, and the alarm state of the axes.
[[nodiscard]] Json StatusJson(const HiddenWindow& window);
void PrintStatus(std::ostream& out, const HiddenWindow& window);

}  // namespace kestrel
