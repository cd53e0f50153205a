// The statements of a monitor's own file.
// SPDX-License-Identifier: MIT
#include "monitor/local_store.h"

#include "archive/record_row.h"

namespace kestrel::monitor {
namespace {

using database::Bytes;
using database::Row;
using database::Transaction;
using database::Value;

Value Moment(const std::optional<std::chrono::system_clock::time_point>& time) {
  return time ? Value{archive::Nanoseconds(*time)} : Value{};
}

Bytes BytesOf(const archive::Uid& uid) {
  return {uid.begin(), uid.end()};
}

LocalStore::Waiting EntryFrom(Row row) {
  LocalStore::Waiting waiting;
  archive::JournalEntry& entry = waiting.entry;
  entry.uid = archive::UidFromCell(row[0]);
  entry.bench = database::Text(row[1]);
  entry.sensor = database::Text(row[2]);
  entry.kind = database::Text(row[3]);
  entry.began = archive::TimeOf(database::Integer(row[4]));
  if (!database::IsNull(row[5])) entry.ended = archive::TimeOf(database::Integer(row[5]));
  entry.missed = database::Integer(row[6]);
  entry.text = database::Text(row[7]);
  waiting.revision = database::Integer(row[8]);
  return waiting;
}

}  // namespace

LocalStore::LocalStore(std::unique_ptr<database::Database> database)
    : database_(std::move(database)) {
  if (database_->HasTable("entry")) return;
  Transaction all(*database_);
  database_->Run(
      "create table entry(uid blob primary key, bench text not null, sensor text not null, kind "
      "text not null, began bigint not null, ended bigint, missed bigint not null, text text not "
      "null, revision bigint not null, brought bigint not null)");
  database_->Run("create table state(name text primary key, value text not null)");
  all.Commit();
}

void LocalStore::Save(const std::vector<archive::JournalEntry>& entries, const Texts& texts) {
  Transaction all(*database_);
  for (const archive::JournalEntry& entry : entries) {
    database_->Run(
        "insert into entry values($1, $2, $3, $4, $5, $6, $7, $8, 1, 0) on conflict(uid) do update "
        "set began = excluded.began, ended = excluded.ended, missed = excluded.missed, text = "
        "excluded.text, revision = revision + 1",
        {BytesOf(entry.uid), entry.bench, entry.sensor, entry.kind,
         archive::Nanoseconds(entry.began), Moment(entry.ended), entry.missed, entry.text});
  }
  for (const auto& [name, value] : texts) {
    database_->Run(
        "insert into state values($1, $2) on conflict(name) do update set value = excluded.value",
        {name, value});
  }
  all.Commit();
}

LocalStore::Texts LocalStore::AllTexts() {
  Texts texts;
  database_->Run("select name, value from state", {},
                 [&](Row row) { texts[database::Text(row[0])] = database::Text(row[1]); });
  return texts;
}

std::vector<LocalStore::Waiting> LocalStore::Entries(const std::string& rest) {
  std::vector<Waiting> entries;
  database_->Run(
      "select uid, bench, sensor, kind, began, ended, missed, text, revision from entry " + rest,
      {}, [&](Row row) { entries.push_back(EntryFrom(row)); });
  return entries;
}

std::vector<archive::JournalEntry> LocalStore::Open() {
  std::vector<archive::JournalEntry> open;
  for (Waiting& waiting : Entries("where ended is null order by began")) {
    open.push_back(std::move(waiting.entry));
  }
  return open;
}

std::vector<LocalStore::Waiting> LocalStore::NotBrought(std::int64_t most) {
  return Entries("where revision <> brought order by rowid limit " + std::to_string(most));
}

void LocalStore::Brought(const std::vector<Waiting>& entries) {
  Transaction all(*database_);
  for (const Waiting& waiting : entries) {
    const Bytes uid = BytesOf(waiting.entry.uid);
    database_->Run("update entry set brought = $2 where uid = $1", {uid, waiting.revision});
    database_->Run("delete from entry where uid = $1 and ended is not null and revision = brought",
                   {uid});
  }
  all.Commit();
}

}  // namespace kestrel::monitor
