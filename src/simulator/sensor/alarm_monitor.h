// Which alarms a spectrum raises, and which are held back.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "simulator/registers/alarm_bands.h"
#include "simulator/registers/alarm_control.h"
#include "simulator/signal/capture_engine.h"

namespace kestrel {

// Compares spectra with the alarm bands and keeps which alarms they raise. An alarm is raised by a
// record when its threshold is exceeded in that record and in as many before it as the response
// delay says. Records of another sample-rate option interrupt the row; time records do not, they
// are not compared.
class AlarmMonitor {
 public:
  // Records in a row are counted up to here: one more than the longest response delay.
  static constexpr unsigned kLongestRun = 16;

  // Takes a spectrum in place of the one before. Axes that are off have no alarm.
  void Judge(const CapturedRecord& spectrum, const AlarmBands& bands, AlarmControl control);

  void JudgeSystem(bool alarm);

  // The register ALM_x_STAT for the latest spectrum.
  [[nodiscard]] std::uint16_t Stat(std::size_t axis) const { return stat_[axis]; }

  // The alarm flags of STATUS that the latest spectrum and the latest system measurement raised.
  [[nodiscard]] std::uint16_t Flags() const { return flags_; }

  // Takes back the flags and rows of alarms that are off.
  void Withdraw(AlarmControl control);

  // Takes back the flags. Rows go on: a host that clears the status before each capture would
  // otherwise never see a delayed alarm.
  void ClearFlags() { flags_ = 0; }

  // Counts from the next record on, as when the bands are other ones.
  void RestartRuns() { runs_ = {}; }

  void Restart() { *this = {}; }

 private:
  using Levels = std::array<std::uint8_t, 2>;  // alarm 1, alarm 2

  void JudgeAxis(std::size_t axis, const CapturedRecord& spectrum, const AlarmBands& bands,
                 unsigned delay);

  unsigned option_ = 0;
  std::array<std::array<Levels, AlarmBands::kPerOption>, kAxisCount> runs_{};
  std::array<std::uint16_t, kAxisCount> stat_{};
  std::uint16_t flags_ = 0;
};

}  // namespace kestrel
