// Distributions, thresholds and curves of a cell as pictures need them.
// SPDX-License-Identifier: MIT
#include "ui/workbench/detail_of.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

#include "numeric/number_texts.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

using baseline::CellPlace;
using baseline::CellState;
using baseline::Workbench;

constexpr int kCurvePoints = 161;
constexpr double kPadDb = 0.6;
constexpr double kLeastSpanDb = 6;
constexpr double kSmallLow = -5;  // of the small pictures, dB re the reference
constexpr double kSmallHigh = 7;
constexpr double kSmallMost = 24;  // beyond, levels stand at the edge

QString Tr(const char* text) {
  return QCoreApplication::translate("Workbench", text);
}

double GOf(double db) {
  return std::pow(10, db / 20);
}
double DbOfG(double g) {
  return 20 * std::log10(g);
}

QString GText(double g) {
  return QString::fromStdString(analysis::SignificantText(g));
}

// Least and largest of what is to be seen.
class Extent {
 public:
  void Add(double db) {
    low_ = std::min(low_, db);
    high_ = std::max(high_, db);
  }
  void Add(const std::optional<double>& g) {
    if (g) Add(DbOfG(*g));
  }
  void AddAll(const std::vector<double>& sorted, double stepG) {
    if (sorted.empty()) return;
    Add(baseline::DbOf(sorted.front(), stepG));
    Add(baseline::DbOf(sorted.back(), stepG));
  }
  [[nodiscard]] PlotRange Range() const {
    if (low_ > high_) return {-40, 0};
    const double missing = std::max(0.0, kLeastSpanDb - (high_ - low_)) / 2;
    return {low_ - kPadDb - missing, high_ + kPadDb + missing};
  }

 private:
  double low_ = 1e9;
  double high_ = -1e9;
};

std::array<std::optional<double>, 2> Proposed(const Workbench& bench, const CellState& state) {
  return {ThresholdG(bench, state.warning), ThresholdG(bench, state.fault)};
}

std::array<std::optional<double>, 2> Now(const Workbench& bench, const CellState& state) {
  return {ThresholdG(bench, state.proposal.warning.now),
          ThresholdG(bench, state.proposal.fault.now)};
}

baseline::Histogram GoodHistogram(const CellState& state, double stepG) {
  const std::vector<double>& sorted = state.levels.sortedGood;
  if (sorted.empty()) return {};
  const double least = baseline::DbOf(sorted.front(), stepG);
  const double largest = baseline::DbOf(sorted.back(), stepG);
  const double width = baseline::ClassWidth(least, largest);
  const double from = std::floor(least / width) * width;
  const double to = std::max(from + width, std::ceil((largest + 1e-9) / width) * width);
  return baseline::HistogramOf(sorted, stepG, from, to, width);
}

std::string AxisText(CellPlace cell) {
  return "band " + std::to_string(cell.band) + ", " + Letter(cell.axis);
}

}  // namespace

std::optional<double> ThresholdG(const Workbench& bench, double steps) {
  return steps > 0 ? std::optional(steps * bench.StepInG()) : std::nullopt;
}

std::optional<double> ReferenceG(const CellState& state, double stepG) {
  const baseline::Threshold& warning = state.proposal.warning;
  if (warning.proposed && *warning.proposed > 0) return *warning.proposed * stepG;
  if (warning.now > 0) return warning.now * stepG;
  const auto good = baseline::DistributionOf(state.levels.good, stepG);
  return good ? std::optional(GOf(good->meanDb)) : std::nullopt;
}

DetailScene DetailOf(const Workbench& bench, CellPlace cell, const WorkbenchLook& look) {
  const CellState& state = bench.At(cell);
  const double stepG = bench.StepInG();
  DetailScene scene{.name = QString::fromStdString(AxisText(cell)), .axis = cell.axis};
  scene.showsBad = look.showsBad;
  scene.showsNow = look.showsNow;
  if (!state.levels.refusal.empty()) {
    scene.hint = QString::fromStdString(state.levels.refusal);
    return scene;
  }
  scene.proposed = Proposed(bench, state);
  scene.now = Now(bench, state);
  for (const AlarmLevel level : kAlarmLevels) {
    const QString word = level == AlarmLevel::Warning ? Tr("Warning") : Tr("Fault");
    const auto g = scene.proposed[Index(level)];
    scene.flags[Index(level)] = g ? Tr("%1 %2 g").arg(word, GText(*g)) : Tr("%1 none").arg(word);
  }
  scene.goodCount = static_cast<int>(state.levels.good.size());
  for (const double steps : state.levels.sortedBad) {
    scene.bad.push_back(GOf(baseline::DbOf(steps, stepG)));
  }
  const baseline::Histogram histogram = GoodHistogram(state, stepG);
  for (std::size_t i = 0; i < histogram.counts.size(); ++i) {
    const double from = histogram.fromDb + static_cast<double>(i) * histogram.widthDb;
    scene.good.push_back(
        {GOf(from), GOf(from + histogram.widthDb), static_cast<int>(histogram.counts[i])});
  }
  Extent extent;
  extent.AddAll(state.levels.sortedGood, stepG);
  if (look.showsBad) extent.AddAll(state.levels.sortedBad, stepG);
  for (const auto& g : scene.proposed) extent.Add(g);
  if (look.showsNow) {
    for (const auto& g : scene.now) extent.Add(g);
  }
  const PlotRange db = extent.Range();
  scene.across = {GOf(db.low), GOf(db.high)};
  if (look.inDecibels) scene.decibelsRe = ReferenceG(state, stepG);
  const auto good = baseline::DistributionOf(state.levels.good, stepG);
  if (good) {
    scene.note = Tr("mean %1 g, \u03C3 %2 dB")
                     .arg(GText(GOf(good->meanDb)),
                          QString::fromStdString(analysis::NumberText(good->sigmaDb, 2)));
  }
  return scene;
}

void DetailCurves::Fill(const Workbench& bench, CellPlace cell, DetailScene& scene) {
  const CellState& state = bench.At(cell);
  const double low = DbOfG(scene.across.low);
  const double high = DbOfG(scene.across.high);
  Of now{cell, state.levels.sortedGood, state.levels.sortedBad, bench.TheJudgement(), low, high};
  if (now != of_) {
    of_ = std::move(now);
    falseAlarms_.clear();
    misses_.clear();
    for (const baseline::CurvePoint& point :
         baseline::CurvesOf(state.levels, bench.TheSets(), bench.StepInG(), of_.judgement, low,
                            high, kCurvePoints)) {
      const double g = GOf(point.thresholdDb);
      falseAlarms_.push_back({g, point.counts.falseAlarms.Share(), point.falseAlarmBounds.low,
                              point.falseAlarmBounds.high});
      if (point.counts.caught.of == 0) continue;
      misses_.push_back(
          {g, point.counts.Misses().Share(), point.missBounds.low, point.missBounds.high});
    }
  }
  scene.falseAlarms = falseAlarms_;
  if (scene.showsBad) scene.misses = misses_;
}

DistributionRange RangeOf(const Workbench& bench, const WorkbenchLook& look) {
  DistributionRange range{.isRelative = look.inDecibels};
  if (look.inDecibels) {
    range.lowDb = kSmallLow;
    range.highDb = kSmallHigh;
  }
  Extent extent;
  for (const CellPlace& cell : baseline::AllCells()) {
    const CellState& state = bench.At(cell);
    const auto re = ReferenceG(state, bench.StepInG());
    const double at = look.inDecibels && re ? DbOfG(*re) : 0;
    for (const std::vector<double>* sorted : {&state.levels.sortedGood, &state.levels.sortedBad}) {
      if (sorted->empty() || (sorted == &state.levels.sortedBad && !look.showsBad)) continue;
      extent.Add(baseline::DbOf(sorted->front(), bench.StepInG()) - at);
      extent.Add(baseline::DbOf(sorted->back(), bench.StepInG()) - at);
    }
    for (const auto& g : Proposed(bench, state)) {
      if (g) extent.Add(DbOfG(*g) - at);
    }
  }
  const PlotRange seen = extent.Range();
  if (!look.inDecibels) {
    range.lowDb = seen.low;
    range.highDb = seen.high;
    return range;
  }
  range.lowDb = std::max(-kSmallMost, std::min(range.lowDb, std::floor(seen.low)));
  range.highDb = std::min(kSmallMost, std::max(range.highDb, std::ceil(seen.high)));
  return range;
}

SmallDistribution SmallOf(const Workbench& bench, CellPlace cell, const DistributionRange& range,
                          const WorkbenchLook& look) {
  const CellState& state = bench.At(cell);
  const double stepG = bench.StepInG();
  SmallDistribution small{.refusal = QString::fromStdString(state.levels.refusal),
                          .axis = cell.axis};
  small.isUsed = small.refusal.isEmpty();
  const QString name = QString::fromStdString(AxisText(cell));
  if (!small.isUsed) {
    small.spoken = name + ": " + small.refusal;
    return small;
  }
  const auto re = ReferenceG(state, stepG);
  const double at = range.isRelative && re ? DbOfG(*re) : 0;
  const baseline::Histogram histogram = GoodHistogram(state, stepG);
  const auto most = std::ranges::max_element(histogram.counts);
  for (const std::size_t count : histogram.counts) {
    small.heights.push_back(static_cast<double>(count) / static_cast<double>(*most));
  }
  small.fromDb = histogram.fromDb - at;
  small.widthDb = histogram.widthDb;
  if (look.showsBad) {
    for (const double steps : state.levels.sortedBad) {
      small.badDb.push_back(baseline::DbOf(steps, stepG) - at);
    }
  }
  const auto proposed = Proposed(bench, state);
  const auto now = Now(bench, state);
  for (const AlarmLevel level : kAlarmLevels) {
    const std::size_t i = Index(level);
    if (proposed[i]) small.proposedDb[i] = DbOfG(*proposed[i]) - at;
    if (now[i] && look.showsNow) small.nowDb[i] = DbOfG(*now[i]) - at;
  }
  small.falseAlarms = state.warnings.falseAlarms.counted;
  small.caught = state.warnings.caught.counted;
  small.hasBad = state.warnings.caught.of > 0;
  small.spoken = Tr("%1, %2 Hz: %3 false alarms, %4 caught")
                     .arg(name, BandHzText(bench, cell.band))
                     .arg(small.falseAlarms)
                     .arg(small.caught);
  return small;
}

QString BandHzText(const Workbench& bench, int band) {
  const baseline::Band& edges = bench.BandAt(band);
  if (!edges.IsUsed()) return Tr("not used");
  const double width = BinWidth(bench.TheSets().settings.option);
  const int decimals = width < 1 ? 1 : 0;
  return Tr("%1 to %2")
      .arg(QString::fromStdString(analysis::NumberText(edges.lowBin * width, decimals)),
           QString::fromStdString(analysis::NumberText(edges.highBin * width, decimals)));
}

QString BoundsText(const baseline::Count& count) {
  const analysis::ShareBounds bounds = count.Bounds();
  const auto text = [](double part) {
    const double percent = 100 * part;
    return QString::fromStdString(analysis::NumberText(percent, percent < 10 ? 1 : 0));
  };
  return Tr("%1 to %2").arg(text(bounds.low), text(bounds.high));
}

QString ShareText(const baseline::Count& count) {
  if (count.of == 0) return Tr("none chosen");
  return Tr("%1 % (%2 %)")
      .arg(QString::fromStdString(analysis::NumberText(100 * count.Share(), 1)), BoundsText(count));
}

}  // namespace kestrel
