// Which records of a set are there, and which are not.
// SPDX-License-Identifier: MIT
#include "archive/wide_sets.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "archive/record_row.h"

namespace kestrel::archive {
namespace {

constexpr int kOptions = 4;
constexpr std::int64_t kFirstVersion = 2;

int OptionOf(const KeptRecord& kept) {
  return kept.record.settings.option;
}

unsigned WantedOf(const KeptRecord& kept) {
  return kept.wide ? kept.wide->wanted : 0;
}

bool HasOption(const std::vector<KeptRecord>& records, int option) {
  return std::ranges::any_of(records, [=](const auto& kept) { return OptionOf(kept) == option; });
}

}  // namespace

std::vector<Uid> FindWideSets(Archive& archive, const Filter& filter) {
  if (archive.Version() < kFirstVersion) return {};
  const Condition condition = ConditionOf(filter, archive.Version());
  std::vector<Uid> sets;
  archive.Connection().Run(
      "select r.wide_set, max(r.taken) from record r join source s on s.id = r.source where "
      "r.wide_set is not null and " +
          condition.sql + " group by r.wide_set order by 2 desc, 1",
      condition.values, [&](database::Row row) { sets.push_back(UidFromCell(row[0])); });
  return sets;
}

std::optional<WideSet> GetWideSet(Archive& archive, const Uid& uid) {
  const std::vector<std::int64_t> there = archive.Find({.set = uid});
  const std::vector<std::int64_t> gone = archive.Find({.set = uid, .deleted = true});
  const std::vector<KeptRecord> deleted = archive.List(gone);
  WideSet set{.uid = uid};
  for (const std::int64_t id : there) {
    auto kept = archive.Get(id);
    // Another program may have removed it meanwhile; of two of one option the latest counts.
    if (!kept || HasOption(set.records, OptionOf(*kept))) continue;
    set.wanted |= WantedOf(*kept);
    set.records.push_back(std::move(*kept));
  }
  for (const KeptRecord& kept : deleted) set.wanted |= WantedOf(kept);
  if (set.wanted == 0) return std::nullopt;
  std::ranges::sort(set.records, std::greater{}, OptionOf);
  for (int option = kOptions - 1; option >= 0; --option) {
    if ((set.wanted >> option & 1U) == 0 || HasOption(set.records, option)) continue;
    (HasOption(deleted, option) ? set.deleted : set.missing).push_back(option);
  }
  return set;
}

}  // namespace kestrel::archive
