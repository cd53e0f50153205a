// The workbench of one window: sets, bands, rule and thresholds, and who is told when they change.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "alarms/band_edits.h"
#include "archive/place.h"
#include "archive/worker.h"
#include "baseline/workbench.h"
#include "ui/workbench/workbench_choice.h"

namespace kestrel {

// Records are read by a thread with a connection of its own; all else is worked out at once.
class WorkbenchModel : public QObject {
  Q_OBJECT

 public:
  // Without a place there is nothing to read.
  explicit WorkbenchModel(archive::Place place, QObject* parent = nullptr);
  ~WorkbenchModel() override;
  WorkbenchModel(const WorkbenchModel&) = delete;
  WorkbenchModel& operator=(const WorkbenchModel&) = delete;

  [[nodiscard]] bool HasArchive() const { return worker_ != nullptr; }
  [[nodiscard]] const archive::Place& Place() const { return place_; }
  [[nodiscard]] const WorkbenchChoice& Choice() const { return choice_; }
  // Nothing before records have been read.
  [[nodiscard]] bool HasBench() const { return bench_.has_value(); }
  [[nodiscard]] const baseline::Workbench& Bench() const { return *bench_; }
  // Of the cell that is chosen.
  [[nodiscard]] const baseline::CellState& Cell() const { return bench_->At(choice_.cell); }
  // Whether the editor's table holds bands of the records' option; if not, usual ones stand in.
  [[nodiscard]] bool KnowsBands() const;
  // Whether thresholds can be replayed: there is a known good record.
  [[nodiscard]] bool HasGood() const { return bench_ && !bench_->TheSets().good.empty(); }

  // Sets. Each reads anew.
  void SetChoice(const WorkbenchChoice& choice);
  void AddPart(baseline::Part part);
  void RemovePart(std::size_t part);
  void SetOption(std::optional<int> option);
  void Read();
  void Cancel();
  [[nodiscard]] bool IsReading() const { return isReading_; }
  // What stands in the way, with the cure; empty while all is well.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

  // The table of the alarm editor: what "now" stands for.
  void SetTable(const BandTable& table);

  void SetRule(const baseline::Rule& rule);
  void SetJudgement(const baseline::Judgement& judgement);
  void SetEdges(int band, int lowBin, int highBin);
  // Of the cell that is chosen.
  void SetThreshold(baseline::Alarm alarm, double steps);
  void ResetThreshold();
  void ChooseCell(baseline::CellPlace cell);
  void Show(const std::function<void(WorkbenchLook&)>& edit);

  // Bands as they are replayed, for the alarm editor.
  [[nodiscard]] BandProposal Proposal() const;

 signals:
  void Changed();         // anything that is shown
  void ReadingChanged();  // begun, ended
  void Progressed(qint64 done, qint64 all);
  void TroubleChanged();

 private:
  struct Reading;
  void Take(const std::shared_ptr<Reading>& reading);
  void Fail(const QString& trouble);
  void Finish();
  [[nodiscard]] baseline::Bands BandsFor(const baseline::Settings& settings) const;
  void FollowTable();

  archive::Place place_;
  WorkbenchChoice choice_;
  BandTable table_;
  std::optional<baseline::Workbench> bench_;
  std::shared_ptr<const baseline::Spectra> spectra_;
  std::shared_ptr<Reading> reading_;  // the latest
  bool isReading_ = false;
  QString trouble_;
  std::unique_ptr<archive::Worker> worker_;  // its thread ends before the rest goes
};

}  // namespace kestrel
