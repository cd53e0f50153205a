// Judging spectrum, supply and temperature, and what STATUS holds of it.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/alarms.h"

#include <cmath>

#include "simulator/registers/sensor_registers.h"
#include "simulator/signal/conditions.h"

namespace kestrel::sensor {
namespace {

constexpr double kSupplyLowV = 3.150;
constexpr double kSupplyHighV = 3.625;

// Exponentially towards warmingC above the start.
double Temperature(const Scenario& scenario, double seconds) {
  const double warmed = 1.0 - std::exp(-seconds / scenario.warmingSeconds);
  return scenario.temperatureC + scenario.warmingC * warmed;
}

}  // namespace

AlarmControl Alarms::Control() const {
  return AlarmControl(registers_.Read(kAlmCtrl));
}

void Alarms::Judge(const CapturedRecord& spectrum, const AlarmBands& bands) {
  monitor_.Judge(spectrum, bands, Control());
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    registers_.Set(OfAxis(kAlmXStat, axis), monitor_.Stat(axis));
  }
}

void Alarms::Measure(std::chrono::nanoseconds moment) {
  const Scenario& scenario = surroundings_.scenario;
  if (scenario.supplyV < kSupplyLowV) registers_.SetBits(kStatus, kSupplyLow);
  if (scenario.supplyV > kSupplyHighV) registers_.SetBits(kStatus, kSupplyHigh);

  const double degrees = Temperature(scenario, surroundings_.SecondsSincePowerUp(moment));
  const MeasuredConditions measured = MeasuredConditions::Measure(scenario.supplyV, degrees);
  registers_.Set(kSupplyOut, measured.supply);
  registers_.Set(kTempOut, measured.temperature);
  monitor_.JudgeSystem(measured.RaiseAlarm(Control(), registers_.Read(kAlmSMag)));

  if (!Control().Latches()) registers_.ClearBits(kStatus, kAlarmFlags);
  registers_.SetBits(kStatus, Flags());
}

void Alarms::Withdraw() {
  monitor_.Withdraw(Control());
  if (Control().Latches()) return;
  const unsigned withdrawn = kAlarmFlags & ~unsigned{Flags()};
  registers_.ClearBits(kStatus, static_cast<std::uint16_t>(withdrawn));
}

void Alarms::ClearStatus() {
  registers_.Set(kStatus, 0);
  monitor_.ClearFlags();
}

}  // namespace kestrel::sensor
