// A study: the records at hand, what the user has chosen to see of them, and what came of it.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/band_levels.h"
#include "analysis/waterfall.h"
#include "study/accumulated.h"
#include "study/measured.h"
#include "study/shelf.h"
#include "study/study_choice.h"

namespace kestrel::study {

// The six bands of each axis for one sample-rate option.
using SensorBands = std::array<std::array<analysis::SensorBand, 6>, 3>;

// Samples of one axis.
struct TimeCurve {
  std::vector<double> values;  // g, or mm/s
  double stepS = 0;
  double fromHz = 0;  // of velocity: edge of its high-pass
};

// Samples of a time record in g; refused of a spectrum, of codes that are none and of values that
// are no numbers.
[[nodiscard]] analysis::Told<TimeCurve> SamplesOf(const Record& record, Axis axis);

class Study {
 public:
  // A moment as the user reads clocks, and whether the date is said.
  using LocalTime = std::function<std::string(std::chrono::system_clock::time_point)>;

  explicit Study(LocalTime localTime, StudyChoice choice = {});

  // What comes. A record that was never taken is none. One that is known already, now with its
  // alarms or another scale, takes the place of the first. What a stopped capture left behind is
  // shown, but is no capture to average, hold or add to the waterfall.
  void Take(RecordPointer record);
  // More is known of the record that came last; its data are the same.
  void Amend(RecordPointer record);
  void AddGap(const std::string& reason) { rows_.AddGap(reason); }
  void SetSensorBands(int option, const SensorBands& bands) { sensorBands_[option] = bands; }

  // What the user does.
  void Choose(StudyChoice choice);
  void Hold(bool held);  // what is shown stays, while records go on coming
  void Freeze();         // a copy of what is shown becomes a trace; nothing without one
  void TakeReference();  // what is shown becomes the reference; nothing without one
  void RestartAccumulation() { accumulated_.Restart(); }
  // Records to look at, the first in the place of the live one, the others beside it; each counts
  // once. None of them there any more: live.
  void Select(const std::vector<RecordId>& ids);

  // What is there.
  [[nodiscard]] const StudyChoice& Choice() const { return choice_; }
  [[nodiscard]] const Shelf& Records() const { return shelf_; }
  [[nodiscard]] const analysis::Waterfall& Rows() const { return rows_; }
  [[nodiscard]] const Accumulated& Accumulation() const { return accumulated_; }
  [[nodiscard]] bool IsLive() const { return selected_.empty(); }
  [[nodiscard]] bool IsHeld() const { return isHeld_; }
  [[nodiscard]] const std::vector<RecordId>& Selected() const { return selected_; }
  // What is looked at; null before the first record.
  [[nodiscard]] const Measured* Shown() const { return shown_ ? &*shown_ : nullptr; }
  [[nodiscard]] const Measured* Frozen() const { return frozen_ ? &*frozen_ : nullptr; }
  [[nodiscard]] const Measured* Reference() const { return reference_ ? &*reference_ : nullptr; }
  // Selected beside the one shown.
  [[nodiscard]] const std::vector<Measured>& Others() const { return others_; }
  [[nodiscard]] std::string TimeText(std::chrono::system_clock::time_point time) const {
    return localTime_(time);
  }
  // Of an axis at an option; null while nobody has said.
  [[nodiscard]] const std::array<analysis::SensorBand, 6>* BandsOf(int option, Axis axis) const;
  // The spectrum of what is shown; null where there is none.
  [[nodiscard]] const MeasuredSpectrum* SpectrumOf(Axis axis) const;
  // The samples of what is shown in the chosen quantity over time; refused of a spectrum, and of
  // velocity where the record is too short for it.
  [[nodiscard]] analysis::Told<TimeCurve> TimeCurveOf(Axis axis) const;
  // The same of another record.
  [[nodiscard]] analysis::Told<TimeCurve> TimeCurveOf(const Record& record, Axis axis) const;
  // Why the chosen quantity cannot be told of the focus axis of what is shown; nothing where it
  // can.
  [[nodiscard]] std::optional<analysis::Refusal> Refused() const;

 private:
  void MeasureAllAgain(const StudyChoice& before);

  LocalTime localTime_;
  StudyChoice choice_;
  Shelf shelf_ = Shelf();
  analysis::Waterfall rows_ = analysis::Waterfall();
  Accumulated accumulated_;
  std::map<int, SensorBands> sensorBands_ = {};
  RecordPointer live_ = nullptr;
  bool isHeld_ = false;
  std::vector<RecordId> selected_ = {};
  std::optional<Measured> shown_ = {};
  std::optional<Measured> frozen_ = {};
  std::optional<Measured> reference_ = {};
  std::vector<Measured> others_ = {};
};

}  // namespace kestrel::study
