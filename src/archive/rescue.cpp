// Record by record, by number: a damaged list or index is not needed.
// SPDX-License-Identifier: MIT
#include "archive/rescue.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "archive/journal.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using database::Fault;

// Numbers in a row that cannot be read, after which no further ones are looked for: more than a
// page of the list's own list takes with it, though a damaged last number may be any.
constexpr std::int64_t kMostUnread = 100'000;

// Where a record may be: each of the two tables knows, and either may be damaged.
class Numbers {
 public:
  explicit Numbers(database::Database& database) : database_(database), last_(Last()) {}

  // The first after `id`; where a table cannot tell, the very next one. Nothing behind the last.
  [[nodiscard]] std::optional<std::int64_t> After(std::int64_t id) {
    std::optional<std::int64_t> next;
    const auto take = [&](std::int64_t found) {
      if (found > id) next = std::min(next.value_or(found), found);
    };
    for (const char* sql :
         {"select id from record where id > $1 order by id limit 1",
          "select record from points where record > $1 order by record limit 1"}) {
      try {
        take(Number(database_, sql, {id}));
      } catch (const DatabaseError&) {
        if (!last_ || id < *last_) take(id + 1);
      }
    }
    return next;
  }
  [[nodiscard]] bool KnowsTheLast() const { return last_.has_value(); }

 private:
  [[nodiscard]] std::optional<std::int64_t> Last() {
    std::optional<std::int64_t> last;
    for (const char* sql : {"select id from record order by id desc limit 1",
                            "select record from points order by record desc limit 1"}) {
      try {
        last = std::max(last.value_or(0), Number(database_, sql));
      } catch (const DatabaseError&) {
        continue;  // the other may be whole
      }
    }
    return last;
  }

  database::Database& database_;
  std::optional<std::int64_t> last_;
};

// Nothing where there is none; throws where it cannot be read.
std::optional<KeptRecord> Found(Archive& from, std::int64_t id, bool& hasSource) {
  try {
    hasSource = true;
    return from.Get(id);
  } catch (const DatabaseError&) {
    hasSource = false;
    return from.GetWithoutSource(id);
  }
}

// False where it is a record that no archive takes, such as one with a NUL in a text.
template <typename Put>
bool IsTaken(const Put& put) {
  try {
    put();
    return true;
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Constraint) throw;
    return false;
  }
}

void RescueJournal(Archive& from, Archive& into, Rescued& rescued) {
  std::vector<JournalEntry> journal;
  try {
    journal = EntriesOf(from);
  } catch (const DatabaseError&) {
    rescued.isJournalWhole = false;
  }
  if (journal.empty() || IsTaken([&] { PutEntries(into, journal); })) return;
  rescued.isJournalWhole = false;
  for (const JournalEntry& entry : journal) {
    static_cast<void>(IsTaken([&] { PutEntries(into, std::span(&entry, 1)); }));
  }
}

}  // namespace

Rescued Rescue(Archive& from, Archive& into, const std::function<bool(std::int64_t done)>& goOn) {
  Rescued rescued;
  Numbers numbers(from.Connection());
  std::int64_t unread = 0;  // since the last that could be read
  for (auto id = numbers.After(0); id && unread < kMostUnread; id = numbers.After(*id)) {
    if (!goOn(*id - 1)) break;
    std::optional<KeptRecord> record;
    bool hasSource = true;
    try {
      record = Found(from, *id, hasSource);
    } catch (const DatabaseError&) {
      ++unread;
    }
    if (!record) continue;
    rescued.lost += unread;
    unread = 0;
    const bool isTaken = IsTaken([&] { into.Keep(*record); });
    ++(isTaken ? rescued.kept : rescued.lost);
    if (isTaken && !hasSource) ++rescued.withoutSource;
  }
  // Behind the last that is known of nobody knows how many there were.
  const bool areKnown = numbers.KnowsTheLast() && unread < kMostUnread;
  rescued.lost += areKnown ? unread : std::min<std::int64_t>(unread, 1);
  RescueJournal(from, into, rescued);
  return rescued;
}

}  // namespace kestrel::archive
