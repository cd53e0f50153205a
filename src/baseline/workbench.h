// The workbench: bands, thresholds and rule over the records, worked out anew where one moves.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "baseline/bands.h"
#include "baseline/levels.h"
#include "baseline/replay.h"
#include "baseline/rule.h"
#include "baseline/spectra.h"

namespace kestrel::baseline {

// Band 1 to 6 and axis.
struct CellPlace {
  int band = 1;
  Axis axis = Axis::X;
  bool operator==(const CellPlace&) const = default;
};
// All eighteen, X, Y, Z of band 1 first.
[[nodiscard]] std::vector<CellPlace> AllCells();

enum class Alarm { Warning, Fault };

// Everything that is known of one band and axis. Thresholds in steps are those that are replayed:
// proposed by the rule, or where the user moved them.
struct CellState {
  CellLevels levels;
  Proposal proposal;
  double warning = 0;  // 0: none
  double fault = 0;
  bool isMoved = false;  // by the user, off the proposal
  Counts warnings;
  Counts faults;
};

// The whole replay: records with a warning of any band and axis.
struct Overall {
  Count falseAlarms;  // good records with one
  Count misses;       // bad records without any
  bool operator==(const Overall&) const = default;
};

// A value that can be copied; the spectra are shared. Every change works out what depends on it and
// nothing else; of 100,000 records a moved threshold takes about a millisecond.
class Workbench {
 public:
  Workbench() = default;
  // Levels of the bands, and the rule's proposal in every threshold.
  Workbench(Sets sets, std::shared_ptr<const Spectra> spectra, const Bands& present,
            LevelKind kind = LevelKind::BandPeak, const Rule& rule = {},
            const Judgement& judgement = {},
            analysis::MagnitudeMeaning meaning = analysis::MagnitudeMeaning::PeakOfSine);

  [[nodiscard]] const Sets& TheSets() const { return sets_; }
  // As they were handed in: what "now" stands for.
  [[nodiscard]] const Bands& Present() const { return present_; }
  [[nodiscard]] const Rule& TheRule() const { return rule_; }
  [[nodiscard]] const Judgement& TheJudgement() const { return judgement_; }
  [[nodiscard]] LevelKind Kind() const { return kind_; }
  [[nodiscard]] double StepInG() const { return stepG_; }
  // Edges as they are now, of band 1 to 6.
  [[nodiscard]] const Band& BandAt(int band) const;
  [[nodiscard]] const CellState& At(CellPlace place) const { return cells_[IndexOf(place)]; }
  [[nodiscard]] const Overall& Everything() const { return overall_; }

  void SetKind(LevelKind kind);
  // Proposes anew; thresholds that the user moved go back to the proposals.
  void SetRule(const Rule& rule);
  void SetJudgement(const Judgement& judgement);
  // Bins 0 to 255, both ends included; proposes its thresholds anew.
  void SetEdges(int band, int lowBin, int highBin);
  // Steps; of peaks the next whole word from 1 to 65535 at or above, 0 for none. A warning pushed
  // above its fault takes the fault with it, and likewise down.
  void SetThreshold(CellPlace place, Alarm alarm, double steps);
  // Back to the proposal.
  void ResetThreshold(CellPlace place);
  // The present thresholds in place of the proposals, to see what they do.
  void UsePresent();
  // Whether they are, and no other rule was taken since.
  [[nodiscard]] bool UsesPresent() const { return usesPresent_; }

  // Bands with the thresholds that are replayed. Cells without a threshold to propose keep that
  // which is present. Only of peaks: the sensor compares nothing else (CanBeWritten).
  [[nodiscard]] Bands Result() const;
  [[nodiscard]] bool CanBeWritten() const { return kind_ == LevelKind::BandPeak; }
  // Thresholds and edges in which Result differs from Present.
  [[nodiscard]] int Changes() const;

 private:
  static constexpr std::size_t kCells = 18;
  [[nodiscard]] static std::size_t IndexOf(CellPlace place);
  [[nodiscard]] CellState& Cell(CellPlace place) { return cells_[IndexOf(place)]; }
  [[nodiscard]] double AsThreshold(double steps) const;
  void Measure(CellPlace place);  // levels
  void Propose(CellPlace place);
  void Replay(CellPlace place);
  void CountAll();
  void MeasureAll();  // and what follows from it

  Sets sets_;
  std::shared_ptr<const Spectra> spectra_ = std::make_shared<Spectra>();
  Bands present_{};
  Bands edges_{};
  LevelKind kind_ = LevelKind::BandPeak;
  Rule rule_;
  Judgement judgement_;
  double stepG_ = 1;
  bool usesPresent_ = false;
  std::array<CellState, kCells> cells_;
  // Warnings that stand after each record, of each cell: good records, then bad ones.
  std::array<std::vector<std::uint8_t>, kCells> warnings_;
  Overall overall_;
};

}  // namespace kestrel::baseline
