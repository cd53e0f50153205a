// What happens to a study when a record comes or the user chooses.
// SPDX-License-Identifier: MIT
#include "study/study.h"

#include <utility>

namespace kestrel::study {

Study::Study(LocalTime localTime, StudyChoice choice)
    : localTime_(std::move(localTime)),
      choice_(std::move(choice)),
      accumulated_(choice_.averageOf) {}

void Study::Take(RecordPointer record) {
  live_ = std::move(record);
  shelf_.Add(live_);
  rows_.Add(*live_, true);
  Measured measured = Measure(live_, choice_);
  accumulated_.Add(measured);
  if (IsLive() && !isHeld_) shown_ = std::move(measured);
}

void Study::Amend(RecordPointer record) {
  if (!live_) return;
  for (auto* measured : {&shown_, &frozen_, &reference_}) {
    if (*measured && (*measured)->record == live_) (*measured)->record = record;
  }
  shelf_.Amend(record);
  live_ = std::move(record);
}

void Study::Choose(StudyChoice choice) {
  const bool isSame = choice.MeasuresAs(choice_);
  if (choice.meaning != choice_.meaning || choice.timeWindow != choice_.timeWindow) {
    accumulated_.Restart();
  }
  choice_ = std::move(choice);
  accumulated_.AverageOf(choice_.averageOf);
  if (!isSame) MeasureAgain();
}

void Study::Hold(bool held) {
  isHeld_ = held;
  if (!held) MeasureAgain();
}

void Study::Freeze() {
  frozen_ = shown_;
  choice_.extras.insert(Extra::Frozen);
}

void Study::TakeReference() {
  reference_ = shown_;
  choice_.extras.insert(Extra::Reference);
}

void Study::Select(const std::vector<RecordId>& ids) {
  selected_.clear();
  isHeld_ = false;
  for (const RecordId id : ids) {
    if (shelf_.Find(id)) selected_.push_back(id);
  }
  MeasureAgain();
}

void Study::MeasureAgain() {
  const auto again = [this](std::optional<Measured>& measured) {
    if (measured) measured = Measure(measured->record, choice_);
  };
  again(frozen_);
  again(reference_);
  others_.clear();
  const RecordPointer held = shown_ ? shown_->record : nullptr;
  shown_.reset();
  if (selected_.empty()) {
    const RecordPointer& record = isHeld_ ? held : live_;
    if (record) shown_ = Measure(record, choice_);
    return;
  }
  for (const RecordId id : selected_) {
    const RecordPointer record = shelf_.Find(id);
    if (!record) continue;
    if (!shown_) {
      shown_ = Measure(record, choice_);
    } else {
      others_.push_back(Measure(record, choice_));
    }
  }
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
  return SpectrumRefused();
}

std::optional<analysis::Refusal> Study::SpectrumRefused() const {
  if (!shown_) return std::nullopt;
  const MeasuredAxis& focus = shown_->Of(choice_.focus);
  if (!focus) return focus.Why();
  if (!focus->curve) return focus->curve.Why();
  return std::nullopt;
}

}  // namespace kestrel::study
