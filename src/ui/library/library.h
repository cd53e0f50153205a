// The archive as windows use it: they ask, and are told in their own thread.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QList>
#include <QMap>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "archive/filter.h"
#include "archive/place.h"
#include "archive/worker.h"
#include "study/measured.h"
#include "ui/library/library_row.h"

namespace kestrel {

using ArchiveId = std::int64_t;
using RemarksOf = std::vector<std::pair<ArchiveId, archive::Remarks>>;
using Sketches = std::vector<std::pair<ArchiveId, QList<double>>>;

// What the filters offer to choose among.
struct LibraryChoices {
  std::vector<std::string> machines;
  std::vector<std::string> points;  // of the machine that was asked for
  bool operator==(const LibraryChoices&) const = default;
};

// To be written where that is allowed, otherwise to be read. Throws DatabaseError.
[[nodiscard]] archive::Archive OpenAnyhow(const archive::Place& place);

// All reads and changes are done by a thread with a connection of its own. A database that may not
// be written is read.
class Library : public QObject {
  Q_OBJECT

 public:
  using Taken = std::function<void(std::vector<study::RecordPointer>)>;
  using Kept = std::vector<archive::KeptRecord>;
  using Deed = std::function<void(archive::Archive&)>;

  explicit Library(archive::Place place, QObject* parent = nullptr);
  ~Library() override;
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  [[nodiscard]] const archive::Place& Place() const { return place_; }
  // What stands in the way, with the cure; empty while all is well.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

  // Each asks anew: what was asked before and is not answered yet is dropped.
  void Find(const archive::Filter& filter);
  // Of the filter without its days.
  void AskDays(archive::Filter filter);
  void AskChoices(const std::string& machine);
  // Rows of these ids.
  void Fetch(std::vector<ArchiveId> ids);
  void Sketch(std::vector<ArchiveId> ids);

  // With their points, in the order of the ids; those that are gone are left out.
  void Load(std::vector<ArchiveId> ids, Taken taken);

  // With all that is kept of them, in the order of the ids; likewise.
  void LoadKept(std::vector<ArchiveId> ids, std::function<void(Kept)> taken);
  // The same of records at hand; one that the archive does not have comes back with nothing beside
  // it.
  void Recognise(std::vector<study::RecordPointer> records, std::function<void(Kept)> taken);

  // Anything else that takes its time; what `work` returns is done in this thread. What was asked
  // so before, and Find, is dropped.
  using Work = std::function<std::function<void()>(archive::Archive&)>;
  void Read(Work work);
  void CancelRead() { worker_->Cancel(Rank::Find); }

  // `before` is filled with what they were, by the worker; taking back reads it there.
  void ChangeRemarks(const std::vector<ArchiveId>& ids, const archive::RemarksChange& change,
                     const std::shared_ptr<RemarksOf>& before);
  void TakeBack(const archive::RemarksChange& change, const std::shared_ptr<RemarksOf>& before);
  void Delete(const std::vector<ArchiveId>& ids);
  void BringBack(const std::vector<ArchiveId>& ids);

 signals:
  void Found(const std::vector<kestrel::ArchiveId>& ids, qint64 all);
  void ChoicesTold(const kestrel::LibraryChoices& choices);
  void DaysTold(const QMap<QDate, int>& counts);  // of local days with records
  void Listed(const std::vector<kestrel::LibraryRow>& rows);
  void Sketched(const kestrel::Sketches& sketches);
  void Changed();  // by this window: ask anew
  void TroubleChanged();
  void Failed();  // something was not answered; Trouble() says why

 private:
  using Rank = archive::Worker::Rank;

  // `told` is called in this object's thread with what `asked` came to in the worker's.
  template <typename Answer>
  void Ask(Rank rank, std::function<Answer(archive::Archive&)> asked,
           std::function<void(Answer)> told);
  void Change(Deed deed);
  void SetTrouble(const QString& trouble);
  void Purge();

  archive::Place place_;
  QString trouble_;
  LibraryChoices choices_;          // as last told
  std::vector<ArchiveId> deleted_;  // by this window, and not brought back
  std::unique_ptr<archive::Worker> worker_;
};

}  // namespace kestrel
