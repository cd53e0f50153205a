// Severity of what is on the shelf: an estimate of each axis, or the captures that are missing.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/severity.h"
#include "study/study.h"

namespace kestrel::study {

// Captures further apart than this do not tell of one state of a machine.
inline constexpr std::chrono::hours kSeverityApart{1};

// What an option holds, and the capture that is used of it.
struct OptionCover {
  int option = 0;
  double fromHz = 0;
  double toHz = 0;
  RecordPointer record = nullptr;  // null where none is at hand
};

struct SeverityView {
  std::vector<OptionCover> options = {};                              // slowest first, all four
  std::vector<analysis::Told<analysis::SeverityEstimate>> axes = {};  // X, Y, Z; none before the
                                                                      // first spectrum
  std::string heading = {};
  std::string note = {};          // from what, and what is uncertain
  std::vector<int> missing = {};  // options to capture, slowest first

  [[nodiscard]] bool IsTold() const;
};

// Of the newest spectrum of each option; those of another window than the newest of all, or taken
// more than an hour before it, are left out and named.
[[nodiscard]] SeverityView SeverityOf(const Study& study);

}  // namespace kestrel::study
