// What can still be read of a damaged archive, brought into another.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

#include "archive/archive.h"

namespace kestrel::archive {

struct Rescued {
  std::int64_t kept = 0;
  std::int64_t lost = 0;           // known of and not to be read, or such as no archive takes
  std::int64_t withoutSource = 0;  // of those kept: sensor, program and bench could not be read
  std::int64_t journalKept = 0;
  std::int64_t journalLost = 0;  // likewise; where nobody knows how many, at least one
};

// Every record that can be read whole, deleted ones too, and every entry of the journal of `from`
// is kept in `into` (once, however often this is done). `goOn` is asked between records with the
// number done; false ends it. Throws DatabaseError where `into` cannot take one.
Rescued Rescue(
    Archive& from, Archive& into,
    const std::function<bool(std::int64_t done)>& goOn = [](auto) { return true; });

}  // namespace kestrel::archive
