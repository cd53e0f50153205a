// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include <utility>

#include "simulator/sensor_registers.h"
#include "simulator/simulated_sensor.h"

namespace kestrel {

SimulatedSensor::SimulatedSensor(Clock& clock, Scenario scenario)
    : clock_(clock), flash_(RegisterFile::FactoryValues()), engine_(0) {
  Deliver(std::move(scenario));
}

void SimulatedSensor::Deliver(Scenario scenario) {
  const bool powered = powered_;
  CutPower();
  scenario_ = std::move(scenario);
  capturesOfScenario_ = 0;
  engine_ = CaptureEngine(scenario_.noiseSeed);
  registers_ = RegisterFile();
  flash_ = RegisterFile::FactoryValues();
  for (const auto& setting : scenario_.preset.settings) {
    flash_[setting.address / 2U] = setting.word;
  }
  records_.Clear();
  bands_.Clear();
  for (const auto& saved : scenario_.preset.bands) {
    if (AlarmBands::Band* band = bands_.At(saved.pointer)) *band = saved.band;
  }
  if (powered) RestorePower();
}

// What was at work is lost.
void SimulatedSensor::CutPower() {
  FinishWhatIsDue();
  activity_ = Activity::None;
  EndRecording();
  powered_ = false;
  answer_ = 0;
}

void SimulatedSensor::RestorePower() {
  if (std::exchange(powered_, true)) return;
  powerUp_ = clock_.Monotonic();
  due_ = powerUp_;
  asleep_ = false;
  Restart();
}

void SimulatedSensor::Restart() {
  EndRecording();
  registers_.Restart(flash_);
  record_ = {};
  alarms_.Restart();
  MeasureSupplyAndTemperature();
  ShowAlarms();
}

double SimulatedSensor::SecondsSincePowerUp(std::chrono::nanoseconds moment) const {
  return std::chrono::duration<double>(moment - powerUp_).count();
}

}  // namespace kestrel
