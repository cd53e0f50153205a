// The sensor's alarms as its registers show them: ALM_x_STAT, the flags of STATUS, and what they
// judge. SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "simulator/registers/alarm_control.h"
#include "simulator/registers/register_file.h"
#include "simulator/sensor/alarm_monitor.h"
#include "simulator/sensor/surroundings.h"

namespace kestrel::sensor {

// Stands between AlarmMonitor, which judges, and the registers. ALM_CTRL decides at each step.
class Alarms {
 public:
  Alarms(RegisterFile& registers, const Surroundings& surroundings)
      : registers_(registers), surroundings_(surroundings) {}

  [[nodiscard]] AlarmControl Control() const;

  // Shows in ALM_x_STAT what the spectrum raises. Time records are not judged.
  void Judge(const CapturedRecord& spectrum, const AlarmBands& bands);

  // Measures supply and temperature at a moment, judges the system alarm by them, and shows all
  // flags in STATUS; latched ones stay until the status is cleared.
  void Measure(std::chrono::nanoseconds moment);

  // The alarm flags that the latest spectrum and the latest measurement raised.
  [[nodiscard]] std::uint16_t Flags() const { return monitor_.Flags(); }

  // After a change of ALM_CTRL: an alarm that is off is raised no longer, and nothing is held any
  // longer without latching. What is switched on counts from the next record or measurement on.
  void Withdraw();

  void ClearStatus();

  // The bands are other ones.
  void RestartRuns() { monitor_.RestartRuns(); }

  void Restart() { monitor_.Restart(); }

 private:
  RegisterFile& registers_;
  const Surroundings& surroundings_;
  AlarmMonitor monitor_;
};

}  // namespace kestrel::sensor
