// Filling and reading the slots for records.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/flash_records.h"

#include <utility>

namespace kestrel {

void FlashRecords::Store(StoredRecord record) {
  if (!IsFull()) records_.push_back(std::move(record));
}

const StoredRecord* FlashRecords::At(std::size_t slot) const {
  return slot < records_.size() ? &records_[slot] : nullptr;
}

}  // namespace kestrel
