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
  // Puts a record of an archive among the others; the live one stays what it is. One that is there
  // already keeps its id.
  RecordId Bring(RecordPointer record);
  // Looks at the newest of these records; averages, holds and the waterfall are of them alone until
  // others are selected. Returns why some are left out of averages and holds; empty where none is.
  std::string Gather(const std::vector<RecordId>& ids);

  // What is there.
  [[nodiscard]] const StudyChoice& Choice() const { return choice_; }
  [[nodiscard]] const Shelf& Records() const { return shelf_; }
  [[nodiscard]] const analysis::Waterfall& Rows() const {
    return gathered_ ? gathered_->rows : rows_;
  }
  // Another number where Rows are others, not only more.
  [[nodiscard]] int RowsVersion() const { return rowsVersion_; }
  [[nodiscard]] const Accumulated& Accumulation() const {
    return gathered_ ? gathered_->accumulated : accumulated_;
  }
  // The record that came last; null before the first.
  [[nodiscard]] const RecordPointer& Live() const { return live_; }
  [[nodiscard]] bool IsGathered() const { return gathered_.has_value(); }
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
  // Of some records alone.
  struct Gathered {
    std::vector<RecordPointer> records;  // the oldest first
    analysis::Waterfall rows;
    Accumulated accumulated;
  };
  void MeasureAllAgain(const StudyChoice& before);
  std::string Accumulate(Gathered& gathered) const;
  void Scatter();

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
  std::optional<Gathered> gathered_ = {};
  int rowsVersion_ = 0;
};

}  // namespace kestrel::study
