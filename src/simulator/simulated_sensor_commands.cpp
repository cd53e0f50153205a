// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <bit>

#include "simulator/sensor_registers.h"
#include "simulator/simulated_sensor.h"

namespace kestrel {

using std::chrono::milliseconds;

namespace {

std::uint8_t BandRegister(std::size_t word) {
  return static_cast<std::uint8_t>(sensor::kAlmFLow + 2 * word);
}

}  // namespace

// What a bit of COMMAND does, and for how long the sensor is busy with it; the effect shows at the
// end of that time. Then what the bit does while a capture runs, when it does anything.
struct SimulatedSensor::Command {
  milliseconds busy{0};
  void (SimulatedSensor::*carryOut)();
  void (SimulatedSensor::*duringCapture)() = nullptr;
};

// A band is saved at once: the program that saves it loads the next one into the same registers.
const SimulatedSensor::Command& SimulatedSensor::CommandOf(unsigned bit) {
  using Self = SimulatedSensor;
  static constexpr std::array<Command, 16> kCommands = {{
      {milliseconds{170}, &Self::Autonull},
      {milliseconds{0}, &Self::PowerDown},
      {milliseconds{40}, &Self::SelfTest},
      {milliseconds{130}, &Self::FactoryReset},
      {milliseconds{0}, &Self::ClearStatus, &Self::ClearStatusInSeries},
      {milliseconds{140}, &Self::FlashTest},
      {milliseconds{40}, &Self::FlashUpdate},
      {milliseconds{45}, &Self::SoftwareReset},
      {milliseconds{40}, &Self::ClearRecords},
      {milliseconds{20}, &Self::ClearAlarmBands},
      {milliseconds{0}, &Self::ResetBufferPointer},
      {milliseconds{0}, &Self::StartRecording, &Self::StopOrRestart},
      {milliseconds{0}, &Self::SaveAlarmBand},
      {milliseconds{2}, &Self::RetrieveRecord},
      {milliseconds{1}, &Self::RetrieveAlarmBand},
      {milliseconds{0}, &Self::ClearNulls},
  }};
  return kCommands[bit];
}

// Of several bits the lowest counts. A sensor that is busy takes no command.
void SimulatedSensor::BeginCommand(std::uint16_t word) {
  if (word == 0) return;
  const auto bit = static_cast<unsigned>(std::countr_zero(word));
  const Command& command = CommandOf(bit);
  if (activity_ == Activity::None) {
    commandBit_ = bit;
    Begin(Activity::Command, clock_.Monotonic(), command.busy);
    if (command.busy == milliseconds{0}) FinishWhatIsDue();
  } else if (activity_ == Activity::Capture && command.duringCapture != nullptr) {
    (this->*command.duringCapture)();
  }
}

void SimulatedSensor::FinishCommand() {
  if (IsRepeating()) nextStart_ = std::max(*nextStart_, due_);
  (this->*CommandOf(commandBit_).carryOut)();
}

// Asleep or restarted, the sensor records no more.
void SimulatedSensor::PowerDown() {
  EndRecording();
  asleep_ = true;
}

void SimulatedSensor::SelfTest() {
  if (scenario_.faults.selfTest) registers_.SetBits(sensor::kStatus, sensor::kSelfTestFailure);
}

// Back to an empty sensor: settings, records and alarm bands.
void SimulatedSensor::FactoryReset() {
  if (!WriteFlash()) return;
  flash_ = RegisterFile::FactoryValues();
  records_.Clear();
  registers_.Set(sensor::kRecFlshCnt, 0);
  bands_.Clear();
  SoftwareReset();
}

void SimulatedSensor::ClearStatus() {
  registers_.Set(sensor::kStatus, 0);
  alarms_.ClearFlags();
}

void SimulatedSensor::FlashTest() {
  if (scenario_.faults.flashMemory) {
    registers_.SetBits(sensor::kStatus, sensor::kFlashMemoryFailure);
  }
}

void SimulatedSensor::FlashUpdate() {
  if (WriteFlash()) flash_ = registers_.Image();
}

void SimulatedSensor::SoftwareReset() {
  Restart();
}

void SimulatedSensor::ResetBufferPointer() {
  registers_.Set(sensor::kBufPntr, 0);
}

void SimulatedSensor::SaveAlarmBand() {
  AlarmBands::Band* band = bands_.At(registers_.Read(sensor::kAlmPntr));
  if (band == nullptr || !WriteFlash()) return;
  for (std::size_t i = 0; i < band->size(); ++i) (*band)[i] = registers_.Read(BandRegister(i));
  alarms_.RestartRuns();
}

void SimulatedSensor::RetrieveAlarmBand() {
  const AlarmBands::Band* band = bands_.At(registers_.Read(sensor::kAlmPntr));
  if (band == nullptr) return;
  for (std::size_t i = 0; i < band->size(); ++i) registers_.Set(BandRegister(i), (*band)[i]);
}

void SimulatedSensor::ClearAlarmBands() {
  if (!WriteFlash()) return;
  bands_.Clear();
  alarms_.RestartRuns();
}

// Every write to flash goes through here: counts it, or reports that it failed.
bool SimulatedSensor::WriteFlash() {
  if (scenario_.faults.flashUpdate) {
    registers_.SetBits(sensor::kStatus, sensor::kFlashUpdateFailure);
    return false;
  }
  registers_.Add(sensor::kEndurance, 1);
  return true;
}

}  // namespace kestrel
