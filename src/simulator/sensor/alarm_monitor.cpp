// Magnitudes against thresholds, runs of records, and the gravest alarm of an axis.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/alarm_monitor.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "simulator/registers/sensor_registers.h"

namespace kestrel {
namespace {

// A threshold that a spectrum exceeds.
struct Alarm {
  std::size_t band = 0;  // 1..6, 0 for no alarm
  std::size_t level = 0;
  std::uint16_t magnitude = 0;
  std::uint16_t threshold = 0;
};

// A fault before a warning, then the larger magnitude relative to its threshold.
bool IsGraver(const Alarm& alarm, const Alarm& other) {
  if (other.band == 0 || alarm.level != other.level) return alarm.level >= other.level;
  return std::uint32_t{alarm.magnitude} * other.threshold >
         std::uint32_t{other.magnitude} * alarm.threshold;
}

// 0 in a band without bins.
std::uint16_t LargestIn(const AlarmBands::Band& band, const std::vector<std::uint16_t>& spectrum) {
  const std::size_t end = std::min(spectrum.size(), std::size_t{band[1]} + 1);
  std::uint16_t largest = 0;
  for (std::size_t bin = band[0]; bin < end; ++bin) largest = std::max(largest, spectrum[bin]);
  return largest;
}

std::uint16_t Bit(std::size_t bit) {
  return static_cast<std::uint16_t>(1U << bit);
}

std::uint16_t FlagsOf(std::size_t axis) {
  return static_cast<std::uint16_t>((sensor::kXAlarm1 | sensor::kXAlarm2) << axis);
}

}  // namespace

void AlarmMonitor::Judge(const CapturedRecord& spectrum, const AlarmBands& bands,
                         AlarmControl control) {
  const unsigned option = spectrum.settings.sampleRateOption;
  if (std::exchange(option_, option) != option) RestartRuns();
  Withdraw(control);
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    stat_[axis] = 0;
    flags_ &= static_cast<std::uint16_t>(~FlagsOf(axis));
    if (control.AxisOn(axis)) JudgeAxis(axis, spectrum, bands, control.ResponseDelay());
  }
}

void AlarmMonitor::JudgeAxis(std::size_t axis, const CapturedRecord& spectrum,
                             const AlarmBands& bands, unsigned delay) {
  Alarm gravest;
  for (std::size_t index = 0; index < AlarmBands::kPerOption; ++index) {
    const AlarmBands::Band& band = bands.Of(option_)[index];
    const std::uint16_t magnitude = LargestIn(band, spectrum.words[axis]);
    for (std::size_t level = 0; level < 2; ++level) {
      const std::uint16_t threshold = band[2 + kAxisCount * level + axis];
      std::uint8_t& run = runs_[axis][index][level];
      const bool exceeded = threshold != 0 && magnitude > threshold;
      run = exceeded ? static_cast<std::uint8_t>(std::min(run + 1U, kLongestRun)) : std::uint8_t{0};
      if (run <= delay) continue;
      stat_[axis] |= Bit(4 + 2 * index + level);
      flags_ |= Bit(8 + kAxisCount * level + axis);
      const Alarm alarm{index + 1, level, magnitude, threshold};
      if (IsGraver(alarm, gravest)) gravest = alarm;
    }
  }
  stat_[axis] |= static_cast<std::uint16_t>(gravest.band);
}

void AlarmMonitor::JudgeSystem(bool alarm) {
  flags_ &= static_cast<std::uint16_t>(~sensor::kSystemAlarm);
  if (alarm) flags_ |= sensor::kSystemAlarm;
}

void AlarmMonitor::Withdraw(AlarmControl control) {
  if (!control.SystemOn()) JudgeSystem(false);
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    if (control.AxisOn(axis)) continue;
    flags_ &= static_cast<std::uint16_t>(~FlagsOf(axis));
    runs_[axis] = {};
  }
}

}  // namespace kestrel
