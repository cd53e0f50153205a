// What happens to a study when a record comes or the user chooses.
// SPDX-License-Identifier: MIT
#include "study/study.h"

#include <algorithm>
#include <utility>

namespace kestrel::study {

Study::Study(LocalTime localTime, StudyChoice choice)
    : localTime_(std::move(localTime)),
      choice_(std::move(choice)),
      accumulated_(choice_.averageOf) {}

void Study::Take(RecordPointer record) {
  if (!record || !record->Taken()) return;
  if (live_ && IsSameCapture(*live_, *record)) {
    Amend(std::move(record));
    return;
  }
  live_ = std::move(record);
  shelf_.Add(live_);
  Measured measured = Measure(live_, choice_);
  if (live_->IsNew()) {
    // A time record is no row; the waterfall says so itself.
    static_cast<void>(rows_.Add(*live_, true));
    accumulated_.Add(measured);
  }
  if (IsLive() && !isHeld_) shown_ = std::move(measured);
}

void Study::Amend(RecordPointer record) {
  if (!live_) return;
  const auto amend = [&](Measured& measured) {
    if (measured.record == live_) measured.record = record;
  };
  for (auto* measured : {&shown_, &frozen_, &reference_}) {
    if (*measured) amend(**measured);
  }
  for (Measured& other : others_) amend(other);
  shelf_.Replace(live_, record);
  live_ = std::move(record);
}

void Study::Choose(StudyChoice choice) {
  const StudyChoice before = std::exchange(choice_, std::move(choice));
  accumulated_.AverageOf(choice_.averageOf);
  const bool isOfTime = live_ && live_->kind == RecordKind::Time;
  if (choice_.meaning != before.meaning) {
    accumulated_.Restart("magnitudes taken for another quantity");
  } else if (choice_.timeWindow != before.timeWindow && isOfTime) {
    const std::string name(analysis::WindowOf(choice_.timeWindow).name);
    accumulated_.Restart("other window: " + name);
  }
  if (!choice_.MeasuresAs(before)) MeasureAllAgain(before);
}

void Study::MeasureAllAgain(const StudyChoice& before) {
  for (auto* measured : {&shown_, &frozen_, &reference_}) {
    if (*measured) MeasureAgain(**measured, before, choice_);
  }
  for (Measured& other : others_) MeasureAgain(other, before, choice_);
  if (gathered_) Accumulate(*gathered_);
}

void Study::Hold(bool held) {
  const bool isReleased = isHeld_ && !held;
  isHeld_ = held;
  if (isReleased && IsLive() && live_) shown_ = Measure(live_, choice_);
}

void Study::Freeze() {
  if (!shown_) return;
  frozen_ = shown_;
  choice_.extras.insert(Extra::Frozen);
}

void Study::TakeReference() {
  if (!shown_) return;
  reference_ = shown_;
  choice_.extras.insert(Extra::Reference);
}

RecordId Study::Bring(RecordPointer record) {
  const auto& entries = shelf_.Entries();
  const auto found = std::ranges::find_if(
      entries, [&](const ShelfEntry& entry) { return IsSameCapture(*entry.record, *record); });
  return found == entries.end() ? shelf_.Add(std::move(record)) : found->id;
}

void Study::Scatter() {
  if (!gathered_) return;
  gathered_.reset();
  ++rowsVersion_;
}

std::string Study::Gather(const std::vector<RecordId>& ids) {
  Gathered gathered{.records = {},
                    .rows = analysis::Waterfall(),
                    .accumulated = Accumulated(static_cast<int>(ids.size()))};
  RecordId newest = 0;
  for (const RecordId id : ids) {
    const RecordPointer record = shelf_.Find(id);
    if (!record) continue;
    if (newest == 0 || record->time > shelf_.Find(newest)->time) newest = id;
    gathered.records.push_back(record);
  }
  if (newest == 0) return {};
  Select({newest});
  std::ranges::stable_sort(gathered.records, {}, [](const auto& record) { return record->time; });
  for (const RecordPointer& record : gathered.records) {
    static_cast<void>(gathered.rows.Add(*record, true));
  }
  const std::string why = Accumulate(gathered);
  gathered_ = std::move(gathered);
  ++rowsVersion_;
  return why;
}

// The newest tells what fits: it is the one that is shown.
std::string Study::Accumulate(Gathered& gathered) const {
  gathered.accumulated = Accumulated(static_cast<int>(gathered.records.size()));
  const Measured newest = Measure(gathered.records.back(), choice_);
  std::string why;
  for (const RecordPointer& record : gathered.records) {
    const Measured measured = Measure(record, choice_);
    const auto unfit = WhyNotTogether(newest, measured);
    if (unfit) {
      why = *unfit;
    } else {
      gathered.accumulated.Add(measured);
    }
  }
  return why;
}

void Study::Select(const std::vector<RecordId>& ids) {
  Scatter();
  selected_.clear();
  others_.clear();
  shown_.reset();
  isHeld_ = false;
  for (const RecordId id : ids) {
    const RecordPointer record = shelf_.Find(id);
    if (!record || std::ranges::find(selected_, id) != selected_.end()) continue;
    selected_.push_back(id);
    if (!shown_) {
      shown_ = Measure(record, choice_);
    } else {
      others_.push_back(Measure(record, choice_));
    }
  }
  if (!shown_ && live_) shown_ = Measure(live_, choice_);
}

const std::array<analysis::SensorBand, 6>* Study::BandsOf(int option, Axis axis) const {
  const auto found = sensorBands_.find(option);
  return found == sensorBands_.end() ? nullptr : &found->second[Index(axis)];
}

const MeasuredSpectrum* Study::SpectrumOf(Axis axis) const {
  if (!shown_ || !shown_->Of(axis)) return nullptr;
  return &*shown_->Of(axis);
}

std::optional<analysis::Refusal> Study::Refused() const {
  if (!shown_) return std::nullopt;
  if (choice_.view == View::Time) {
    const auto curve = TimeCurveOf(choice_.focus);
    return curve ? std::nullopt : std::optional(curve.Why());
  }
  const MeasuredAxis& focus = shown_->Of(choice_.focus);
  if (!focus) return focus.Why();
  if (!focus->curve) return focus->curve.Why();
  return std::nullopt;
}

}  // namespace kestrel::study
