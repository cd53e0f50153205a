// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "alarms/band_table.h"

namespace kestrel {

// The steps in which the band table changed, whoever changed it, to be taken back and done again.
class BandHistory {
 public:
  static constexpr std::size_t kMaxSteps = 500;  // the oldest go first

  explicit BandHistory(BandTable& table) : table_(table), kept_(table) {}

  // Makes one step of all changes since the last one; false when there are none.
  bool Keep(const std::string& what);

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

  // The table as it was at the end of the last step.
  [[nodiscard]] const BandTable& Kept() const { return kept_; }

 private:
  struct Step {
    std::string what;
    BandTable before;
    BandTable after;
  };

  void Show(const BandTable& table);

  BandTable& table_;
  BandTable kept_;
  std::vector<Step> steps_;
  std::size_t done_ = 0;  // steps before this one are done, the others were taken back
};

}  // namespace kestrel
