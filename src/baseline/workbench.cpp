// What depends on what among levels, proposals and replays.
// SPDX-License-Identifier: MIT
#include "baseline/workbench.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrel::baseline {
namespace {

constexpr double kLargestWord = 65535;
constexpr int kLastBin = static_cast<int>(analysis::kSpectrumBins) - 1;

}  // namespace

std::vector<CellPlace> AllCells() {
  std::vector<CellPlace> cells;
  for (int band = 1; band <= kAlarmBands; ++band) {
    for (const Axis axis : kAxes) cells.push_back({band, axis});
  }
  return cells;
}

std::size_t Workbench::IndexOf(CellPlace place) {
  const int band = std::clamp(place.band, 1, kAlarmBands) - 1;
  return static_cast<std::size_t>(band) * kAxes.size() + Index(place.axis);
}

Workbench::Workbench(Sets sets, std::shared_ptr<const Spectra> spectra, const Bands& present,
                     LevelKind kind, const Rule& rule, const Judgement& judgement,
                     analysis::MagnitudeMeaning meaning)
    : sets_(std::move(sets)),
      spectra_(std::move(spectra)),
      present_(present),
      edges_(present),
      kind_(kind),
      rule_(rule),
      judgement_(judgement),
      stepG_(StepG(sets_.settings, meaning)) {
  MeasureAll();
}

const Band& Workbench::BandAt(int band) const {
  return edges_[static_cast<std::size_t>(std::clamp(band, 1, kAlarmBands) - 1)];
}

void Workbench::MeasureAll() {
  for (const CellPlace& place : AllCells()) {
    Measure(place);
    Propose(place);
    Replay(place);
  }
  CountAll();
}

void Workbench::Measure(CellPlace place) {
  Cell(place).levels = LevelsOf(*spectra_, sets_.good.size(), BandAt(place.band), place.axis, kind_,
                                sets_.settings.window);
}

// Present thresholds are words of magnitudes, which say nothing about an RMS.
void Workbench::Propose(CellPlace place) {
  CellState& cell = Cell(place);
  const analysis::SensorBand present =
      kind_ == LevelKind::BandPeak
          ? present_[static_cast<std::size_t>(place.band - 1)].Of(place.axis)
          : analysis::SensorBand{};
  cell.proposal = ProposalFor(cell.levels, rule_, kind_, stepG_, present.warning, present.fault);
  cell.warning = cell.proposal.warning.proposed.value_or(cell.proposal.warning.now);
  cell.fault = cell.proposal.fault.proposed.value_or(cell.proposal.fault.now);
  cell.isMoved = false;
}

void Workbench::Replay(CellPlace place) {
  CellState& cell = Cell(place);
  std::vector<std::uint8_t>& standing = warnings_[IndexOf(place)];
  standing = AlarmsOver(cell.levels.good, sets_.good, cell.warning, judgement_);
  const auto bad = AlarmsOver(cell.levels.bad, sets_.bad, cell.warning, judgement_);
  const auto counted = [](std::span<const std::uint8_t> alarms) {
    return Count{.counted = static_cast<int>(std::ranges::count(alarms, std::uint8_t{1})),
                 .of = static_cast<int>(alarms.size())};
  };
  cell.warnings = {.falseAlarms = counted(standing), .caught = counted(bad)};
  standing.insert(standing.end(), bad.begin(), bad.end());
  cell.faults = CountsAt(cell.levels, sets_, cell.fault, judgement_);
}

// A cell without levels raises no alarm in any record.
void Workbench::CountAll() {
  const std::size_t good = sets_.good.size();
  std::vector<std::uint8_t> any(good + sets_.bad.size(), 0);
  for (const auto& standing : warnings_) {
    for (std::size_t i = 0; i < standing.size(); ++i) {
      any[i] = static_cast<std::uint8_t>(any[i] | standing[i]);
    }
  }
  const auto from = any.begin() + static_cast<std::ptrdiff_t>(good);
  overall_.falseAlarms = {.counted = static_cast<int>(std::count(any.begin(), from, 1)),
                          .of = static_cast<int>(good)};
  overall_.misses = {.counted = static_cast<int>(std::count(from, any.end(), 0)),
                     .of = static_cast<int>(sets_.bad.size())};
}

void Workbench::SetKind(LevelKind kind) {
  kind_ = kind;
  usesPresent_ = false;
  MeasureAll();
}

void Workbench::SetRule(const Rule& rule) {
  rule_ = rule;
  usesPresent_ = false;
  for (const CellPlace& place : AllCells()) {
    Propose(place);
    Replay(place);
  }
  CountAll();
}

void Workbench::SetJudgement(const Judgement& judgement) {
  judgement_ = judgement;
  for (const CellPlace& place : AllCells()) Replay(place);
  CountAll();
}

void Workbench::SetEdges(int band, int lowBin, int highBin) {
  Band& edges = edges_[static_cast<std::size_t>(std::clamp(band, 1, kAlarmBands) - 1)];
  edges.lowBin = std::clamp(lowBin, 0, kLastBin);
  edges.highBin = std::clamp(highBin, 0, kLastBin);
  for (const Axis axis : kAxes) {
    Measure({band, axis});
    Propose({band, axis});
    Replay({band, axis});
  }
  CountAll();
}

double Workbench::AsThreshold(double steps) const {
  if (!(steps > 0)) return 0;
  return kind_ == LevelKind::BandPeak ? std::clamp(std::ceil(steps - 1e-9), 1.0, kLargestWord)
                                      : steps;
}

void Workbench::SetThreshold(CellPlace place, Alarm alarm, double steps) {
  CellState& cell = Cell(place);
  const double threshold = AsThreshold(steps);
  if (alarm == Alarm::Warning) {
    cell.warning = threshold;
    if (cell.fault > 0) cell.fault = std::max(cell.fault, threshold);
  } else {
    cell.fault = threshold;
    if (threshold > 0) cell.warning = std::min(cell.warning, threshold);
  }
  cell.isMoved = true;
  Replay(place);
  CountAll();
}

void Workbench::ResetThreshold(CellPlace place) {
  Propose(place);
  Replay(place);
  CountAll();
}

void Workbench::UsePresent() {
  usesPresent_ = true;
  for (const CellPlace& place : AllCells()) {
    CellState& cell = Cell(place);
    cell.warning = cell.proposal.warning.now;
    cell.fault = cell.proposal.fault.now;
    cell.isMoved = true;
    Replay(place);
  }
  CountAll();
}

Bands Workbench::Result() const {
  Bands bands = edges_;
  if (!CanBeWritten()) return bands;
  for (const CellPlace& place : AllCells()) {
    Band& band = bands[static_cast<std::size_t>(place.band - 1)];
    band.warning[Index(place.axis)] = static_cast<int>(At(place).warning);
    band.fault[Index(place.axis)] = static_cast<int>(At(place).fault);
  }
  return bands;
}

int Workbench::Changes() const {
  const Bands result = Result();
  int changes = 0;
  for (std::size_t i = 0; i < result.size(); ++i) {
    changes += result[i].lowBin != present_[i].lowBin ? 1 : 0;
    changes += result[i].highBin != present_[i].highBin ? 1 : 0;
    for (const Axis axis : kAxes) {
      changes += result[i].warning[Index(axis)] != present_[i].warning[Index(axis)] ? 1 : 0;
      changes += result[i].fault[Index(axis)] != present_[i].fault[Index(axis)] ? 1 : 0;
    }
  }
  return changes;
}

}  // namespace kestrel::baseline
