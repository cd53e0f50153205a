// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include <array>
#include <bit>

#include "simulator/sensor_registers.h"
#include "simulator/simulated_sensor.h"

namespace kestrel {

using std::chrono::milliseconds;

// What a bit of COMMAND does, and for how long the sensor is busy with it; the effect shows at the
// end of that time.
struct SimulatedSensor::Command {
  milliseconds busy{0};
  void (SimulatedSensor::*carryOut)() = nullptr;
};

const SimulatedSensor::Command& SimulatedSensor::CommandOf(unsigned bit) {
  static constexpr std::array<Command, 16> kCommands = {{
      {milliseconds{170}, &SimulatedSensor::Autonull},
      {milliseconds{0}, &SimulatedSensor::PowerDown},
      {milliseconds{40}, &SimulatedSensor::SelfTest},
      {milliseconds{130}, &SimulatedSensor::FactoryReset},
      {milliseconds{0}, &SimulatedSensor::ClearStatus},
      {milliseconds{140}, &SimulatedSensor::FlashTest},
      {milliseconds{40}, &SimulatedSensor::FlashUpdate},
      {milliseconds{45}, &SimulatedSensor::SoftwareReset},
      {},
      {},
      {milliseconds{0}, &SimulatedSensor::ResetBufferPointer},
      {milliseconds{0}, &SimulatedSensor::BeginCapture},
      {},
      {},
      {},
      {},
  }};
  return kCommands[bit];
}

// Of several bits the lowest counts. A sensor at work takes no command but the one that stops a
// capture.
void SimulatedSensor::BeginCommand(std::uint16_t word) {
  constexpr unsigned kRecordStartStop = 11;
  if (word == 0) return;
  const auto bit = static_cast<unsigned>(std::countr_zero(word));
  if (activity_ == Activity::Capture && bit == kRecordStartStop) {
    activity_ = Activity::None;
  } else if (activity_ == Activity::None && CommandOf(bit).carryOut != nullptr) {
    commandBit_ = bit;
    Begin(Activity::Command, CommandOf(bit).busy);
    if (CommandOf(bit).busy == milliseconds{0}) FinishWhatIsDue();
  }
}

void SimulatedSensor::FinishCommand() {
  (this->*CommandOf(commandBit_).carryOut)();
}

void SimulatedSensor::PowerDown() {
  asleep_ = true;
}

void SimulatedSensor::SelfTest() {
  if (scenario_.faults.selfTest) registers_.SetBits(sensor::kStatus, sensor::kSelfTestFailure);
}

void SimulatedSensor::FactoryReset() {
  flash_ = RegisterFile::FactoryValues();
  registers_.Increment(sensor::kEndurance);
  SoftwareReset();
}

void SimulatedSensor::ClearStatus() {
  registers_.Set(sensor::kStatus, 0);
}

void SimulatedSensor::FlashTest() {
  if (scenario_.faults.flashMemory) {
    registers_.SetBits(sensor::kStatus, sensor::kFlashMemoryFailure);
  }
}

void SimulatedSensor::FlashUpdate() {
  if (scenario_.faults.flashUpdate) {
    registers_.SetBits(sensor::kStatus, sensor::kFlashUpdateFailure);
    return;
  }
  flash_ = registers_.Image();
  registers_.Increment(sensor::kEndurance);
}

void SimulatedSensor::SoftwareReset() {
  registers_.Restart(flash_);
  record_ = {};
  MeasureSupplyAndTemperature();
}

void SimulatedSensor::ResetBufferPointer() {
  registers_.Set(sensor::kBufPntr, 0);
}

}  // namespace kestrel
