// The archive's tables, by versions.
// SPDX-License-Identifier: MIT
#pragma once

#include "database/database.h"

namespace kestrel::archive {

inline constexpr std::int64_t kSchemaVersion = 3;

// What a database holds.
enum class Contents {
  Nothing,  // no table at all
  Foreign,  // tables of somebody else's
  Archive,  // of this version
  Earlier,  // an archive that MakeCurrent brings up to date
  Newer     // made by a later version of the program
};
[[nodiscard]] Contents ContentsOf(database::Database& database);

// Of the tables of an archive; 0 where it is none.
[[nodiscard]] std::int64_t VersionOf(database::Database& database);

// Of an archive whose own word on it is lost: by the tables and columns it has.
[[nodiscard]] std::int64_t VersionByTables(database::Database& database);

// Makes the tables where there are none, and brings earlier ones up to date, whole or not at all.
// Two programs may do so at once. Throws DatabaseError, of a foreign or newer database too.
void MakeCurrent(database::Database& database);

}  // namespace kestrel::archive
