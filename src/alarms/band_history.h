// The steps in which the alarm bands changed.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "alarms/band_range.h"
#include "alarms/band_table.h"

namespace kestrel {

// The steps in which the band table changed, whoever changed it, to be taken back and done again;
// and the range that each threshold was given for.
class BandHistory {
 public:
  static constexpr std::size_t kMaxSteps = 500;  // the oldest go first

  explicit BandHistory(BandTable& table) : table_(table), kept_(table) {}

  // Makes one step of all changes since the last one; false when there are none. What has changed
  // was given for `range`.
  bool Keep(const std::string& what, std::int32_t range = kRangeNotKnown);

  // What the step is called that would be taken back or done again; "" when there is none.
  [[nodiscard]] std::string NextUndo() const { return done_ == 0 ? "" : steps_[done_ - 1].what; }
  [[nodiscard]] std::string NextRedo() const {
    return done_ == steps_.size() ? "" : steps_[done_].what;
  }

  // False when there is no such step.
  bool Undo();
  bool Redo();

  // The table as it stands becomes the beginning.
  void Restart();

  [[nodiscard]] const ThresholdRanges& Ranges() const { return ranges_; }
  // All thresholds hold good for this range as they are; or those of which nothing was known.
  void MeanFor(std::int32_t range);
  void MeanFor(const BandPlace& threshold, std::int32_t range);
  void MeanUnknownFor(std::int32_t range);
  // One step: the changes since the last one say the same thresholds for another range.
  bool KeepFor(const std::string& what, std::int32_t range);

  // The table as it was at the end of the last step.
  [[nodiscard]] const BandTable& Kept() const { return kept_; }

 private:
  struct Step {
    std::string what;
    BandTable before;
    BandTable after;
    ThresholdRanges rangesBefore;
    ThresholdRanges rangesAfter;
  };

  void Push(const std::string& what, const ThresholdRanges& rangesBefore);
  // Goes from one end of a step to the other.
  void Show(const BandTable& table, const ThresholdRanges& from, const ThresholdRanges& to);

  BandTable& table_;
  BandTable kept_;
  ThresholdRanges ranges_;
  std::vector<Step> steps_;
  std::size_t done_ = 0;  // steps before this one are done, the others were taken back
};

}  // namespace kestrel
