// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "alarms/band_history.h"

namespace kestrel {

bool BandHistory::Keep(const std::string& what) {
  if (table_ == kept_) return false;
  steps_.resize(done_);
  if (steps_.size() == kMaxSteps) steps_.erase(steps_.begin());
  steps_.push_back({.what = what, .before = kept_, .after = table_});
  done_ = steps_.size();
  kept_ = table_;
  return true;
}

bool BandHistory::Undo() {
  if (done_ == 0) return false;
  Show(steps_[--done_].before);
  return true;
}

bool BandHistory::Redo() {
  if (done_ == steps_.size()) return false;
  Show(steps_[done_++].after);
  return true;
}

void BandHistory::Restart() {
  steps_.clear();
  done_ = 0;
  kept_ = table_;
}

void BandHistory::Show(const BandTable& table) {
  table_ = table;
  kept_ = table;
}

}  // namespace kestrel
