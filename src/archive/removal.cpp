// How records leave the archive: deleted and brought back, purged, removed, pruned to a size.
// SPDX-License-Identifier: MIT
#include "archive/archive.h"
#include "archive/record_row.h"

namespace kestrel::archive {
namespace {

using database::Row;
using database::Transaction;
using database::Values;

constexpr std::int64_t kPrunedAtOnce = 64;

}  // namespace

void Archive::Delete(std::span<const std::int64_t> ids, std::chrono::system_clock::time_point now) {
  ForEach(ids, "update record set deleted = $2 where id = $1 and deleted is null",
          {Nanoseconds(now)});
}

void Archive::BringBack(std::span<const std::int64_t> ids) {
  ForEach(ids, "update record set deleted = null where id = $1");
}

void Archive::Purge(std::chrono::system_clock::time_point before) {
  Transaction transaction(*database_);
  database_->Run("delete from points where record in (select id from record where deleted < $1)",
                 {Nanoseconds(before)});
  database_->Run("delete from record where deleted < $1", {Nanoseconds(before)});
  transaction.Commit();
}

void Archive::Remove(std::span<const std::int64_t> ids) {
  ForEach(ids, "delete from record where id = $1");
}

void Archive::RemoveKnown(std::span<const std::pair<std::int64_t, Uid>> records) {
  Transaction transaction(*database_);
  for (const auto& [id, uid] : records) {
    database_->Run("delete from record where id = $1 and uid = $2",
                   {id, database::Bytes(uid.begin(), uid.end())});
  }
  transaction.Commit();
}

void Archive::ForEach(std::span<const std::int64_t> ids, const std::string& sql,
                      const Values& more) {
  Transaction transaction(*database_);
  for (const std::int64_t id : ids) {
    Values values{id};
    values.insert(values.end(), more.begin(), more.end());
    database_->Run(sql, values);
  }
  transaction.Commit();
}

Pruned Archive::Prune(std::int64_t bytes) {
  Pruned pruned;
  while (database_->Size() > bytes) {
    std::vector<std::int64_t> ids;
    database_->Run(
        "select id, taken from record where note = '' and tags = '' and alarm_x = 0 and alarm_y = "
        "0 "
        "and alarm_z = 0 order by taken limit $1",
        {kPrunedAtOnce}, [&](Row row) {
          if (pruned.count == 0 && ids.empty()) pruned.oldest = TimeOf(database::Integer(row[1]));
          pruned.newest = TimeOf(database::Integer(row[1]));
          ids.push_back(database::Integer(row[0]));
        });
    if (ids.empty()) {
      pruned.isEnough = false;
      break;
    }
    Remove(ids);
    pruned.count += static_cast<std::int64_t>(ids.size());
  }
  return pruned;
}

}  // namespace kestrel::archive
