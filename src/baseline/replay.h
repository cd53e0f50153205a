// Records replayed against thresholds: false alarms, misses and their bounds.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "analysis/baseline.h"
#include "baseline/levels.h"
#include "baseline/sets.h"

namespace kestrel::baseline {

// m of the last n records above the threshold raise an alarm; it ends when m of the last n are
// below it by the hysteresis. 1 of 1 is what the sensor does: each record is judged alone, without
// hysteresis.
struct Judgement {
  int m = 1;
  int n = 1;
  double hysteresisDb = 1;
  [[nodiscard]] bool IsSingle() const { return n <= 1; }
  bool operator==(const Judgement&) const = default;
};
[[nodiscard]] std::string TextOf(const Judgement& judgement);  // "3 of 5, hysteresis 1 dB"

// So many of so many, with 95 % bounds of the share (Clopper and Pearson). The bounds are those of
// records that do not depend on one another.
struct Count {
  int counted = 0;
  int of = 0;
  [[nodiscard]] double Share() const { return of > 0 ? double{1} * counted / of : 0; }
  [[nodiscard]] analysis::ShareBounds Bounds() const { return analysis::BoundsOf(counted, of); }
  bool operator==(const Count&) const = default;
};

// 1 for every record after which the alarm stands, in the order of the members. A threshold of 0
// raises none.
[[nodiscard]] std::vector<std::uint8_t> AlarmsOver(std::span<const double> steps,
                                                   std::span<const Member> members,
                                                   double threshold, const Judgement& judgement);

// Good records with an alarm, bad ones with and without.
struct Counts {
  Count falseAlarms;
  Count caught;
  [[nodiscard]] Count Misses() const { return {caught.of - caught.counted, caught.of}; }
  bool operator==(const Counts&) const = default;
};
// At once, from the sorted levels, where the judgement is of single records.
[[nodiscard]] Counts CountsAt(const CellLevels& levels, const Sets& sets, double threshold,
                              const Judgement& judgement);

// Shares of false alarms and misses against the threshold, in rising order of it.
struct CurvePoint {
  double thresholdDb = 0;
  Counts counts{};
  analysis::ShareBounds falseAlarmBounds{};
  analysis::ShareBounds missBounds{};
};
[[nodiscard]] std::vector<CurvePoint> CurvesOf(const CellLevels& levels, const Sets& sets,
                                               double stepG, const Judgement& judgement,
                                               double fromDb, double toDb, int points);

}  // namespace kestrel::baseline
