// Journal and account made one list.
// SPDX-License-Identifier: MIT
#include "monitor/journal_rows.h"

#include <algorithm>
#include <set>

namespace kestrel::monitor {

std::vector<JournalRow> RowsOf(const std::vector<archive::JournalEntry>& journal,
                               const Account* account) {
  std::vector<JournalRow> rows;
  std::set<archive::Uid> told;
  const auto tell = [&](const std::vector<archive::JournalEntry>& entries) {
    for (const archive::JournalEntry& entry : entries) {
      if (told.insert(entry.uid).second) rows.push_back({entry, true});
    }
  };
  if (account != nullptr) {
    tell(account->incidents);
    tell(account->alarms);
  }
  for (const archive::JournalEntry& entry : journal) {
    if (told.contains(entry.uid)) continue;
    rows.push_back({entry, !entry.ended && account == nullptr});
  }
  std::ranges::stable_sort(rows, [](const JournalRow& a, const JournalRow& b) {
    return a.lasts != b.lasts ? a.lasts : a.entry.began > b.entry.began;
  });
  return rows;
}

}  // namespace kestrel::monitor
