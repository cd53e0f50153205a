// What the user has chosen at the workbench, and what of it is remembered between two runs.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "baseline/replay.h"
#include "baseline/rule.h"
#include "baseline/sets.h"
#include "baseline/workbench.h"

namespace kestrel {

// What rule and judgement may be set to.
inline constexpr double kLeastK = 0.5;
inline constexpr double kMostK = 10;
inline constexpr double kMostDb = 40;
inline constexpr int kMostOf = 50;

// How distributions are shown.
struct WorkbenchLook {
  bool inDecibels = true;  // re the proposed warning; otherwise g
  bool showsNow = true;    // present thresholds
  bool showsBad = true;
  bool operator==(const WorkbenchLook&) const = default;
};

struct WorkbenchChoice {
  std::vector<baseline::Part> parts;
  std::optional<int> option;  // of the records; none: as most of the good ones
  baseline::Rule rule;
  baseline::Judgement judgement;
  baseline::CellPlace cell;
  WorkbenchLook look;
  bool operator==(const WorkbenchChoice&) const = default;
};

// From the user's file of it, and into it. Records that were named one by one are remembered for
// the archive that they are in. What cannot be read is as it is at the first start.
[[nodiscard]] WorkbenchChoice ReadKeptWorkbench(const std::string& archive);
void WriteKeptWorkbench(const WorkbenchChoice& choice, const std::string& archive);

}  // namespace kestrel
