// The journal: what stood in the way of captures, and alarms, each with its beginning and end.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "archive/archive.h"

namespace kestrel::archive {

// Texts are UTF-8 of one line. `kind` is a word of the program's that stays the same for ever.
struct JournalEntry {
  Uid uid{};
  std::string bench{};
  std::string sensor{};
  std::string kind{};
  std::chrono::system_clock::time_point began{};
  std::optional<std::chrono::system_clock::time_point> ended{};  // none while it lasts
  std::int64_t missed = 0;  // captures that were asked for and did not come because of it
  std::string text{};       // for people
  bool operator==(const JournalEntry&) const = default;
};

// All or none; one that is there already (the same uid) becomes what is known of it now. Throws
// DatabaseError.
void PutEntries(Archive& archive, std::span<const JournalEntry> entries);

// What is empty asks for nothing.
struct JournalFilter {
  std::optional<std::chrono::system_clock::time_point> from{};   // lasted then or later
  std::optional<std::chrono::system_clock::time_point> until{};  // began before
  std::string bench{};
  std::string sensor{};
  std::string kind{};
  bool open = false;  // only what lasts still
};

// The latest first, at most so many; 0: all. None in an archive of an earlier version that is only
// read. Throws DatabaseError.
[[nodiscard]] std::vector<JournalEntry> EntriesOf(Archive& archive,
                                                  const JournalFilter& filter = {},
                                                  std::int64_t most = 0);

// The one in a row of the table, where the database numbers rows; nothing where there is none.
// Throws DatabaseError.
[[nodiscard]] std::optional<JournalEntry> EntryInRow(Archive& archive, std::int64_t row);

}  // namespace kestrel::archive
