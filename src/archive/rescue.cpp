// Row by row, by number: a damaged list or index is not needed.
// SPDX-License-Identifier: MIT
#include "archive/rescue.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "archive/journal.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using database::Fault;

// Numbers in a row that cannot be read, after which no further ones are looked for: more than a
// page of the list's own list takes with it, though a damaged last number may be any.
constexpr std::int64_t kMostUnread = 100'000;

using Statements = std::vector<const char*>;

// Numbers of rows as several tables or indexes know them, each of which may be damaged.
class Numbers {
 public:
  // `next` selects the first number after $1, `last` the last of all.
  Numbers(database::Database& database, Statements next, const Statements& last)
      : database_(database), next_(std::move(next)), last_(Last(last)) {}

  // The first after `id`; where one of them cannot tell, the very next one. Nothing behind the
  // last.
  [[nodiscard]] std::optional<std::int64_t> After(std::int64_t id) {
    std::optional<std::int64_t> next;
    const auto take = [&](std::int64_t found) {
      if (found > id) next = std::min(next.value_or(found), found);
    };
    for (const char* sql : next_) {
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
  [[nodiscard]] std::optional<std::int64_t> Last(const Statements& selects) {
    std::optional<std::int64_t> last;
    for (const char* sql : selects) {
      try {
        last = std::max(last.value_or(0), Number(database_, sql));
      } catch (const DatabaseError&) {
        continue;  // the other may be whole
      }
    }
    return last;
  }

  database::Database& database_;
  Statements next_;
  std::optional<std::int64_t> last_;
};

// Reads what has these numbers, hands on what there is, and returns how many could not be read.
template <typename Read, typename Take>
std::int64_t Unread(Numbers numbers, const Read& read, const Take& take,
                    const std::function<bool(std::int64_t done)>& goOn) {
  std::int64_t lost = 0;
  std::int64_t unread = 0;  // since the last that could be read
  std::int64_t id = 0;
  while (unread < kMostUnread) {
    const auto next = numbers.After(id);
    if (!next || !goOn(*next - 1)) break;
    id = *next;
    decltype(read(id)) found;
    try {
      found = read(id);
    } catch (const DatabaseError&) {
      ++unread;
    }
    if (!found) continue;
    lost += unread;
    unread = 0;
    take(std::move(*found));
  }
  // Behind the last that is known of nobody knows how many there were.
  const bool areKnown = numbers.KnowsTheLast() && unread < kMostUnread;
  return lost + (areKnown ? unread : std::min<std::int64_t>(unread, 1));
}

struct FoundRecord {
  KeptRecord record;
  bool hasSource = true;
};

// Nothing where there is none; throws where it cannot be read.
std::optional<FoundRecord> Found(Archive& from, std::int64_t id) {
  bool hasSource = true;
  std::optional<KeptRecord> record;
  try {
    record = from.Get(id);
  } catch (const DatabaseError&) {
    hasSource = false;
    record = from.GetWithoutSource(id);
  }
  if (!record) return std::nullopt;
  return FoundRecord{std::move(*record), hasSource};
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

// Row by row: an index that is lost takes none of them with it, a page those that it holds.
std::vector<JournalEntry> EntriesByRow(Archive& from, std::int64_t& lost) {
  std::vector<JournalEntry> journal;
  database::Database& database = from.Connection();
  Numbers rows(database, {"select rowid from journal where rowid > $1 order by rowid limit 1"},
               {"select rowid from journal order by rowid desc limit 1",
                "select max(rowid + 0) from journal indexed by journal_began"});
  lost = Unread(
      std::move(rows), [&](std::int64_t row) { return EntryInRow(from, row); },
      [&](JournalEntry entry) { journal.push_back(std::move(entry)); },
      [](std::int64_t) { return true; });
  return journal;
}

std::vector<JournalEntry> JournalOf(Archive& from, std::int64_t& lost) {
  try {
    return EntriesOf(from);
  } catch (const DatabaseError&) {
    if (from.Connection().NumbersRows()) return EntriesByRow(from, lost);
    lost = 1;
    return {};
  }
}

void RescueJournal(Archive& from, Archive& into, Rescued& rescued) {
  const std::vector<JournalEntry> journal = JournalOf(from, rescued.journalLost);
  rescued.journalKept = static_cast<std::int64_t>(journal.size());
  if (journal.empty() || IsTaken([&] { PutEntries(into, journal); })) return;
  for (const JournalEntry& entry : journal) {
    if (IsTaken([&] { PutEntries(into, std::span(&entry, 1)); })) continue;
    --rescued.journalKept;
    ++rescued.journalLost;
  }
}

}  // namespace

Rescued Rescue(Archive& from, Archive& into, const std::function<bool(std::int64_t done)>& goOn) {
  Rescued rescued;
  Numbers ids(from.Connection(),
              {"select id from record where id > $1 order by id limit 1",
               "select record from points where record > $1 order by record limit 1"},
              {"select id from record order by id desc limit 1",
               "select record from points order by record desc limit 1"});
  const auto take = [&](const FoundRecord& found) {
    const bool isTaken = IsTaken([&] { into.Keep(found.record); });
    ++(isTaken ? rescued.kept : rescued.lost);
    if (isTaken && !found.hasSource) ++rescued.withoutSource;
  };
  rescued.lost += Unread(
      std::move(ids), [&](std::int64_t id) { return Found(from, id); }, take, goOn);
  RescueJournal(from, into, rescued);
  return rescued;
}

}  // namespace kestrel::archive
