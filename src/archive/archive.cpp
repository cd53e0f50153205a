// The statements of the archive.
// SPDX-License-Identifier: MIT
#include "archive/archive.h"

#include <utility>

#include "archive/packed_words.h"
#include "archive/record_row.h"
#include "archive/schema.h"

namespace kestrel::archive {
namespace {

using database::Database;
using database::DatabaseError;
using database::Fault;
using database::Row;
using database::Transaction;
using database::Value;
using database::Values;

constexpr const char* kFromBoth = " from record r join source s on s.id = r.source ";

// "a = $2, b = $3" for "a, b": values from a number on.
std::string Assignments(const std::string& columns, int first) {
  std::string text;
  for (std::size_t from = 0; from < columns.size();) {
    const std::size_t end = std::min(columns.find(", ", from), columns.size());
    text += (text.empty() ? "" : ", ") + columns.substr(from, end - from) + " = $" +
            std::to_string(first++);
    from = end + 2;
  }
  return text;
}

std::string Places(std::size_t count) {
  std::string text;
  for (std::size_t i = 1; i <= count; ++i) text += (i == 1 ? "$" : ", $") + std::to_string(i);
  return text;
}

std::vector<std::string> Texts(Database& database, const std::string& sql, const Values& values) {
  std::vector<std::string> texts;
  database.Run(sql, values, [&](Row row) { texts.push_back(database::Text(row[0])); });
  return texts;
}

// What a text was while the server refuses a NUL in it.
void RefuseNul(const Remarks& remarks) {
  for (const std::string* text :
       {&remarks.machine, &remarks.point, &remarks.orientation, &remarks.note}) {
    if (text->find('\0') != std::string::npos) {
      throw DatabaseError(Fault::Constraint, "a remark holds a NUL, which no text can have");
    }
  }
}

}  // namespace

Archive::Archive(std::unique_ptr<Database> database)
    : Archive(std::move(database), kSchemaVersion) {
  MakeCurrent(*database_);
}

Archive Archive::ForReading(std::unique_ptr<Database> database) {
  switch (ContentsOf(*database)) {
    case Contents::Archive:
    case Contents::Earlier: {
      const std::int64_t version = VersionOf(*database);
      return {std::move(database), version};
    }
    case Contents::Newer:
      throw DatabaseError(Fault::Other, "it was made by a later version of this program");
    default:
      throw DatabaseError(Fault::Other, "it is not an archive of this program");
  }
}

Archive Archive::ForRescue(std::unique_ptr<Database> database) {
  std::int64_t version = 0;
  try {
    version = VersionOf(*database);
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Corrupt) throw;
  }
  if (version > kSchemaVersion) return ForReading(std::move(database));  // which says why not
  if (version < 1) version = VersionByTables(*database);
  return {std::move(database), version};
}

std::int64_t Archive::Keep(const NewRecord& record) {
  std::int64_t id = 0;
  PutAll(std::span(&record, 1), [&](std::int64_t put) { id = put; });
  return id;
}

void Archive::KeepAll(std::span<const NewRecord> records) {
  PutAll(records, [](std::int64_t) {});
}

// A source that was made in a transaction is gone with it.
void Archive::PutAll(std::span<const NewRecord> records,
                     const std::function<void(std::int64_t id)>& put) {
  try {
    Transaction transaction(*database_);
    for (const NewRecord& record : records) put(Put(record));
    transaction.Commit();
  } catch (...) {
    lastSource_ = {};
    throw;
  }
}

std::int64_t Archive::Put(const NewRecord& record) {
  RefuseNul(record.remarks);
  const Values values = RecordValues(record, SourceOf(record));
  static const std::string kInsert = "insert into record(" + RecordColumns() + ") values(" +
                                     Places(values.size()) +
                                     ") on conflict(uid) do nothing returning id";
  const std::int64_t id = Number(*database_, kInsert, values);
  if (id == 0) return Amend(record);
  database_->Run("insert into points(record, signed, words) values($1, $2, $3)",
                 {id, std::int64_t{AreSigned(record.record) ? 1 : 0}, PackedWords(record.record)});
  return id;
}

std::int64_t Archive::Amend(const NewRecord& record) {
  const database::Bytes uid(record.uid.begin(), record.uid.end());
  const std::int64_t id = Number(*database_, "select id from record where uid = $1", {uid});
  Values values{id};
  for (Value& value : AmendedValues(record.record)) values.push_back(std::move(value));
  database_->Run("update record set " + Assignments(kAmendedColumns, 2) + " where id = $1", values);
  return id;
}

// Nearly all records of a connection come from one source.
std::int64_t Archive::SourceOf(const NewRecord& record) {
  const Values values = SourceValues(record);
  if (values == lastSource_.first) return lastSource_.second;
  const std::string condition =
      "select id from source where product = $1 and interface = $2 and adapter = $3 and simulated "
      "= $4 and program = $5 and bench = $6";
  std::int64_t source = Number(*database_, condition, values);
  if (source == 0) {
    database_->Run(
        "insert into source(product, interface, adapter, simulated, program, bench) values($1, $2, "
        "$3, $4, $5, $6) on conflict do nothing",
        values);
    source = Number(*database_, condition, values);
  }
  lastSource_ = {values, source};
  return source;
}

std::vector<std::int64_t> Archive::Find(const Filter& filter) {
  const Condition condition = ConditionOf(filter, version_);
  std::vector<std::int64_t> ids;
  database_->Run("select r.id" + std::string(kFromBoth) + "where " + condition.sql +
                     " order by r.taken desc, r.id desc",
                 condition.values, [&](Row row) { ids.push_back(database::Integer(row[0])); });
  return ids;
}

std::vector<std::chrono::system_clock::time_point> Archive::Times(const Filter& filter) {
  const Condition condition = ConditionOf(filter, version_);
  std::vector<std::chrono::system_clock::time_point> times;
  database_->Run("select r.taken" + std::string(kFromBoth) + "where " + condition.sql,
                 condition.values,
                 [&](Row row) { times.push_back(TimeOf(database::Integer(row[0]))); });
  return times;
}

std::vector<KeptRecord> Archive::List(std::span<const std::int64_t> ids) {
  const std::string sql = "select " + RowColumns(version_) + kFromBoth + "where r.id = $1";
  std::vector<KeptRecord> records;
  for (const std::int64_t id : ids) {
    database_->Run(sql, {id}, [&](Row row) { records.push_back(RecordFrom(row)); });
  }
  return records;
}

std::optional<KeptRecord> Archive::Get(std::int64_t id) {
  return Whole(id, "select " + RowColumns(version_) + kFromBoth + "where r.id = $1");
}

std::optional<KeptRecord> Archive::GetWithoutSource(std::int64_t id) {
  return Whole(id,
               "select " + RowColumnsWithoutSource(version_) + " from record r where r.id = $1");
}

std::optional<KeptRecord> Archive::Whole(std::int64_t id, const std::string& select) {
  std::optional<KeptRecord> record;
  database_->Run(select, {id}, [&](Row row) { record = RecordFrom(row); });
  if (!record) return std::nullopt;
  bool hasPoints = false;
  database_->Run("select signed, words from points where record = $1", {id}, [&](Row row) {
    UnpackWords(database::Blob(row[1]), database::Integer(row[0]) != 0, record->record);
    hasPoints = true;
  });
  if (!hasPoints) {
    throw DatabaseError(Fault::Corrupt, "record " + std::to_string(id) + " has no points");
  }
  return record;
}

std::int64_t Archive::Count() {
  return Number(*database_, "select count(*) from record where deleted is null");
}

void Archive::SetRemarks(std::int64_t id, const Remarks& remarks) {
  RefuseNul(remarks);
  Values values{id};
  for (Value& value : RemarkValues(remarks)) values.push_back(std::move(value));
  database_->Run("update record set " + Assignments(kRemarkColumns, 2) + " where id = $1", values);
}

std::vector<std::pair<std::int64_t, Remarks>> Archive::ChangeRemarks(
    std::span<const std::pair<std::int64_t, RemarksChange>> changes) {
  std::vector<std::pair<std::int64_t, Remarks>> before;
  database::Transaction all(*database_);
  for (const auto& [id, change] : changes) {
    for (KeptRecord& kept : List(std::span(&id, 1))) {
      SetRemarks(id, change.AppliedTo(kept.remarks));
      before.emplace_back(id, std::move(kept.remarks));
    }
  }
  all.Commit();
  return before;
}

std::vector<std::string> Archive::Machines() {
  return Texts(*database_,
               "select distinct machine from record where deleted is null and machine <> '' order "
               "by machine",
               {});
}

std::vector<std::string> Archive::Points(const std::string& machine) {
  return Texts(*database_,
               "select distinct point from record where deleted is null and point <> '' and "
               "machine = $1 order by point",
               {machine});
}

std::vector<std::string> Archive::Damage() {
  std::vector<std::string> lines;
  try {
    lines = database_->Damage();
    database_->Run(
        "select r.id from record r left join points p on p.record = r.id where p.record is null "
        "order by r.id",
        {}, [&](Row row) {
          lines.push_back("record " + std::to_string(database::Integer(row[0])) + " has no points");
        });
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Corrupt) throw;
    lines.emplace_back(error.what());  // too damaged to be gone through
  }
  return lines;
}

}  // namespace kestrel::archive
