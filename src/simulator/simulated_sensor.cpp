// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "simulator/simulated_sensor.h"

#include <initializer_list>
#include <utility>

#include "simulator/sensor_registers.h"

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

void SimulatedSensor::SetScenario(Scenario scenario) {
  FinishWhatIsDue();
  scenario_ = std::move(scenario);
  capturesOfScenario_ = 0;
}

void SimulatedSensor::SetFaults(const SensorFaults& faults) {
  FinishWhatIsDue();
  scenario_.faults = faults;
}

void SimulatedSensor::SetSupply(double volts) {
  FinishWhatIsDue();
  scenario_.supplyV = volts;
}

bool SimulatedSensor::IsCapturing() {
  FinishWhatIsDue();
  return activity_ == Activity::Capture;
}

bool SimulatedSensor::IsInSeries() {
  FinishWhatIsDue();
  return IsRepeating();
}

bool SimulatedSensor::IsBusy() {
  FinishWhatIsDue();
  return activity_ == Activity::Command;
}

std::uint16_t SimulatedSensor::Read(std::uint8_t address) {
  if (!IsIn(kActOnRead, address)) return registers_.Read(address);
  if (!IsIn(kBuffers, address)) {
    return pins_.ReadGpioCtrl(registers_.Read(sensor::kDioCtrl), registers_.Read(address));
  }
  const std::uint16_t* word = BufferWord(address);
  return word != nullptr ? *word : std::uint16_t{0};
}

void SimulatedSensor::Write(std::uint8_t address, std::uint8_t data) {
  if (!IsIn(kActOnWrite, address)) return registers_.WriteByte(address, data);
  if (IsIn(kBuffers, address)) return WriteBuffer(address, data);
  switch (address) {
    case sensor::kCommand:
      return BeginCommand(data);
    case sensor::kCommand + 1:
      return BeginCommand(static_cast<std::uint16_t>(data << 8U));
    case sensor::kStopRequest:
      if (data == sensor::kStopKey) RequestStop();
      return;
    case sensor::kAlmCtrl:
      registers_.WriteByte(address, data);
      return WithdrawAlarms();
    default:
      return registers_.WriteByte(address, data);
  }
}

void SimulatedSensor::WriteBuffer(std::uint8_t address, std::uint8_t data) {
  if (std::uint16_t* word = BufferWord(address)) {
    const unsigned shift = (address & 1U) * 8U;
    *word = static_cast<std::uint16_t>((*word & ~(0xFFU << shift)) | (unsigned{data} << shift));
  }
}

// The word of the record that BUF_PNTR points at; none when it points outside.
std::uint16_t* SimulatedSensor::BufferWord(std::uint8_t address) {
  std::vector<std::uint16_t>& words = record_.words[(address - sensor::kXBuf) / 2U];
  const std::size_t pointer = registers_.Read(sensor::kBufPntr);
  return pointer < words.size() ? &words[pointer] : nullptr;
}

void SimulatedSensor::BeginFrame() {
  asleep_ = false;
  if (activity_ != Activity::None || IsRepeating()) FinishWhatIsDue();
}

// The next capture of a series waits for a command that is still at work.
void SimulatedSensor::FinishWhatIsDue() {
  std::uint64_t passed = 0;  // captures of the series since the frame before
  while (activity_ != Activity::None || IsRepeating()) {
    const std::chrono::nanoseconds now = clock_.Monotonic();
    if (now < (activity_ != Activity::None ? due_ : *nextStart_)) return;
    switch (std::exchange(activity_, Activity::None)) {
      case Activity::None:
        ContinueSeries(now, passed);
        break;
      case Activity::Command:
        FinishCommand();
        break;
      case Activity::Capture:
        FinishCapture();
        break;
    }
  }
}

void SimulatedSensor::Begin(Activity activity, std::chrono::nanoseconds start,
                            std::chrono::nanoseconds duration) {
  activity_ = activity;
  begun_ = start;
  due_ = begun_ + duration;
}

}  // namespace kestrel
