// Everything that changes an archive, what it is done to, and what is there before and after.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cerrno>
#include <map>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "archive/journal.h"
#include "support/random_records.h"

namespace kestrel::archive {

inline NewRecord Numbered(int number) {
  RandomRecords records(static_cast<unsigned>(number));
  NewRecord made{{}, records.Next(), {}, "0.1.0", "bench"};
  made.uid[0] = static_cast<std::uint8_t>(number & 0xff);
  made.uid[1] = static_cast<std::uint8_t>(number >> 8);
  made.remarks.note = std::to_string(number);
  return made;
}

inline JournalEntry NumberedEntry(int number) {
  using std::chrono::system_clock;
  JournalEntry entry{.bench = "bench", .sensor = "7", .kind = "away", .missed = number};
  entry.uid[0] = static_cast<std::uint8_t>(number & 0xff);
  entry.uid[1] = static_cast<std::uint8_t>(number >> 8);
  entry.began = system_clock::from_time_t(1'763'750'000 + number);
  entry.text = "away for the " + std::to_string(number) + ". time";
  return entry;
}

inline const auto kDeletedAt = std::chrono::system_clock::from_time_t(1'763'760'000);

// Seven records, the last two of them deleted, two that a size limit may remove, and two entries.
inline void Fill(Archive& archive) {
  std::vector<NewRecord> records;
  for (int number = 0; number < 7; ++number) {
    records.push_back(Numbered(number));
    if (number != 2 && number != 3) continue;
    records.back().remarks = {};
    for (AxisAlarms& axis : records.back().record.alarms.axes) axis.status = 0;
  }
  archive.KeepAll(records);
  PutEntries(archive, std::vector{NumberedEntry(1), NumberedEntry(2)});
}

// Of the records of Fill, by their numbers.
using IdsByNumber = std::map<int, std::int64_t>;
inline IdsByNumber FilledIds(Archive& archive) {
  IdsByNumber ids;
  for (const bool deleted : {false, true}) {
    for (const KeptRecord& kept : archive.List(archive.Find({.deleted = deleted}))) {
      ids[kept.uid[0]] = kept.id;
    }
  }
  return ids;
}
inline void DeleteTheLast(Archive& archive) {
  const IdsByNumber ids = FilledIds(archive);
  archive.Delete(std::vector{ids.at(5), ids.at(6)}, kDeletedAt);
}

// All that an archive holds, whatever numbers its rows have.
struct Holding {
  std::vector<KeptRecord> records;
  std::vector<JournalEntry> journal;
  bool operator==(const Holding&) const = default;
};
inline Holding HeldBy(Archive& archive) {
  Holding held;
  for (const bool deleted : {false, true}) {
    for (const std::int64_t id : archive.Find({.deleted = deleted})) {
      held.records.push_back(archive.Get(id).value());
      held.records.back().id = 0;
    }
  }
  std::ranges::sort(held.records, {}, [](const KeptRecord& kept) { return kept.uid; });
  held.journal = EntriesOf(archive);
  return held;
}

struct Operation {
  const char* name;
  void (*run)(Archive& archive, const IdsByNumber& ids);
};
inline void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

inline const std::vector<Operation> kOperations{
    {"KeepsOne", [](Archive& archive, const IdsByNumber&) { archive.Keep(Numbered(20)); }},
    {"KeepsOneOfANewSource",
     [](Archive& archive, const IdsByNumber&) {
       NewRecord record = Numbered(21);
       record.bench = "another";
       archive.Keep(record);
     }},
    {"KeepsOneAgain",
     [](Archive& archive, const IdsByNumber&) {
       NewRecord record = Numbered(1);
       record.record.status = {0x80, true};
       record.record.alarms.axes[2] = {5, 6, 7};
       archive.Keep(record);
     }},
    {"KeepsSeveral",
     [](Archive& archive, const IdsByNumber&) {
       archive.KeepAll(std::vector{Numbered(22), Numbered(23), Numbered(1), Numbered(24)});
     }},
    {"SetsRemarks",
     [](Archive& archive, const IdsByNumber& ids) {
       archive.SetRemarks(ids.at(1), {.machine = "Pump", .note = "n", .tags = {"a", "b"}});
     }},
    {"ChangesRemarks",
     [](Archive& archive, const IdsByNumber& ids) {
       const RemarksChange change{.machine = "Fan", .tags = std::vector<std::string>{"c"}};
       archive.ChangeRemarks(
           std::vector{std::pair{ids.at(0), change}, std::pair{ids.at(4), change}});
     }},
    {"Deletes",
     [](Archive& archive, const IdsByNumber& ids) {
       archive.Delete(std::vector{ids.at(0), ids.at(1), ids.at(4)}, kDeletedAt);
     }},
    {"BringsBack",
     [](Archive& archive, const IdsByNumber& ids) {
       archive.BringBack(std::vector{ids.at(5), ids.at(6)});
     }},
    {"Purges", [](Archive& archive,
                  const IdsByNumber&) { archive.Purge(kDeletedAt + std::chrono::seconds(1)); }},
    {"Removes",
     [](Archive& archive, const IdsByNumber& ids) {
       archive.Remove(std::vector{ids.at(0), ids.at(4), ids.at(6)});
     }},
    {"RemovesKnown",
     [](Archive& archive, const IdsByNumber& ids) {
       archive.RemoveKnown(std::vector{std::pair{ids.at(0), Numbered(0).uid},
                                       std::pair{ids.at(1), Numbered(99).uid},
                                       std::pair{ids.at(4), Numbered(4).uid}});
     }},
    {"Prunes", [](Archive& archive, const IdsByNumber&) { archive.Prune(1); }},
    {"PutsEntries",
     [](Archive& archive, const IdsByNumber&) {
       JournalEntry ended = NumberedEntry(2);
       ended.ended = kDeletedAt;
       PutEntries(archive, std::vector{ended, NumberedEntry(3), NumberedEntry(4)});
     }},
};

// What a disk does to so many calls from one on.
struct Disk {
  const char* name;
  int error;
  int count;
};
inline void PrintTo(const Disk& disk, std::ostream* out) {
  *out << disk.name;
}
inline const std::vector<Disk> kDisks{{"ErrorOnce", EIO, 1},
                                      {"ErrorFromThenOn", EIO, 100'000},
                                      {"FullOnce", ENOSPC, 1},
                                      {"FullFromThenOn", ENOSPC, 100'000}};

}  // namespace kestrel::archive
