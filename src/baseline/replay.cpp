// Levels against thresholds, alone or several in a row.
// SPDX-License-Identifier: MIT
#include "baseline/replay.h"

#include <algorithm>
#include <cmath>

#include "analysis/band_levels.h"
#include "numeric/number_format.h"

namespace kestrel::baseline {
namespace {

constexpr int kMostPoints = 2000;

Count CountAbove(std::span<const double> sorted, double threshold) {
  Count count{.counted = 0, .of = static_cast<int>(sorted.size())};
  if (threshold > 0) {
    count.counted = static_cast<int>(sorted.end() - std::ranges::upper_bound(sorted, threshold));
  }
  return count;
}

Count CountStanding(std::span<const double> steps, std::span<const Member> members,
                    double threshold, const Judgement& judgement) {
  const std::vector<std::uint8_t> alarms = AlarmsOver(steps, members, threshold, judgement);
  return {.counted = static_cast<int>(std::ranges::count(alarms, std::uint8_t{1})),
          .of = static_cast<int>(alarms.size())};
}

}  // namespace

std::string TextOf(const Judgement& judgement) {
  if (judgement.IsSingle()) return "single records, as the sensor judges them";
  const int m = std::clamp(judgement.m, 1, judgement.n);
  return std::to_string(m) + " of " + std::to_string(judgement.n) + " records, hysteresis " +
         GeneralNumber(judgement.hysteresisDb) + " dB, as this program judges them";
}

std::vector<std::uint8_t> AlarmsOver(std::span<const double> steps, std::span<const Member> members,
                                     double threshold, const Judgement& judgement) {
  std::vector<std::uint8_t> alarms(steps.size(), 0);
  if (!(threshold > 0)) return alarms;
  if (judgement.IsSingle()) {
    std::ranges::transform(steps, alarms.begin(), [threshold](double level) {
      return static_cast<std::uint8_t>(analysis::Exceeds(level, threshold));
    });
    return alarms;
  }
  const double release = threshold * std::pow(10, -std::max(judgement.hysteresisDb, 0.0) / 20);
  analysis::StandingAlarm alarm(threshold, release, {.m = judgement.m, .n = judgement.n});
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (i > 0 && i < members.size() && members[i].run != members[i - 1].run) alarm.Restart();
    alarms[i] = alarm.Next(steps[i]) ? 1 : 0;
  }
  return alarms;
}

Counts CountsAt(const CellLevels& levels, const Sets& sets, double threshold,
                const Judgement& judgement) {
  if (judgement.IsSingle()) {
    return {.falseAlarms = CountAbove(levels.sortedGood, threshold),
            .caught = CountAbove(levels.sortedBad, threshold)};
  }
  return {.falseAlarms = CountStanding(levels.good, sets.good, threshold, judgement),
          .caught = CountStanding(levels.bad, sets.bad, threshold, judgement)};
}

std::vector<CurvePoint> CurvesOf(const CellLevels& levels, const Sets& sets, double stepG,
                                 const Judgement& judgement, double fromDb, double toDb,
                                 int points) {
  std::vector<CurvePoint> curve;
  if (!levels.refusal.empty() || !(toDb > fromDb) || points < 2) return curve;
  points = std::min(points, kMostPoints);
  for (int i = 0; i < points; ++i) {
    CurvePoint point{.thresholdDb = fromDb + (toDb - fromDb) * i / (points - 1)};
    point.counts = CountsAt(levels, sets, StepsOf(point.thresholdDb, stepG), judgement);
    const CurvePoint* before = curve.empty() ? nullptr : &curve.back();
    point.falseAlarmBounds = before && before->counts.falseAlarms == point.counts.falseAlarms
                                 ? before->falseAlarmBounds
                                 : point.counts.falseAlarms.Bounds();
    point.missBounds = before && before->counts.caught == point.counts.caught
                           ? before->missBounds
                           : point.counts.Misses().Bounds();
    curve.push_back(point);
  }
  return curve;
}

}  // namespace kestrel::baseline
