// The records of this session, newest first, as far as memory is meant to hold them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "study/measured.h"

namespace kestrel::study {

using RecordId = std::int64_t;

struct ShelfEntry {
  RecordId id = 0;  // rises from 1
  RecordPointer record;
};

// A record takes about 25 kB; the oldest go first.
inline constexpr std::size_t kShelfRecords = 2000;

class Shelf {
 public:
  explicit Shelf(std::size_t most = kShelfRecords) : most_(most) {}

  RecordId Add(RecordPointer record);

  // Nothing where the earlier one is not there (any more).
  void Replace(const RecordPointer& earlier, RecordPointer record);

  // Newest first.
  [[nodiscard]] const std::deque<ShelfEntry>& Entries() const { return entries_; }
  // Null where there is no such record (any more).
  [[nodiscard]] RecordPointer Find(RecordId id) const;
  // How many have been dropped for lack of room.
  [[nodiscard]] std::int64_t Dropped() const { return dropped_; }

 private:
  std::size_t most_;
  std::deque<ShelfEntry> entries_ = {};
  RecordId last_ = 0;
  std::int64_t dropped_ = 0;
};

}  // namespace kestrel::study
