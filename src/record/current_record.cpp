// How the record at hand is replaced.
// SPDX-License-Identifier: MIT
#include "record/current_record.h"

#include <cstddef>
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

CurrentRecord::Listener CurrentRecord::OnChange(std::function<void()> listen) {
  auto listener = std::make_shared<const std::function<void()>>(std::move(listen));
  listeners_.emplace_back(listener);
  return listener;
}

void CurrentRecord::Tell() {
  std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
  std::size_t told = 0;
  while (told < listeners_.size()) {  // a listener may add others
    const Listener listener = listeners_[told++].lock();
    if (listener) (*listener)();
  }
}

}  // namespace kestrel
