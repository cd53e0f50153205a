// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "simulator/simulated_sensor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "simulator/sensor_registers.h"

namespace kestrel {
namespace {

constexpr double kSupplyLsbV = 0.001220703;
constexpr double kSupplyLowV = 3.150;
constexpr double kSupplyHighV = 3.625;
constexpr double kTempOffsetC = 625.0;
constexpr double kTempLsbC = -0.47;
constexpr double kNullLsbG = 0.004768372;

bool IsBuffer(std::uint8_t address) {
  return address >= sensor::kXBuf && address <= sensor::kZBuf + 1;
}

}  // namespace

SimulatedSensor::SimulatedSensor(Clock& clock, Scenario scenario)
    : clock_(clock),
      scenario_(std::move(scenario)),
      powerUp_(clock.Monotonic()),
      flash_(RegisterFile::FactoryValues()),
      engine_(scenario_.noiseSeed),
      due_(powerUp_) {
  MeasureSupplyAndTemperature();
}

std::uint16_t SimulatedSensor::Exchange(std::uint16_t frame) {
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
  BeginFrame();
  answer_ = 0;
  registers_.SetBits(sensor::kStatus, sensor::kSpiFailure);
}

bool SimulatedSensor::IsCapturing() {
  FinishWhatIsDue();
  return activity_ == Activity::Capture;
}

bool SimulatedSensor::IsBusy() {
  FinishWhatIsDue();
  return activity_ == Activity::Command;
}

std::uint16_t SimulatedSensor::Read(std::uint8_t address) {
  if (!IsBuffer(address)) return registers_.Read(address);
  const std::uint16_t* word = BufferWord(address);
  return word != nullptr ? *word : std::uint16_t{0};
}

void SimulatedSensor::Write(std::uint8_t address, std::uint8_t data) {
  switch (address) {
    case sensor::kCommand:
      return BeginCommand(data);
    case sensor::kCommand + 1:
      return BeginCommand(static_cast<std::uint16_t>(data << 8U));
    case sensor::kStopRequest:
      if (data == sensor::kStopKey) RequestStop();
      return;
    default:
      break;
  }
  if (!IsBuffer(address)) return registers_.WriteByte(address, data);
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
  FinishWhatIsDue();
}

void SimulatedSensor::FinishWhatIsDue() {
  while (activity_ != Activity::None && clock_.Monotonic() >= due_) {
    if (std::exchange(activity_, Activity::None) == Activity::Capture) {
      FinishCapture();
    } else {
      FinishCommand();
    }
  }
}

void SimulatedSensor::Begin(Activity activity, std::chrono::nanoseconds duration) {
  activity_ = activity;
  begun_ = clock_.Monotonic();
  due_ = begun_ + duration;
}

void SimulatedSensor::BeginCapture() {
  capture_ =
      CaptureSettings::Latch(registers_.Read(sensor::kRecCtrl), registers_.Read(sensor::kFftAvg));
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    const std::uint16_t null = registers_.Read(sensor::OfAxis(sensor::kXNull, axis));
    captureCorrectionG_[axis] = kNullLsbG * static_cast<std::int16_t>(null);
  }
  registers_.ClearBits(sensor::kStatus, sensor::kDataReady);
  Begin(Activity::Capture, capture_.Duration());
}

void SimulatedSensor::FinishCapture() {
  record_ = engine_.Take(scenario_, capture_, SecondsSincePowerUp(begun_), captureCorrectionG_);
  for (std::size_t axis = 0; axis < kAxisCount && !capture_.timeRecord; ++axis) {
    const SpectrumPeak peak = FindPeak(record_.words[axis]);
    registers_.Set(sensor::OfAxis(sensor::kAlmXPeak, axis), peak.code);
    registers_.Set(sensor::OfAxis(sensor::kAlmXFreq, axis), peak.bin);
  }
  const auto stamp = static_cast<std::uint32_t>(SecondsSincePowerUp(due_));
  registers_.Set(sensor::kTimeStmpL, static_cast<std::uint16_t>(stamp & 0xFFFFU));
  registers_.Set(sensor::kTimeStmpH, static_cast<std::uint16_t>(stamp >> 16U));
  registers_.Set(sensor::kRecInfo, capture_.InfoWord());
  registers_.Increment(sensor::kRecCnt);
  MeasureSupplyAndTemperature();
  registers_.SetBits(sensor::kStatus, sensor::kDataReady);
}

void SimulatedSensor::RequestStop() {
  if (activity_ != Activity::Capture) return;
  activity_ = Activity::None;
  registers_.SetBits(sensor::kStatus, sensor::kRecordingEscape);
}

void SimulatedSensor::Autonull() {
  const CaptureSettings now = CaptureSettings::Latch(registers_.Read(sensor::kRecCtrl), 0);
  const auto meanG = engine_.MeasureMean(scenario_, now.range, SecondsSincePowerUp(begun_));
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    const long null = std::clamp(std::lround(-meanG[axis] / kNullLsbG), -32768L, 32767L);
    registers_.Set(sensor::OfAxis(sensor::kXNull, axis), static_cast<std::uint16_t>(null));
  }
}

void SimulatedSensor::MeasureSupplyAndTemperature() {
  registers_.Set(sensor::kSupplyOut,
                 static_cast<std::uint16_t>(std::lround(scenario_.supplyV / kSupplyLsbV)));
  if (scenario_.supplyV < kSupplyLowV) registers_.SetBits(sensor::kStatus, sensor::kSupplyLow);
  if (scenario_.supplyV > kSupplyHighV) registers_.SetBits(sensor::kStatus, sensor::kSupplyHigh);

  const double warmed = 1.0 - std::exp(-SecondsSincePowerUp(due_) / scenario_.warmingSeconds);
  const double degrees = scenario_.temperatureC + scenario_.warmingC * warmed;
  registers_.Set(sensor::kTempOut,
                 static_cast<std::uint16_t>(std::lround((degrees - kTempOffsetC) / kTempLsbC)));
}

double SimulatedSensor::SecondsSincePowerUp(std::chrono::nanoseconds moment) const {
  return std::chrono::duration<double>(moment - powerUp_).count();
}

}  // namespace kestrel
