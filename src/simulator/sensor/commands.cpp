// The table of COMMAND's bits, and those commands that concern several parts of the sensor.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/commands.h"

#include <array>
#include <bit>
#include <chrono>

#include "simulator/registers/sensor_registers.h"

namespace kestrel::sensor {

using std::chrono::milliseconds;

// For how long the sensor is busy with a bit of COMMAND, and what it does; then what the bit does
// while a capture runs, when it does anything.
struct Commands::Command {
  milliseconds busy{0};
  void (*carryOut)(Commands& self);
  void (*duringCapture)(Commands& self) = nullptr;
};

// A transcription of its own, by bit number: a slip in the program's list of commands shows. A band
// is saved at once: the program that saves it loads the next one into the same registers.
const Commands::Command& Commands::Of(unsigned bit) {
  using Self = Commands&;
  static constexpr std::array<Command, 16> kCommands = {{
      {milliseconds{170}, [](Self self) { self.parts_.recorder.Autonull(); }},
      {milliseconds{0}, [](Self self) { self.PowerDown(); }},
      {milliseconds{40}, [](Self self) { self.SelfTest(); }},
      {milliseconds{130}, [](Self self) { self.FactoryReset(); }},
      {milliseconds{0}, [](Self self) { self.parts_.alarms.ClearStatus(); },
       [](Self self) { self.ClearStatusInSeries(); }},
      {milliseconds{140}, [](Self self) { self.FlashTest(); }},
      {milliseconds{40}, [](Self self) { self.parts_.flash.SaveSettings(); }},
      {milliseconds{45}, [](Self self) { self.Restart(); }},
      {milliseconds{40}, [](Self self) { self.parts_.flash.ClearRecords(); }},
      {milliseconds{20}, [](Self self) { self.ClearAlarmBands(); }},
      {milliseconds{0}, [](Self self) { self.parts_.registers.Set(kBufPntr, 0); }},
      {milliseconds{0}, [](Self self) { self.parts_.recorder.Start(); },
       [](Self self) { self.parts_.recorder.StopOrRestart(); }},
      {milliseconds{0}, [](Self self) { self.SaveAlarmBand(); }},
      {milliseconds{2}, [](Self self) { self.parts_.recorder.Retrieve(); }},
      {milliseconds{1}, [](Self self) { self.parts_.flash.RetrieveBand(); }},
      {milliseconds{0}, [](Self self) { self.parts_.recorder.ClearNulls(); }},
  }};
  return kCommands[bit];
}

bool Commands::Take(std::uint16_t word) {
  if (word == 0) return false;
  const auto bit = static_cast<unsigned>(std::countr_zero(word));
  const Command& command = Of(bit);
  if (parts_.work.IsIdle()) {
    bit_ = bit;
    parts_.work.Begin(Work::Kind::Command, parts_.work.Now(), command.busy);
    return command.busy == milliseconds{0};
  }
  if (parts_.work.IsCapture() && command.duringCapture != nullptr) command.duringCapture(*this);
  return false;
}

void Commands::Finish() {
  parts_.recorder.Postpone(parts_.work.Due());
  Of(bit_).carryOut(*this);
}

void Commands::Restart() {
  parts_.recorder.Restart();
  parts_.flash.RestoreSettings();
  parts_.alarms.Restart();
  parts_.alarms.Measure(parts_.work.Due());
}

// Asleep or restarted, the sensor records no more.
void Commands::PowerDown() {
  parts_.recorder.End();
  parts_.work.FallAsleep();
}

void Commands::SelfTest() {
  if (parts_.surroundings.scenario.faults.selfTest) {
    parts_.registers.SetBits(kStatus, kSelfTestFailure);
  }
}

void Commands::FactoryReset() {
  if (parts_.flash.Erase()) Restart();
}

// Nobody outside can know that the timer has just begun a capture, so its captures take this
// command as the pause does.
void Commands::ClearStatusInSeries() {
  if (parts_.recorder.BegunByTimer()) parts_.alarms.ClearStatus();
}

void Commands::FlashTest() {
  if (parts_.surroundings.scenario.faults.flashMemory) {
    parts_.registers.SetBits(kStatus, kFlashMemoryFailure);
  }
}

void Commands::SaveAlarmBand() {
  if (parts_.flash.SaveBand()) parts_.alarms.RestartRuns();
}

void Commands::ClearAlarmBands() {
  if (parts_.flash.ClearBands()) parts_.alarms.RestartRuns();
}

}  // namespace kestrel::sensor
