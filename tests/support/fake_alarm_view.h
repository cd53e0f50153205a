// The alarm state's labels and indicators without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <string>
#include <utility>

#include "alarms/alarm_status.h"
#include "support/journal.h"

namespace kestrel {

inline std::string AxisName(Axis axis) {
  return std::array{"X", "Y", "Z"}[Index(axis)];
}

class FakeAlarmView : public AlarmStatusView {
 public:
  explicit FakeAlarmView(Journal& journal) : journal_(journal) {}

  void SetBand(Axis axis, const std::string& text) override { band[Index(axis)] = text; }
  void SetAlarm(Axis axis, const std::string& text) override {
    alarm[Index(axis)] = text;
    journal_.Note("alarm " + AxisName(axis));
  }
  void SetIndicator(Axis axis, int number, double colour) override {
    indicator[{axis, number}] = colour;
  }
  void SetPeak(Axis axis, const std::string& text) override {
    peak[Index(axis)] = text;
    journal_.Note("peak " + AxisName(axis));
  }
  void SetPeakBin(Axis axis, const std::string& text) override { peakBin[Index(axis)] = text; }

  std::array<std::string, 3> band, alarm, peak, peakBin;
  std::map<std::pair<Axis, int>, double> indicator;

 private:
  Journal& journal_;
};

}  // namespace kestrel
