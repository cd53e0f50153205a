// Keeping, taking back and redoing steps.
// SPDX-License-Identifier: MIT
#include "alarms/band_history.h"

namespace kestrel {

bool BandHistory::Keep(const std::string& what, std::int32_t range) {
  if (table_ == kept_) return false;
  const ThresholdRanges before = ranges_;
  for (const BandPlace& place : ThresholdPlaces()) {
    if (ValueAt(table_, place) != ValueAt(kept_, place)) MeanFor(place, range);
  }
  Push(what, before);
  return true;
}

bool BandHistory::KeepFor(const std::string& what, std::int32_t range) {
  const ThresholdRanges before = ranges_;
  MeanFor(range);
  if (table_ == kept_) return false;
  Push(what, before);
  return true;
}

void BandHistory::MeanFor(std::int32_t range) {
  for (const BandPlace& place : ThresholdPlaces()) MeanFor(place, range);
}

void BandHistory::MeanFor(const BandPlace& threshold, std::int32_t range) {
  ranges_(threshold.field, threshold.band, threshold.option) = range;
}

void BandHistory::MeanUnknownFor(std::int32_t range) {
  for (const BandPlace& place : ThresholdPlaces()) {
    if (ValueAt(ranges_, place) == kRangeNotKnown) MeanFor(place, range);
  }
}

void BandHistory::Push(const std::string& what, const ThresholdRanges& rangesBefore) {
  steps_.resize(done_);
  if (steps_.size() == kMaxSteps) steps_.erase(steps_.begin());
  steps_.push_back({.what = what,
                    .before = kept_,
                    .after = table_,
                    .rangesBefore = rangesBefore,
                    .rangesAfter = ranges_});
  done_ = steps_.size();
  kept_ = table_;
}

bool BandHistory::Undo() {
  if (done_ == 0) return false;
  const Step& step = steps_[--done_];
  Show(step.before, step.rangesAfter, step.rangesBefore);
  return true;
}

bool BandHistory::Redo() {
  if (done_ == steps_.size()) return false;
  const Step& step = steps_[done_++];
  Show(step.after, step.rangesBefore, step.rangesAfter);
  return true;
}

void BandHistory::Restart() {
  steps_.clear();
  done_ = 0;
  kept_ = table_;
}

// What the step itself says about ranges comes with it; what was said since about others stays.
void BandHistory::Show(const BandTable& table, const ThresholdRanges& from,
                       const ThresholdRanges& to) {
  for (const BandPlace& place : ThresholdPlaces()) {
    const bool changes = ValueAt(table_, place) != ValueAt(table, place) ||
                         ValueAt(from, place) != ValueAt(to, place);
    if (changes) MeanFor(place, ValueAt(to, place));
  }
  table_ = table;
  kept_ = table;
}

}  // namespace kestrel
