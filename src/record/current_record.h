// The record at hand, replaced as a whole, and who is told when it is.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "record/record.h"

namespace kestrel {

// Holds the last record that was read to its end. Whoever shows records is handed this object as
// const and reads the record from it.
class CurrentRecord {
 public:
  [[nodiscard]] const Record& Get() const { return record_; }

  // Replaces the record, fills the program-wide names of it and tells the listeners. Points beyond
  // the new record's width stay what they were.
  void HandOver(Record record);

  // What was read of the same record after its points. The listeners are told as well.
  void AddAlarms(const AlarmState& alarms);

  // `listen` is called after every change, as long as somebody keeps what is returned.
  using Listener = std::shared_ptr<const std::function<void()>>;
  [[nodiscard]] Listener OnChange(std::function<void()> listen);

 private:
  void Tell();

  Record record_;
  std::vector<std::weak_ptr<const std::function<void()>>> listeners_;
};

}  // namespace kestrel
