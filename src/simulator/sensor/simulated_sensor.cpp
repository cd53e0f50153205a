// Frames, power and pins of the simulated sensor, and its turn from one work to the next.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/simulated_sensor.h"

#include <initializer_list>
#include <utility>

#include "simulator/registers/sensor_registers.h"

namespace kestrel {
namespace {

// A set of registers, one bit each.
using RegisterSet = std::uint64_t;

constexpr RegisterSet SetOf(std::initializer_list<std::uint8_t> addresses) {
  RegisterSet set = 0;
  for (const std::uint8_t address : addresses) set |= RegisterSet{1} << (address / 2U);
  return set;
}

bool IsIn(RegisterSet set, std::uint8_t address) {
  return ((set >> (address / 2U)) & 1U) != 0;
}

constexpr RegisterSet kBuffers = SetOf({sensor::kXBuf, sensor::kXBuf + 2, sensor::kZBuf});

// Those that are more than storage.
constexpr RegisterSet kActOnRead = kBuffers | SetOf({sensor::kGpioCtrl});
constexpr RegisterSet kActOnWrite =
    kBuffers | SetOf({sensor::kCommand, sensor::kStopRequest, sensor::kAlmCtrl});

}  // namespace

SimulatedSensor::SimulatedSensor(Clock& clock, Scenario scenario)
    : work_(clock),
      flash_(registers_, surroundings_),
      alarms_(registers_, surroundings_),
      recorder_(registers_, flash_, alarms_, surroundings_, work_),
      commands_({registers_, surroundings_, flash_, alarms_, recorder_, work_}) {
  Deliver(std::move(scenario));
}

std::uint16_t SimulatedSensor::Exchange(std::uint16_t frame) {
  if (!powered_) return 0;
  BeginFrame();
  const std::uint16_t answer = answer_;
  const auto address = static_cast<std::uint8_t>((frame >> 8U) & 0x7FU);
  answer_ = 0;
  if ((frame & 0x8000U) != 0) {
    Write(address, static_cast<std::uint8_t>(frame & 0xFFU));
  } else {
    answer_ = Read(address);
  }
  return answer;
}

void SimulatedSensor::FrameError() {
  if (!powered_) return;
  BeginFrame();
  answer_ = 0;
  registers_.SetBits(sensor::kStatus, sensor::kSpiFailure);
}

void SimulatedSensor::Deliver(Scenario scenario) {
  const bool powered = powered_;
  CutPower();
  surroundings_.Begin(std::move(scenario));
  recorder_.Deliver();
  registers_ = RegisterFile();
  flash_.Deliver(surroundings_.scenario.preset);
  if (powered) RestorePower();
}

// What was at work is lost.
void SimulatedSensor::CutPower() {
  FinishWhatIsDue();
  work_.End();
  recorder_.End();
  powered_ = false;
  answer_ = 0;
}

void SimulatedSensor::RestorePower() {
  if (std::exchange(powered_, true)) return;
  surroundings_.powerUp = work_.Now();
  work_.PowerUp(surroundings_.powerUp);
  commands_.Restart();
}

void SimulatedSensor::SetScenario(Scenario scenario) {
  FinishWhatIsDue();
  surroundings_.Begin(std::move(scenario));
}

void SimulatedSensor::SetFaults(const SensorFaults& faults) {
  FinishWhatIsDue();
  surroundings_.scenario.faults = faults;
}

void SimulatedSensor::SetSupply(double volts) {
  FinishWhatIsDue();
  surroundings_.scenario.supplyV = volts;
}

bool SimulatedSensor::IsCapturing() {
  FinishWhatIsDue();
  return work_.IsCapture();
}

bool SimulatedSensor::IsInSeries() {
  FinishWhatIsDue();
  return recorder_.IsRepeating();
}

bool SimulatedSensor::IsBusy() {
  FinishWhatIsDue();
  return work_.IsCommand();
}

bool SimulatedSensor::PinLevel(int line) {
  FinishWhatIsDue();
  return powered_ ? pins_.Level(line, PinState()) : pins_.Driven(line);
}

void SimulatedSensor::DrivePin(int line, bool high) {
  FinishWhatIsDue();
  const bool triggers = pins_.Drive(line, high, registers_.Read(sensor::kDioCtrl));
  if (triggers && powered_ && !work_.IsAsleep() && work_.IsIdle()) {
    TakeCommand(sensor::kRecordStart);
  }
}

DigitalPins::Sensor SimulatedSensor::PinState() const {
  return {.dioCtrl = registers_.Read(sensor::kDioCtrl),
          .gpioCtrl = registers_.Read(sensor::kGpioCtrl),
          .status = registers_.Read(sensor::kStatus),
          .partsAlarms = alarms_.Control().PartsLines(),
          .busy = !work_.IsIdle()};
}

std::uint16_t SimulatedSensor::Read(std::uint8_t address) {
  if (!IsIn(kActOnRead, address)) return registers_.Read(address);
  if (!IsIn(kBuffers, address)) {
    return pins_.ReadGpioCtrl(registers_.Read(sensor::kDioCtrl), registers_.Read(address));
  }
  const std::uint16_t* word = recorder_.BufferWord(address);
  return word != nullptr ? *word : std::uint16_t{0};
}

void SimulatedSensor::Write(std::uint8_t address, std::uint8_t data) {
  if (!IsIn(kActOnWrite, address)) return registers_.WriteByte(address, data);
  if (IsIn(kBuffers, address)) return WriteBuffer(address, data);
  switch (address) {
    case sensor::kCommand:
      return TakeCommand(data);
    case sensor::kCommand + 1:
      return TakeCommand(static_cast<std::uint16_t>(data << 8U));
    case sensor::kStopRequest:
      if (data == sensor::kStopKey) recorder_.Escape();
      return;
    case sensor::kAlmCtrl:
      registers_.WriteByte(address, data);
      return alarms_.Withdraw();
    default:
      return registers_.WriteByte(address, data);
  }
}

void SimulatedSensor::WriteBuffer(std::uint8_t address, std::uint8_t data) {
  if (std::uint16_t* word = recorder_.BufferWord(address)) {
    const unsigned shift = (address & 1U) * 8U;
    *word = static_cast<std::uint16_t>((*word & ~(0xFFU << shift)) | (unsigned{data} << shift));
  }
}

void SimulatedSensor::TakeCommand(std::uint16_t word) {
  if (commands_.Take(word)) FinishWhatIsDue();
}

void SimulatedSensor::BeginFrame() {
  work_.Wake();
  if (!work_.IsIdle() || recorder_.IsRepeating()) FinishWhatIsDue();
}

// The next capture of a series waits for a command that is still at work.
void SimulatedSensor::FinishWhatIsDue() {
  using sensor::Work;
  std::uint64_t passed = 0;  // captures of the series since the frame before
  while (!work_.IsIdle() || recorder_.IsRepeating()) {
    const std::chrono::nanoseconds now = work_.Now();
    if (now < (work_.IsIdle() ? recorder_.NextStart() : work_.Due())) return;
    switch (work_.End()) {
      case Work::Kind::None:
        recorder_.ContinueSeries(now, passed);
        break;
      case Work::Kind::Command:
        commands_.Finish();
        break;
      case Work::Kind::Capture:
        recorder_.Finish();
        break;
    }
  }
}

}  // namespace kestrel
