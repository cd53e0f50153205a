// Every table and column that there is, and the steps from version to version.
// SPDX-License-Identifier: MIT
#include "archive/schema.h"

#include <array>
#include <string>
#include <vector>

namespace kestrel::archive {
namespace {

using database::Database;
using database::DatabaseError;
using database::Fault;

// Times are nanoseconds since 1970, UTC. A record's points have a table of their own: whoever goes
// through many records seldom needs them.
std::vector<std::string> Version1(const std::string& key) {
  return {
      "create table about(name text primary key, value bigint not null)",
      "create table source(id " + key +
          ", product bigint not null, interface text not null, adapter text not null, simulated "
          "bigint not null, program text not null, bench text not null, "
          "unique(product, interface, adapter, simulated, program, bench))",
      "create table record(id " + key +
          ", uid blob not null unique, taken bigint not null, deleted bigint, kind bigint not "
          "null, "
          "source bigint not null references source(id), rec_info bigint not null, rec_ctrl bigint "
          "not null, scaled_range bigint not null, lsb_weight double precision not null, supply_v "
          "double precision not null, temperature_c double precision not null, record_count bigint "
          "not null, status bigint, alarm_x bigint not null, alarm_y bigint not null, alarm_z "
          "bigint not null, peak_x bigint not null, peak_y bigint not null, peak_z bigint not "
          "null, "
          "peak_bin_x bigint not null, peak_bin_y bigint not null, peak_bin_z bigint not null, "
          "peak_weight double precision not null, alarms_known bigint not null, stopped bigint not "
          "null, count_before bigint, stored_number bigint, machine text not null, point text not "
          "null, orientation text not null, rpm double precision, note text not null, tags text "
          "not null, rms_x double precision, rms_y double precision, rms_z double precision, top_x "
          "double precision, top_y double precision, top_z double precision)",
      "create index record_taken on record(taken)",
      "create table points(record " + key +
          ", signed bigint not null, words blob not null, "
          "foreign key(record) references record(id) on delete cascade)",
  };
}

// Records that belong together: see WideMark.
std::vector<std::string> Version2(const std::string& /*key*/) {
  return {
      "alter table record add column wide_set blob",
      "alter table record add column wide_wanted bigint",
      "create index record_wide_set on record(wide_set) where wide_set is not null",
  };
}

// What stood in the way of captures, and alarms: see JournalEntry.
std::vector<std::string> Version3(const std::string& /*key*/) {
  return {
      "create table journal(uid blob primary key, bench text not null, sensor text not null, kind "
      "text not null, began bigint not null, ended bigint, missed bigint not null, text text not "
      "null)",
      "create index journal_began on journal(began)",
  };
}

// Each from the version before it.
using Step = std::vector<std::string> (*)(const std::string& key);
constexpr std::array kSteps{Step{Version1}, Step{Version2}, Step{Version3}};
static_assert(kSteps.size() == kSchemaVersion);

Contents ContentsOfVersion(std::int64_t version) {
  if (version < 1) return Contents::Foreign;
  if (version < kSchemaVersion) return Contents::Earlier;
  return version == kSchemaVersion ? Contents::Archive : Contents::Newer;
}

void GoOn(Database& database, std::int64_t from) {
  for (auto version = static_cast<std::size_t>(from); version < kSteps.size(); ++version) {
    for (const std::string& sql : kSteps[version](database.KeyType())) database.Run(sql);
  }
  database.Run(
      "insert into about(name, value) values('archive version', $1) "
      "on conflict(name) do update set value = excluded.value",
      {kSchemaVersion});
}

}  // namespace

std::int64_t VersionOf(Database& database) {
  return Number(database, "select value from about where name = 'archive version'");
}

std::int64_t VersionByTables(Database& database) {
  if (database.HasTable("journal")) return 3;
  try {
    database.Run("select wide_set from record limit 1");
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Corrupt) return 1;  // there is no such column
  }
  return 2;
}

Contents ContentsOf(Database& database) {
  if (database.IsBlank()) return Contents::Nothing;
  if (!database.HasTable("about") || !database.HasTable("record")) return Contents::Foreign;
  return ContentsOfVersion(VersionOf(database));
}

void MakeCurrent(Database& database) {
  if (ContentsOf(database) == Contents::Archive) return;
  database::Transaction transaction(database);
  database.LockSchema();
  // Looked at again: another program may have been first.
  const Contents contents = ContentsOf(database);
  if (contents == Contents::Foreign) {
    throw DatabaseError(Fault::Other, "it is a database, but not an archive of this program");
  }
  if (contents == Contents::Newer) {
    throw DatabaseError(
        Fault::Other, "it was made by a later version of this program (its tables are of version " +
                          std::to_string(VersionOf(database)) + ", this program knows " +
                          std::to_string(kSchemaVersion) + ")");
  }
  if (contents != Contents::Archive) {
    GoOn(database, contents == Contents::Nothing ? 0 : VersionOf(database));
  }
  transaction.Commit();
}

}  // namespace kestrel::archive
