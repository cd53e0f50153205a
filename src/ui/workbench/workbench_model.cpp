// How the workbench reads its records and follows the alarm editor's table.
// SPDX-License-Identifier: MIT
#include "ui/workbench/workbench_model.h"

#include <algorithm>
#include <utility>

#include "archive/archive.h"
#include "ui/library/library.h"

namespace kestrel {

using archive::Worker;
using baseline::Alarm;
using baseline::Bands;
using baseline::CellPlace;

// One reading, from the question to its answer.
struct WorkbenchModel::Reading {
  std::vector<baseline::Part> parts;
  baseline::Wanted wanted;
  std::atomic<bool> isCancelled = false;
  baseline::Loaded loaded;
};

namespace {

bool IsEmpty(const Bands& bands) {
  return std::ranges::none_of(bands, [](const baseline::Band& band) { return band.IsUsed(); });
}

}  // namespace

WorkbenchModel::WorkbenchModel(archive::Place place, QObject* parent)
    : QObject(parent), place_(std::move(place)) {
  if (place_.text.empty()) return;
  worker_ = std::make_unique<Worker>([where = place_] { return OpenAnyhow(where); });
}

WorkbenchModel::~WorkbenchModel() {
  if (reading_) reading_->isCancelled = true;
}

void WorkbenchModel::SetChoice(const WorkbenchChoice& choice) {
  choice_ = choice;
  Read();
}

void WorkbenchModel::AddPart(baseline::Part part) {
  choice_.parts.push_back(std::move(part));
  Read();
}

void WorkbenchModel::RemovePart(std::size_t part) {
  if (part >= choice_.parts.size()) return;
  choice_.parts.erase(choice_.parts.begin() + static_cast<std::ptrdiff_t>(part));
  Read();
}

void WorkbenchModel::SetOption(std::optional<int> option) {
  if (option == choice_.option) return;
  choice_.option = option;
  Read();
}

void WorkbenchModel::Read() {
  if (reading_) reading_->isCancelled = true;
  if (worker_) worker_->Cancel(Worker::Rank::Load);
  reading_.reset();
  if (!worker_ || choice_.parts.empty()) {
    bench_.reset();
    Finish();
    return;
  }
  auto reading = std::make_shared<Reading>();
  reading->parts = choice_.parts;
  reading->wanted.option = choice_.option;
  reading_ = reading;
  isReading_ = true;
  emit ReadingChanged();
  emit Changed();
  // In this thread, and only of the latest reading.
  const auto tell = [this, reading](std::function<void()> deed) {
    QMetaObject::invokeMethod(
        this,
        [this, reading, deed = std::move(deed)] {
          if (reading == reading_) deed();
        },
        Qt::QueuedConnection);
  };
  const auto goOn = [this, reading, tell](std::size_t done, std::size_t all) {
    tell([this, done, all] {
      emit Progressed(static_cast<qint64>(done), static_cast<qint64>(all));
    });
    return !reading->isCancelled;
  };
  worker_->Do({Worker::Rank::Load,
               [this, reading, tell, goOn](archive::Archive& archive) {
                 baseline::Sets sets = SetsOf(archive, reading->parts, reading->wanted);
                 reading->loaded = Load(archive, std::move(sets), goOn);
                 tell([this, reading] { Take(reading); });
               },
               [this, tell](const database::DatabaseError& error) {
                 const std::string text = archive::Trouble(place_, error);
                 tell([this, text] { Fail(QString::fromStdString(text)); });
               }});
}

void WorkbenchModel::Cancel() {
  if (!isReading_) return;
  if (reading_) reading_->isCancelled = true;
  worker_->Cancel(Worker::Rank::Load);
  reading_.reset();
  Finish();
}

void WorkbenchModel::Take(const std::shared_ptr<Reading>& reading) {
  if (!reading->loaded.whole) {
    Finish();
    return;
  }
  baseline::Sets& sets = reading->loaded.sets;
  spectra_ = std::make_shared<const baseline::Spectra>(std::move(reading->loaded.spectra));
  const Bands bands = BandsFor(sets.settings);
  bench_.emplace(std::move(sets), spectra_, bands, baseline::LevelKind::BandPeak, choice_.rule,
                 choice_.judgement);
  reading_.reset();
  trouble_.clear();
  emit TroubleChanged();
  Finish();
}

void WorkbenchModel::Fail(const QString& trouble) {
  trouble_ = trouble;
  reading_.reset();
  bench_.reset();
  emit TroubleChanged();
  Finish();
}

void WorkbenchModel::Finish() {
  isReading_ = false;
  emit ReadingChanged();
  emit Changed();
}

Bands WorkbenchModel::BandsFor(const baseline::Settings& settings) const {
  const Bands bands = baseline::BandsOf(table_, settings.option);
  return IsEmpty(bands) ? baseline::UsualBands(settings.window) : bands;
}

void WorkbenchModel::SetTable(const BandTable& table) {
  if (table == table_) return;
  table_ = table;
  if (!bench_) return;
  FollowTable();
  emit Changed();
}

// What the user moved stays; what he left alone follows the table.
void WorkbenchModel::FollowTable() {
  const baseline::Workbench before = *std::exchange(bench_, {});
  const Bands bands = BandsFor(before.TheSets().settings);
  bench_.emplace(before.TheSets(), spectra_, bands, before.Kind(), before.TheRule(),
                 before.TheJudgement());
  for (int band = 1; band <= kAlarmBands; ++band) {
    const baseline::Band& edges = before.BandAt(band);
    const baseline::Band& present = before.Present()[static_cast<std::size_t>(band - 1)];
    const bool isMoved = edges.lowBin != present.lowBin || edges.highBin != present.highBin;
    if (isMoved) bench_->SetEdges(band, edges.lowBin, edges.highBin);
  }
  for (const CellPlace& cell : baseline::AllCells()) {
    const baseline::CellState& state = before.At(cell);
    if (!state.isMoved) continue;
    bench_->SetThreshold(cell, Alarm::Warning, state.warning);
    bench_->SetThreshold(cell, Alarm::Fault, state.fault);
  }
}

bool WorkbenchModel::KnowsBands() const {
  return bench_ && !IsEmpty(baseline::BandsOf(table_, bench_->TheSets().settings.option));
}

void WorkbenchModel::SetRule(const baseline::Rule& rule) {
  if (rule == choice_.rule) return;
  choice_.rule = rule;
  if (bench_) bench_->SetRule(rule);
  emit Changed();
}

void WorkbenchModel::SetJudgement(const baseline::Judgement& judgement) {
  if (judgement == choice_.judgement) return;
  choice_.judgement = judgement;
  if (bench_) bench_->SetJudgement(judgement);
  emit Changed();
}

void WorkbenchModel::SetEdges(int band, int lowBin, int highBin) {
  if (!bench_) return;
  const baseline::Band& now = bench_->BandAt(band);
  if (now.lowBin == lowBin && now.highBin == highBin) return;
  bench_->SetEdges(band, lowBin, highBin);
  emit Changed();
}

void WorkbenchModel::SetThreshold(Alarm alarm, double steps) {
  if (!HasGood()) return;
  bench_->SetThreshold(choice_.cell, alarm, steps);
  emit Changed();
}

void WorkbenchModel::ResetThreshold() {
  if (!HasGood()) return;
  bench_->ResetThreshold(choice_.cell);
  emit Changed();
}

void WorkbenchModel::ChooseCell(CellPlace cell) {
  if (cell == choice_.cell) return;
  choice_.cell = cell;
  emit Changed();
}

void WorkbenchModel::Show(const std::function<void(WorkbenchLook&)>& edit) {
  const WorkbenchLook before = choice_.look;
  edit(choice_.look);
  if (choice_.look != before) emit Changed();
}

BandProposal WorkbenchModel::Proposal() const {
  const baseline::Settings& settings = bench_->TheSets().settings;
  BandProposal proposal{.what = "bands of the workbench",
                        .option = settings.option,
                        .range = settings.range + 1,
                        .values = {}};
  const BandTable table = WithBands(table_, settings.option, bench_->Result());
  for (int band = 1; band <= kAlarmBands; ++band) {
    for (const int field : kBandFields) {
      const BandPlace place{field, band, settings.option};
      proposal.values.push_back({place, ValueAt(table, place)});
    }
  }
  return proposal;
}

}  // namespace kestrel
