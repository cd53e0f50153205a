// How wide spectra are read from the archive and made of captures.
// SPDX-License-Identifier: MIT
#include "ui/wide/wide_model.h"

#include <algorithm>
#include <map>
#include <utility>

#include "archive/wide_sets.h"
#include "ui/library/library.h"

namespace kestrel {
namespace {

unsigned BitOf(const Record& record) {
  return 1U << static_cast<unsigned>(std::clamp<int>(record.settings.option, 0, 3));
}

// The latest first.
std::vector<WideRow> RowsOf(archive::Archive& archive) {
  std::vector<WideRow> rows;
  std::map<archive::Uid, std::size_t> places;
  for (const archive::KeptRecord& kept : archive.List(archive.Find({.wide = true}))) {
    if (!kept.wide) continue;
    const auto [place, isNew] = places.try_emplace(kept.wide->set, rows.size());
    if (isNew) {
      rows.push_back({.uid = kept.wide->set,
                      .taken = kept.record.time,
                      .averages = kept.record.settings.averages,
                      .machine = kept.remarks.machine});
    }
    WideRow& row = rows[place->second];
    row.taken = std::min(row.taken, kept.record.time);
    row.options |= BitOf(kept.record);
  }
  return rows;
}

}  // namespace

WideModel::WideModel(archive::Place place, QObject* parent)
    : QObject(parent), place_(std::move(place)) {
  if (place_.text.empty()) return;
  worker_ = std::make_unique<archive::Worker>([where = place_] { return OpenAnyhow(where); });
}

WideModel::~WideModel() = default;

std::optional<std::size_t> WideModel::Shown() const {
  if (!shown_) return std::nullopt;
  const auto row = std::ranges::find(rows_, *shown_, &WideRow::uid);
  if (row == rows_.end()) return std::nullopt;
  return static_cast<std::size_t>(row - rows_.begin());
}

void WideModel::Show(std::vector<Record> records, unsigned wanted) {
  wanted_ = wanted;
  wide_ = analysis::WideOf(std::move(records), {.wanted = wanted});
  emit Changed();
}

void WideModel::Begin(unsigned wanted, bool keepsOthers) {
  std::vector<Record> others = keepsOthers ? wide_.records : std::vector<Record>();
  std::erase_if(others, [=](const Record& record) { return (BitOf(record) & wanted) != 0; });
  for (const Record& record : others) wanted |= BitOf(record);
  shown_.reset();
  asked_.reset();
  emit RowsChanged();
  Show(std::move(others), wanted);
}

void WideModel::Take(const Record& record) {
  std::vector<Record> records = wide_.records;
  std::erase_if(records, [&](const Record& each) { return BitOf(each) == BitOf(record); });
  records.push_back(record);
  Show(std::move(records), wanted_);
}

// In this thread.
void WideModel::Tell(std::function<void()> deed) {
  QMetaObject::invokeMethod(this, std::move(deed), Qt::QueuedConnection);
}

void WideModel::SetTrouble(const QString& trouble) {
  if (trouble == trouble_) return;
  trouble_ = trouble;
  emit TroubleChanged();
}

void WideModel::Do(archive::Worker::Rank rank, std::function<void(archive::Archive&)> work) {
  if (!worker_) return;
  worker_->Cancel(rank);
  worker_->Do({rank, std::move(work), [this](const database::DatabaseError& error) {
                 const QString text = QString::fromStdString(archive::Trouble(place_, error));
                 Tell([this, text] { SetTrouble(text); });
               }});
}

void WideModel::Read() {
  Do(archive::Worker::Rank::Find, [this](archive::Archive& archive) {
    Tell([this, rows = RowsOf(archive)] {
      SetTrouble({});
      rows_ = rows;
      emit RowsChanged();
    });
  });
}

void WideModel::Open(const archive::Uid& uid) {
  asked_ = uid;
  Do(archive::Worker::Rank::Load, [this, uid](archive::Archive& archive) {
    Tell([this, uid, set = GetWideSet(archive, uid)] {
      if (asked_ != uid) return;
      asked_.reset();
      if (!set || set->records.empty()) {
        return SetTrouble(tr("This wide spectrum is no longer in the archive."));
      }
      SetTrouble({});
      std::vector<Record> records;
      for (const archive::KeptRecord& kept : set->records) records.push_back(kept.record);
      shown_ = uid;
      emit RowsChanged();
      Show(std::move(records), set->wanted);
    });
  });
}

}  // namespace kestrel
