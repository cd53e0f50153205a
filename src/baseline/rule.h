// The rules by which thresholds are proposed, and what they ask for.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "baseline/levels.h"

namespace kestrel::baseline {

enum class RuleKind {
  MeanAndSigma,  // mean + k σ of decibels
  Limit95,       // 95 % of all records keep to it, said with 95 % confidence
  Limit99        // 99 %, likewise
};

struct Rule {
  RuleKind kind = RuleKind::MeanAndSigma;
  double k = 3;
  double atLeastDb = 1.5;   // k σ is never taken for less
  double faultAboveDb = 3;  // of the fault over the warning
  bool operator==(const Rule&) const = default;
};

// What a rule needs of the good records: 2, since of one there is no σ, 59 or 299.
[[nodiscard]] std::size_t RecordsNeeded(const Rule& rule);
// "Needs 299 good records, 167 more than are chosen."; empty where `good` are enough.
[[nodiscard]] std::string ShortageText(const Rule& rule, std::size_t good);
// "mean + 3 σ of decibels, at least 1.5 dB; fault 3 dB above".
[[nodiscard]] std::string TextOf(const Rule& rule);

// The smallest of the sorted levels that a share of all records keeps to, said with this
// confidence; none where there are too few.
[[nodiscard]] std::optional<double> LimitFor(std::span<const double> sorted, double share,
                                             double confidence);

// Where a threshold is now and where a rule has it.
struct Threshold {
  double now = 0;                    // steps; 0: none
  std::optional<double> proposed{};  // steps; whole words of peaks
  bool isBeyond = false;  // the rule asks for more than the largest word: it would never alarm
  // Proposed over now; none without both.
  [[nodiscard]] std::optional<double> ChangeDb() const;
  bool operator==(const Threshold&) const = default;
};

// Of one band and axis.
struct Proposal {
  Threshold warning;
  Threshold fault;
  std::string refusal{};  // why nothing is proposed
  bool operator==(const Proposal&) const = default;
};

// `now` in steps.
[[nodiscard]] Proposal ProposalFor(const CellLevels& levels, const Rule& rule, LevelKind kind,
                                   double stepG, double warningNow, double faultNow);

}  // namespace kestrel::baseline
