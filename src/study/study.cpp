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
  shelf_.Amend(record);
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

void Study::Select(const std::vector<RecordId>& ids) {
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
