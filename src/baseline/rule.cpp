// Proposals by rule.
// SPDX-License-Identifier: MIT
#include "baseline/rule.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/number_format.h"

namespace kestrel::baseline {
namespace {

constexpr double kConfidence = 0.95;
constexpr double kLargestWord = 65535;

double ShareOf(RuleKind kind) {
  return kind == RuleKind::Limit99 ? 0.99 : 0.95;
}

std::string Decibels(double db) {
  return GeneralNumber(db) + " dB";
}

// A limit in dB as a threshold: of peaks the next word at or above it.
void Propose(Threshold& threshold, double db, LevelKind kind, double stepG) {
  const double steps = StepsOf(db, stepG);
  if (kind == LevelKind::BandRms) {
    threshold.proposed = steps;
    return;
  }
  threshold.isBeyond = std::ceil(steps - 1e-9) > kLargestWord;
  threshold.proposed = analysis::ThresholdWord(db, stepG);
}

// Not finite where there is none.
double LimitDb(const CellLevels& levels, const Rule& rule, double stepG) {
  if (rule.kind == RuleKind::MeanAndSigma) {
    const auto usual = DistributionOf(levels.sortedGood, stepG);
    if (!usual) return std::numeric_limits<double>::quiet_NaN();
    return usual->meanDb + std::max(rule.k * usual->sigmaDb, rule.atLeastDb);
  }
  return DbOf(*LimitFor(levels.sortedGood, ShareOf(rule.kind), kConfidence), stepG);
}

}  // namespace

std::size_t RecordsNeeded(const Rule& rule) {
  if (rule.kind == RuleKind::MeanAndSigma) return 2;
  return static_cast<std::size_t>(*analysis::CapturesNeeded(ShareOf(rule.kind), kConfidence));
}

std::string ShortageText(const Rule& rule, std::size_t good) {
  const std::size_t needed = RecordsNeeded(rule);
  if (good >= needed) return {};
  const std::string more = good == 0 ? "none is chosen."
                                     : std::to_string(needed - good) + " more than " +
                                           (good == 1 ? "is" : "are") + " chosen.";
  return "Needs " + std::to_string(needed) + " good records, " + more;
}

std::string TextOf(const Rule& rule) {
  const std::string fault = "; fault " + Decibels(rule.faultAboveDb) + " above the warning";
  if (rule.kind == RuleKind::MeanAndSigma) {
    return "mean + " + GeneralNumber(rule.k) + " \u03c3 of decibels, at least " +
           Decibels(rule.atLeastDb) + fault;
  }
  return "limit for " + std::string(rule.kind == RuleKind::Limit95 ? "95" : "99") +
         " % of records, with 95 % confidence" + fault;
}

std::optional<double> LimitFor(std::span<const double> sorted, double share, double confidence) {
  const auto rank = analysis::RankFor(static_cast<int>(sorted.size()), share, confidence);
  if (!rank) return std::nullopt;
  return sorted[static_cast<std::size_t>(*rank - 1)];
}

std::optional<double> Threshold::ChangeDb() const {
  if (!(now > 0) || !proposed || !(*proposed > 0)) return std::nullopt;
  return 20 * std::log10(*proposed / now);
}

Proposal ProposalFor(const CellLevels& levels, const Rule& rule, LevelKind kind, double stepG,
                     double warningNow, double faultNow) {
  Proposal proposal{.warning = {.now = warningNow}, .fault = {.now = faultNow}};
  proposal.refusal = levels.refusal;
  if (proposal.refusal.empty()) proposal.refusal = ShortageText(rule, levels.sortedGood.size());
  if (!proposal.refusal.empty()) return proposal;
  const double limit = LimitDb(levels, rule, stepG);
  if (!std::isfinite(limit + rule.faultAboveDb)) {
    proposal.refusal = "The rule's numbers give no limit.";
    return proposal;
  }
  Propose(proposal.warning, limit, kind, stepG);
  Propose(proposal.fault, limit + std::max(rule.faultAboveDb, 0.0), kind, stepG);
  return proposal;
}

}  // namespace kestrel::baseline
