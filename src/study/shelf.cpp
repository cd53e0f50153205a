// Keeps the session's records and drops the oldest.
// SPDX-License-Identifier: MIT
#include "study/shelf.h"

#include <algorithm>
#include <utility>

namespace kestrel::study {

RecordId Shelf::Add(RecordPointer record) {
  entries_.push_front({++last_, std::move(record)});
  if (entries_.size() > most_) {
    entries_.pop_back();
    ++dropped_;
  }
  return last_;
}

void Shelf::Replace(const RecordPointer& earlier, RecordPointer record) {
  const auto found = std::ranges::find(entries_, earlier, &ShelfEntry::record);
  if (found != entries_.end()) found->record = std::move(record);
}

RecordPointer Shelf::Find(RecordId id) const {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [id](const auto& e) { return e.id == id; });
  return found == entries_.end() ? nullptr : found->record;
}

}  // namespace kestrel::study
