// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "simulator/simulated_sensor.h"

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

void SimulatedSensor::SetScenario(Scenario scenario) {
  FinishWhatIsDue();
  scenario_ = std::move(scenario);
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

// The next capture of a series waits for a command that is still at work.
void SimulatedSensor::FinishWhatIsDue() {
  while (activity_ != Activity::None || IsRepeating()) {
    const std::chrono::nanoseconds now = clock_.Monotonic();
    if (now < (activity_ != Activity::None ? due_ : *nextStart_)) return;
    switch (std::exchange(activity_, Activity::None)) {
      case Activity::None:
        ContinueSeries(now);
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
