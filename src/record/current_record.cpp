// How the record at hand is replaced.
// SPDX-License-Identifier: MIT
#include "record/current_record.h"

#include <utility>

#include "record/capture_data.h"

namespace kestrel {

void CurrentRecord::HandOver(Record record) {
  for (const Axis axis : kAxes) {
    for (int i = record.Width() + 1; i < static_cast<int>(kRecordPoints); ++i) {
      record.Of(axis).raw(i) = record_.Of(axis).raw(i);
      record.Of(axis).data(i) = record_.Of(axis).data(i);
    }
  }
  record_ = std::move(record);
  NameRecord(record_);
  Tell();
}

void CurrentRecord::AddAlarms(const AlarmState& alarms) {
  record_.alarms = alarms;
  Tell();
}

void CurrentRecord::Tell() const {
  for (const auto& listener : listeners_) listener();
}

}  // namespace kestrel
