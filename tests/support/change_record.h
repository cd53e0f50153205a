// A test's way to another record at hand.
// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "record/current_record.h"

namespace kestrel {

// Hands over the record at hand as `change`, a function of Record&, leaves it.
template <typename Change>
void ChangeRecord(CurrentRecord& current, Change change) {
  Record record = current.Get();
  change(record);
  current.HandOver(std::move(record));
}

}  // namespace kestrel
