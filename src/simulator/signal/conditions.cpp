// Volts and degrees as the codes of SUPPLY_OUT and TEMP_OUT.
// SPDX-License-Identifier: MIT
#include "simulator/signal/conditions.h"

#include <cmath>

namespace kestrel {
namespace {

constexpr double kSupplyLsbV = 0.001220703;
constexpr double kTempOffsetC = 625.0;
constexpr double kTempLsbC = -0.47;

std::uint16_t Code(double value) {
  return static_cast<std::uint16_t>(std::lround(value));
}

double Volts(std::uint16_t code) {
  return kSupplyLsbV * static_cast<std::int16_t>(code);
}

double Degrees(std::uint16_t code) {
  return kTempOffsetC + kTempLsbC * static_cast<std::int16_t>(code);
}

}  // namespace

MeasuredConditions MeasuredConditions::Measure(double volts, double degrees) {
  return {.supply = Code(volts / kSupplyLsbV),
          .temperature = Code((degrees - kTempOffsetC) / kTempLsbC)};
}

bool MeasuredConditions::RaiseAlarm(AlarmControl control, std::uint16_t limit) const {
  if (!control.SystemOn()) return false;
  const bool ofTemperature = control.WatchesTemperature();
  const double measured = ofTemperature ? Degrees(temperature) : Volts(supply);
  const double allowed = ofTemperature ? Degrees(limit) : Volts(limit);
  return control.AlarmsWhenGreater() ? measured > allowed : measured < allowed;
}

}  // namespace kestrel
