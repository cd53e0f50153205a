// The archive: every record that was kept, found again, amended, deleted and brought back.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "archive/filter.h"
#include "archive/kept_record.h"
#include "archive/remarks_change.h"
#include "database/database.h"

namespace kestrel::archive {

// What the size limit has removed.
struct Pruned {
  std::int64_t count = 0;
  std::chrono::system_clock::time_point oldest;
  std::chrono::system_clock::time_point newest;
  bool isEnough = true;  // false where what is left may not be removed and is still too much
  bool operator==(const Pruned&) const = default;
};

// One database's records, whatever database it is. It belongs to one thread. Every call throws
// DatabaseError; what it was to change is then as it was before.
class Archive {
 public:
  // Makes or brings up to date the tables of a database that may be written.
  explicit Archive(std::unique_ptr<database::Database> database);
  // One that is only read, of this version or an earlier one: throws where it is another.
  static Archive ForReading(std::unique_ptr<database::Database> database);

  // The same of one that is damaged, as far as anything of it can be read.
  static Archive ForRescue(std::unique_ptr<database::Database> database);

  // The record is on the disk when this returns its id. One that is kept already (the same uid)
  // gets what is known of it now; its remarks stay.
  std::int64_t Keep(const NewRecord& record);
  // All or none.
  void KeepAll(std::span<const NewRecord> records);

  // Ids, the latest first.
  [[nodiscard]] std::vector<std::int64_t> Find(const Filter& filter);
  // When those were taken, in any order.
  [[nodiscard]] std::vector<std::chrono::system_clock::time_point> Times(const Filter& filter);
  // Without their points, in the order of the ids; ids that are not there are left out.
  [[nodiscard]] std::vector<KeptRecord> List(std::span<const std::int64_t> ids);
  // With its points; nothing where there is no such id.
  [[nodiscard]] std::optional<KeptRecord> Get(std::int64_t id);
  // The same where nothing can be read of its sensor, program and bench: these are empty.
  [[nodiscard]] std::optional<KeptRecord> GetWithoutSource(std::int64_t id);
  [[nodiscard]] std::int64_t Count();

  void SetRemarks(std::int64_t id, const Remarks& remarks);
  // All or none; returns what they were, without records that are not there.
  std::vector<std::pair<std::int64_t, Remarks>> ChangeRemarks(
      std::span<const std::pair<std::int64_t, RemarksChange>> changes);
  // Machines and points told so far, for choosing among them; sorted.
  [[nodiscard]] std::vector<std::string> Machines();
  [[nodiscard]] std::vector<std::string> Points(const std::string& machine);

  // Deleted records are found by asking for them only, and can be brought back until Purge.
  void Delete(std::span<const std::int64_t> ids, std::chrono::system_clock::time_point now);
  void BringBack(std::span<const std::int64_t> ids);
  // Removes for good what was deleted before then.
  void Purge(std::chrono::system_clock::time_point before);
  void Remove(std::span<const std::int64_t> ids);
  // The same where the id is still that record's: the id of one that went is given again.
  void RemoveKnown(std::span<const std::pair<std::int64_t, Uid>> records);

  // Brings the archive down to `bytes`: the oldest records go first; those with a note, a tag or an
  // alarm stay.
  Pruned Prune(std::int64_t bytes);
  [[nodiscard]] std::int64_t Size() { return database_->Size(); }

  // What is damaged, a line each.
  [[nodiscard]] std::vector<std::string> Damage();

  [[nodiscard]] database::Database& Connection() { return *database_; }
  // Of its tables: earlier than the program's where it is only read.
  [[nodiscard]] std::int64_t Version() const { return version_; }

 private:
  Archive(std::unique_ptr<database::Database> database, std::int64_t version)
      : database_(std::move(database)), version_(version) {}

  void PutAll(std::span<const NewRecord> records, const std::function<void(std::int64_t id)>& put);
  std::int64_t Put(const NewRecord& record);
  std::int64_t Amend(const NewRecord& record);
  [[nodiscard]] std::int64_t SourceOf(const NewRecord& record);
  // With its points; `select` is of one row, by the id.
  [[nodiscard]] std::optional<KeptRecord> Whole(std::int64_t id, const std::string& select);
  void ForEach(std::span<const std::int64_t> ids, const std::string& sql,
               const database::Values& more = {});

  std::unique_ptr<database::Database> database_;
  std::int64_t version_;
  std::pair<database::Values, std::int64_t> lastSource_;  // with its id
};

}  // namespace kestrel::archive
