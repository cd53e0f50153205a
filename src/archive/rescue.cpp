// Record by record, by number: a damaged list or index is not needed.
// SPDX-License-Identifier: MIT
#include "archive/rescue.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "archive/journal.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;

// Numbers without a record after which no further ones are looked for, where the last is not known.
constexpr std::int64_t kMostMissing = 10'000;

std::optional<std::int64_t> LastId(Archive& archive) {
  std::optional<std::int64_t> last;
  for (const char* sql : {"select max(id) from record", "select max(record) from points"}) {
    try {
      last = std::max(last.value_or(0), Number(archive.Connection(), sql));
    } catch (const DatabaseError&) {
      continue;  // the other may be whole
    }
  }
  return last;
}

}  // namespace

Rescued Rescue(Archive& from, Archive& into, const std::function<bool(std::int64_t done)>& goOn) {
  Rescued rescued;
  const std::optional<std::int64_t> last = LastId(from);
  std::int64_t missing = 0;
  for (std::int64_t id = 1; last ? id <= *last : missing < kMostMissing; ++id) {
    if (!goOn(id - 1)) break;
    std::optional<KeptRecord> record;
    try {
      record = from.Get(id);
      missing = record ? 0 : missing + 1;
    } catch (const DatabaseError&) {
      ++rescued.lost;
      ++missing;
    }
    if (!record) continue;
    into.Keep(*record);
    ++rescued.kept;
  }
  std::vector<JournalEntry> journal;
  try {
    journal = EntriesOf(from);
  } catch (const DatabaseError&) {
    rescued.isJournalWhole = false;
  }
  if (!journal.empty()) PutEntries(into, journal);
  return rescued;
}

}  // namespace kestrel::archive
