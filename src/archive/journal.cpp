// The statements of the journal.
// SPDX-License-Identifier: MIT
#include "archive/journal.h"

#include "archive/record_row.h"

namespace kestrel::archive {
namespace {

using database::Bytes;
using database::DatabaseError;
using database::Fault;
using database::Row;
using database::Value;
using database::Values;

constexpr std::int64_t kFirstVersion = 3;  // of the archive that has a journal

constexpr const char* kSelect =
    "select uid, bench, sensor, kind, began, ended, missed, text from journal where ";

Value Moment(const std::optional<std::chrono::system_clock::time_point>& time) {
  return time ? Value{Nanoseconds(*time)} : Value{};
}

void RefuseNul(const JournalEntry& entry) {
  for (const std::string* text : {&entry.bench, &entry.sensor, &entry.kind, &entry.text}) {
    if (text->find('\0') != std::string::npos) {
      throw DatabaseError(Fault::Constraint, "the journal takes no text with a NUL");
    }
  }
}

JournalEntry EntryFrom(Row row) {
  JournalEntry entry;
  entry.uid = UidFromCell(row[0]);
  entry.bench = database::Text(row[1]);
  entry.sensor = database::Text(row[2]);
  entry.kind = database::Text(row[3]);
  entry.began = TimeOf(database::Integer(row[4]));
  if (!database::IsNull(row[5])) entry.ended = TimeOf(database::Integer(row[5]));
  entry.missed = database::Integer(row[6]);
  entry.text = database::Text(row[7]);
  return entry;
}

}  // namespace

void PutEntries(Archive& archive, std::span<const JournalEntry> entries) {
  database::Database& database = archive.Connection();
  database::Transaction all(database);
  for (const JournalEntry& entry : entries) {
    RefuseNul(entry);
    database.Run(
        "insert into journal(uid, bench, sensor, kind, began, ended, missed, text) values($1, $2, "
        "$3, $4, $5, $6, $7, $8) on conflict(uid) do update set began = excluded.began, ended = "
        "excluded.ended, missed = excluded.missed, text = excluded.text",
        {Bytes(entry.uid.begin(), entry.uid.end()), entry.bench, entry.sensor, entry.kind,
         Nanoseconds(entry.began), Moment(entry.ended), entry.missed, entry.text});
  }
  all.Commit();
}

std::vector<JournalEntry> EntriesOf(Archive& archive, const JournalFilter& filter,
                                    std::int64_t most) {
  std::vector<JournalEntry> entries;
  if (archive.Version() < kFirstVersion) return entries;
  std::string sql = std::string(kSelect) + "1 = 1";
  Values values;
  const auto ask = [&](const std::string& condition, Value value) {
    values.push_back(std::move(value));
    sql += " and " + condition + " $" + std::to_string(values.size());
  };
  if (filter.from) ask("coalesce(ended, 9223372036854775807) >=", Nanoseconds(*filter.from));
  if (filter.until) ask("began <", Nanoseconds(*filter.until));
  if (!filter.bench.empty()) ask("bench =", filter.bench);
  if (!filter.sensor.empty()) ask("sensor =", filter.sensor);
  if (!filter.kind.empty()) ask("kind =", filter.kind);
  if (filter.open) sql += " and ended is null";
  sql += " order by began desc, uid";
  if (most > 0) sql += " limit " + std::to_string(most);
  archive.Connection().Run(sql, values, [&](Row row) { entries.push_back(EntryFrom(row)); });
  return entries;
}

std::optional<JournalEntry> EntryInRow(Archive& archive, std::int64_t row) {
  std::optional<JournalEntry> entry;
  archive.Connection().Run(std::string(kSelect) + "rowid = $1", {row},
                           [&](Row cells) { entry = EntryFrom(cells); });
  return entry;
}

}  // namespace kestrel::archive
