// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include <cmath>

#include "simulator/conditions.h"
#include "simulator/sensor_registers.h"
#include "simulator/simulated_sensor.h"

namespace kestrel {
namespace {

constexpr double kSupplyLowV = 3.150;
constexpr double kSupplyHighV = 3.625;
constexpr std::uint16_t kRecordStart = 1U << 11;  // of COMMAND

}  // namespace

AlarmControl SimulatedSensor::Control() const {
  return AlarmControl(registers_.Read(sensor::kAlmCtrl));
}

void SimulatedSensor::JudgeSpectrum() {
  alarms_.Judge(record_, bands_, Control());
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    registers_.Set(sensor::OfAxis(sensor::kAlmXStat, axis), alarms_.Stat(axis));
  }
}

void SimulatedSensor::MeasureSupplyAndTemperature() {
  if (scenario_.supplyV < kSupplyLowV) registers_.SetBits(sensor::kStatus, sensor::kSupplyLow);
  if (scenario_.supplyV > kSupplyHighV) registers_.SetBits(sensor::kStatus, sensor::kSupplyHigh);

  const double warmed = 1.0 - std::exp(-SecondsSincePowerUp(due_) / scenario_.warmingSeconds);
  const double degrees = scenario_.temperatureC + scenario_.warmingC * warmed;
  const MeasuredConditions measured = MeasuredConditions::Measure(scenario_.supplyV, degrees);
  registers_.Set(sensor::kSupplyOut, measured.supply);
  registers_.Set(sensor::kTempOut, measured.temperature);
  alarms_.JudgeSystem(measured.RaiseAlarm(Control(), registers_.Read(sensor::kAlmSMag)));
}

// Latched flags stay until the status is cleared.
void SimulatedSensor::ShowAlarms() {
  if (!Control().Latches()) registers_.ClearBits(sensor::kStatus, sensor::kAlarmFlags);
  registers_.SetBits(sensor::kStatus, alarms_.Flags());
}

// After a change of ALM_CTRL: an alarm that is off is raised no longer, and nothing is held any
// longer without latching. What is switched on counts from the next record or measurement on.
void SimulatedSensor::WithdrawAlarms() {
  alarms_.Withdraw(Control());
  if (Control().Latches()) return;
  const unsigned withdrawn = sensor::kAlarmFlags & ~unsigned{alarms_.Flags()};
  registers_.ClearBits(sensor::kStatus, static_cast<std::uint16_t>(withdrawn));
}

bool SimulatedSensor::PinLevel(int line) {
  FinishWhatIsDue();
  return powered_ ? pins_.Level(line, PinState()) : pins_.Driven(line);
}

void SimulatedSensor::DrivePin(int line, bool high) {
  FinishWhatIsDue();
  const bool triggers = pins_.Drive(line, high, registers_.Read(sensor::kDioCtrl));
  if (triggers && powered_ && !asleep_ && activity_ == Activity::None) BeginCommand(kRecordStart);
}

DigitalPins::Sensor SimulatedSensor::PinState() const {
  return {.dioCtrl = registers_.Read(sensor::kDioCtrl),
          .gpioCtrl = registers_.Read(sensor::kGpioCtrl),
          .status = registers_.Read(sensor::kStatus),
          .partsAlarms = Control().PartsLines(),
          .busy = activity_ != Activity::None};
}

}  // namespace kestrel
