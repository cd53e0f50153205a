// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "alarms/band_table.h"
#include "record/axis.h"
#include "transport/register_access.h"

namespace kestrel {

// Where the alarm state of the three axes is shown.
class AlarmStatusView {
 public:
  virtual ~AlarmStatusView() = default;
  virtual void SetBand(Axis axis, const std::string& text) = 0;
  virtual void SetAlarm(Axis axis, const std::string& text) = 0;
  virtual void SetIndicator(Axis axis, int band, double colour) = 0;  // band 1..6
  virtual void SetPeak(Axis axis, const std::string& text) = 0;
  virtual void SetPeakBin(Axis axis, const std::string& text) = 0;
};

// 0 or 1 for each band; element 0 is not used.
using AlarmFlags = std::array<std::int16_t, kAlarmBands + 1>;

// Spectral alarm state and peaks as the sensor reports them. Shows nothing new while the sensor
// cannot be reached.
class AlarmStatus {
 public:
  AlarmStatus(RegisterAccess& registers, AlarmStatusView& view)
      : registers_(registers), view_(view) {}

  void DisplaySpectralALarmsStatus();
  void DisplayPeakAlarms();

  [[nodiscard]] const AlarmFlags& Warnings(Axis axis) const { return warnings_[Index(axis)]; }
  [[nodiscard]] const AlarmFlags& Faults(Axis axis) const { return faults_[Index(axis)]; }

 private:
  void ShowAxis(Axis axis, std::int32_t word);

  RegisterAccess& registers_;
  AlarmStatusView& view_;
  std::array<AlarmFlags, 3> warnings_{};  // alarm 1
  std::array<AlarmFlags, 3> faults_{};    // alarm 2
};

}  // namespace kestrel
