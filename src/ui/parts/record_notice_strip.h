// The notices of a record: what about it is not as it seems, with the cure.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <set>
#include <vector>

#include "record/record_notices.h"
#include "ui/parts/notice_strip.h"

namespace kestrel {

// A notice that the user has closed stays away for that record.
class RecordNoticeStrip : public NoticeStrip {
  Q_OBJECT

 public:
  using NoticeStrip::NoticeStrip;

  void Show(const Record& record, const std::vector<RecordNotice>& notices);

 signals:
  void CureWanted(Cure cure);

 private:
  std::chrono::system_clock::time_point shown_;  // of the record
  std::set<NoticeKind> closed_;                  // by the user, for this record
};

}  // namespace kestrel
