// How the archive's worker is asked and answers.
// SPDX-License-Identifier: MIT
#include "ui/library/library.h"

#include <QDateTime>
#include <algorithm>
#include <set>
#include <utility>

#include "ui/study/sketch.h"

namespace kestrel {
namespace {

using archive::Archive;
using database::DatabaseError;
using database::Fault;

// What another window, or one that was ended hard, deleted stays to be brought back that long.
constexpr std::chrono::hours kDeletedStay{24};

archive::KeptRecord Recognised(Archive& archive, const Record& record) {
  const auto after = record.time + std::chrono::system_clock::duration(1);
  for (const ArchiveId id : archive.Find({.from = record.time, .until = after})) {
    auto kept = archive.Get(id);
    if (kept && study::IsSameCapture(kept->record, record)) return *std::move(kept);
  }
  archive::KeptRecord bare;
  bare.record = record;
  return bare;
}

}  // namespace

Archive OpenAnyhow(const archive::Place& place) {
  try {
    return archive::Open(place);
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Forbidden || place.IsServer()) throw;
    return archive::Open(place, database::Access::ReadOnly);
  }
}

Library::Library(archive::Place place, QObject* parent)
    : QObject(parent),
      place_(std::move(place)),
      worker_(std::make_unique<archive::Worker>([where = place_] { return OpenAnyhow(where); })) {}

// The worker makes the changes that wait before it ends.
Library::~Library() {
  Purge();
}

template <typename Answer>
void Library::Ask(Rank rank, std::function<Answer(Archive&)> asked,
                  std::function<void(Answer)> told) {
  const auto work = [this, asked = std::move(asked), told = std::move(told)](Archive& archive) {
    try {
      auto answer = std::make_shared<Answer>(asked(archive));
      QMetaObject::invokeMethod(
          this,
          [this, told, answer] {
            SetTrouble({});
            told(std::move(*answer));
          },
          Qt::QueuedConnection);
    } catch (const DatabaseError& error) {
      throw DatabaseError(error.fault, archive::Trouble(place_, error));
    }
  };
  worker_->Do({rank, work, [this](const DatabaseError& error) {
                 QMetaObject::invokeMethod(
                     this,
                     [this, text = QString::fromStdString(error.what())] {
                       SetTrouble(text);
                       emit Failed();
                     },
                     Qt::QueuedConnection);
               }});
}

void Library::SetTrouble(const QString& trouble) {
  if (trouble_ == trouble) return;
  trouble_ = trouble;
  emit TroubleChanged();
}

void Library::Find(const archive::Filter& filter) {
  using Answer = std::pair<std::vector<ArchiveId>, std::int64_t>;
  worker_->Cancel(Rank::Find);
  Ask<Answer>(
      Rank::Find,
      [filter](Archive& archive) {
        return Answer{archive.Find(filter), archive.Count()};
      },
      [this](Answer answer) { emit Found(answer.first, answer.second); });
}

void Library::AskChoices(const std::string& machine) {
  Ask<LibraryChoices>(
      Rank::Rows,
      [machine](Archive& archive) {
        return LibraryChoices{archive.Machines(), archive.Points(machine)};
      },
      [this](LibraryChoices choices) {
        if (choices == choices_) return;
        choices_ = std::move(choices);
        emit ChoicesTold(choices_);
      });
}

void Library::AskDays(archive::Filter filter) {
  filter.from.reset();
  filter.until.reset();
  Ask<QMap<QDate, int>>(
      Rank::Load,
      [filter](Archive& archive) {
        QMap<QDate, int> counts;
        for (const auto time : archive.Times(filter)) {
          const auto ms =
              std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
          ++counts[QDateTime::fromMSecsSinceEpoch(ms.count()).date()];
        }
        return counts;
      },
      [this](QMap<QDate, int> counts) { emit DaysTold(counts); });
}

void Library::Fetch(std::vector<ArchiveId> ids) {
  Ask<std::vector<LibraryRow>>(
      Rank::Rows,
      [ids = std::move(ids)](Archive& archive) {
        std::vector<LibraryRow> rows;
        for (const archive::KeptRecord& record : archive.List(ids)) rows.push_back(RowOf(record));
        return rows;
      },
      [this](const std::vector<LibraryRow>& rows) { emit Listed(rows); });
}

void Library::Sketch(std::vector<ArchiveId> ids) {
  Ask<Sketches>(
      Rank::Pictures,
      [ids = std::move(ids)](Archive& archive) {
        Sketches sketches;
        for (const ArchiveId id : ids) {
          const auto record = archive.Get(id);
          if (record) sketches.emplace_back(id, SketchOf(record->record));
        }
        return sketches;
      },
      [this](const Sketches& sketches) { emit Sketched(sketches); });
}

void Library::Load(std::vector<ArchiveId> ids, Taken taken) {
  using Answer = std::vector<study::RecordPointer>;
  Ask<Answer>(
      Rank::Load,
      [ids = std::move(ids)](Archive& archive) {
        Answer records;
        for (const ArchiveId id : ids) {
          auto record = archive.Get(id);
          if (record) records.push_back(std::make_shared<const Record>(std::move(record->record)));
        }
        return records;
      },
      std::move(taken));
}

void Library::LoadKept(std::vector<ArchiveId> ids, std::function<void(Kept)> taken) {
  Ask<Kept>(
      Rank::Load,
      [ids = std::move(ids)](Archive& archive) {
        Kept records;
        for (const ArchiveId id : ids) {
          if (auto record = archive.Get(id)) records.push_back(*std::move(record));
        }
        return records;
      },
      std::move(taken));
}

void Library::Recognise(std::vector<study::RecordPointer> records,
                        std::function<void(Kept)> taken) {
  Ask<Kept>(
      Rank::Load,
      [records = std::move(records)](Archive& archive) {
        Kept kept;
        for (const auto& record : records) kept.push_back(Recognised(archive, *record));
        return kept;
      },
      std::move(taken));
}

void Library::Read(Work work) {
  CancelRead();
  Ask<std::function<void()>>(Rank::Find, std::move(work), [](const std::function<void()>& deed) {
    if (deed) deed();
  });
}

void Library::Change(Deed deed) {
  Ask<bool>(
      Rank::Change,
      [deed = std::move(deed)](Archive& archive) {
        deed(archive);
        return true;
      },
      [this](bool) { emit Changed(); });
}

void Library::ChangeRemarks(const std::vector<ArchiveId>& ids, const archive::RemarksChange& change,
                            const std::shared_ptr<RemarksOf>& before) {
  Change([ids, change, before](Archive& archive) {
    std::vector<std::pair<ArchiveId, archive::RemarksChange>> changes;
    for (const ArchiveId id : ids) changes.emplace_back(id, change);
    *before = archive.ChangeRemarks(changes);
  });
}

void Library::TakeBack(const archive::RemarksChange& change,
                       const std::shared_ptr<RemarksOf>& before) {
  Change([change, before](Archive& archive) {
    std::vector<std::pair<ArchiveId, archive::RemarksChange>> changes;
    for (const auto& [id, was] : *before) changes.emplace_back(id, change.BackTo(was));
    archive.ChangeRemarks(changes);
  });
}

void Library::Delete(const std::vector<ArchiveId>& ids) {
  deleted_.insert(deleted_.end(), ids.begin(), ids.end());
  Change([ids](Archive& archive) { archive.Delete(ids, std::chrono::system_clock::now()); });
}

void Library::BringBack(const std::vector<ArchiveId>& ids) {
  const std::set<ArchiveId> back(ids.begin(), ids.end());
  std::erase_if(deleted_, [&](ArchiveId id) { return back.contains(id); });
  Change([ids](Archive& archive) { archive.BringBack(ids); });
}

// What this window deleted goes for good, unless somebody else has brought it back.
void Library::Purge() {
  if (deleted_.empty()) return;
  worker_->Do({Rank::Change,
               [ids = deleted_](Archive& archive) {
                 const auto there = archive.Find({.deleted = true});
                 const std::set<ArchiveId> deleted(there.begin(), there.end());
                 std::vector<ArchiveId> gone;
                 for (const ArchiveId id : ids) {
                   if (deleted.contains(id)) gone.push_back(id);
                 }
                 archive.Remove(gone);
                 archive.Purge(std::chrono::system_clock::now() - kDeletedStay);
               },
               [](const DatabaseError&) {}});
}

}  // namespace kestrel
