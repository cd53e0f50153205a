// Supply and temperature as the sensor measures them, and the system alarm.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "simulator/registers/alarm_control.h"

namespace kestrel {

// Supply and temperature as the registers SUPPLY_OUT and TEMP_OUT show them. The temperature's code
// falls as the temperature rises.
struct MeasuredConditions {
  std::uint16_t supply = 0;
  std::uint16_t temperature = 0;

  [[nodiscard]] static MeasuredConditions Measure(double volts, double degrees);

  // Whether the system alarm is raised; limit in the code of what it watches, as two's complement.
  // Neither greater nor less is a measurement of the limit's own code.
  [[nodiscard]] bool RaiseAlarm(AlarmControl control, std::uint16_t limit) const;
};

}  // namespace kestrel
