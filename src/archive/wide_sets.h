// The records that make up a wide spectrum, as an archive has them.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "archive/archive.h"

namespace kestrel::archive {

struct WideSet {
  Uid uid{};
  unsigned wanted = 0;                // rate options, a bit each; see WideMark
  std::vector<KeptRecord> records{};  // with their points, the finest option first
  std::vector<int> deleted{};         // options whose records can be brought back
  std::vector<int> missing{};         // options that were never kept, or are gone for good
  [[nodiscard]] bool IsWhole() const { return deleted.empty() && missing.empty(); }
};

// Those of which a record fits, the latest first. Throws DatabaseError.
[[nodiscard]] std::vector<Uid> FindWideSets(Archive& archive, const Filter& filter);

// Nothing where no record of it is there, deleted ones included. Throws DatabaseError.
[[nodiscard]] std::optional<WideSet> GetWideSet(Archive& archive, const Uid& uid);

}  // namespace kestrel::archive
