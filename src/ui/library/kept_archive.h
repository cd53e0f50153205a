// What is remembered of the archive between two runs: whether records are kept, and of what.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "archive/kept_record.h"

namespace kestrel {

struct KeptArchive {
  bool isOn = true;
  archive::Remarks site;              // of the records to come: machine, point, orientation, rpm
  std::optional<std::int64_t> limit;  // bytes; see archive::Archive::Prune
  bool operator==(const KeptArchive&) const = default;
};

// From the user's file of it, and into it. What cannot be read is as it is at the first start.
[[nodiscard]] KeptArchive ReadKeptArchive();
void WriteKeptArchive(const KeptArchive& kept);

}  // namespace kestrel
