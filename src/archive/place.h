// Where an archive is: a file, or a database server.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "archive/archive.h"
#include "database/sqlite_database.h"

namespace kestrel::archive {

// "postgresql://..." names a server; anything else is a file, made with its folder where it is
// missing.
struct Place {
  std::string text;
  [[nodiscard]] bool IsServer() const;
  bool operator==(const Place&) const = default;
};

// As people may see it: without a password.
[[nodiscard]] std::string Shown(const Place& place);

// "archive.db" in the folder "kestrel" of the user's data; where a home is not known either, none
// ("").
[[nodiscard]] Place UsualPlace(const std::function<std::string(const char* name)>& environment);
// The file beside the usual place for records that wait to be brought to another; `name` is one of
// that other's own.
[[nodiscard]] Place WaitingPlace(const Place& usual, const std::string& name);

// Of a place that is a file.
[[nodiscard]] std::filesystem::path PathOf(const Place& place);

// What a fault of the archive at a place means, with the place and the cure.
[[nodiscard]] std::string Trouble(const Place& place, const database::DatabaseError& error);

// A connection to the archive at a place, its tables made or brought up to date where it may be
// written. Throws DatabaseError, whose text names the place and the cure.
[[nodiscard]] Archive Open(const Place& place,
                           database::Access access = database::Access::ReadWrite);
// To be read only, however damaged it is; likewise.
[[nodiscard]] Archive OpenForRescue(const Place& place);

}  // namespace kestrel::archive
