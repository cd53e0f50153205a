// The display of spectral alarms and peaks, as the sensor last reported them.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "alarms/alarm_words.h"
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

// Reads alarm state and peaks and shows them, all axes or, when the sensor is lost meanwhile, none.
// Peaks are shown in g by the range of the record they belong to: as long as the sensor reports the
// same peaks, another range changes nothing about them.
class AlarmStatus {
 public:
  AlarmStatus(RegisterAccess& registers, AlarmStatusView& view)
      : registers_(registers), view_(view) {}

  void DisplaySpectralALarmsStatus();
  void DisplayPeakAlarms();

  // The next peaks that are read belong to a new record, at this many g per LSB.
  void ExpectPeaks(double gPerLsb) { gPerNewLsb_ = gPerLsb; }

  // As shown.
  [[nodiscard]] const AlarmState& State() const { return state_; }

 private:
  void ShowFlags(Axis axis);
  void ShowPeak(Axis axis);

  RegisterAccess& registers_;
  AlarmStatusView& view_;
  AlarmState state_;
  std::optional<double> gPerNewLsb_;  // of a record whose peaks have not been read yet
};

}  // namespace kestrel
