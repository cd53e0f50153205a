// Which notices of a record are shown.
// SPDX-License-Identifier: MIT
#include "ui/parts/record_notice_strip.h"

#include <algorithm>
#include <array>

namespace kestrel {
namespace {

constexpr std::array kKinds{NoticeKind::NotNew, NoticeKind::Empty, NoticeKind::WrongScale,
                            NoticeKind::Clipped, NoticeKind::SensorLost};

QString IdOf(NoticeKind kind) {
  return QString("record%1").arg(static_cast<int>(kind));
}

}  // namespace

// Of equal weight in the strip, they stand in the order they come in.
void RecordNoticeStrip::Show(const Record& record, const std::vector<RecordNotice>& notices) {
  if (record.time != shown_) closed_.clear();
  shown_ = record.time;
  for (const NoticeKind kind : kKinds) {
    const bool holds = std::any_of(notices.begin(), notices.end(),
                                   [&](const RecordNotice& notice) { return notice.kind == kind; });
    if (holds) continue;
    closed_.erase(kind);
    Take(IdOf(kind));
  }
  for (const RecordNotice& notice : notices) {
    if (closed_.contains(notice.kind)) continue;
    Put({.id = IdOf(notice.kind),
         .gravity = Gravity::Doubt,
         .text = QString::fromStdString(notice.what + ". " + notice.means),
         .cure = QString::fromStdString(notice.cureText),
         .carryOut = [this, cure = notice.cure] { emit CureWanted(cure); },
         .closed = [this, kind = notice.kind] { closed_.insert(kind); }});
  }
}

}  // namespace kestrel
