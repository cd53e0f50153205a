// The journal as it is shown beside a monitor that runs: what lasts first.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "archive/journal.h"
#include "monitor/account.h"

namespace kestrel::monitor {

struct JournalRow {
  archive::JournalEntry entry{};
  bool lasts = false;
};

// What the archive holds, and what a monitor that runs tells: of an entry that both know the
// monitor's, which is ahead of the archive. `account` null: none runs. What lasts comes first, the
// latest of it at the top, then the rest likewise.
[[nodiscard]] std::vector<JournalRow> RowsOf(const std::vector<archive::JournalEntry>& journal,
                                             const Account* account);

}  // namespace kestrel::monitor
