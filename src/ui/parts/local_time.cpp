// How a moment is written for the user.
// SPDX-License-Identifier: MIT
#include "ui/parts/local_time.h"

#include <QDateTime>

namespace kestrel {

QString LocalTime(std::chrono::system_clock::time_point time) {
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
  const QDateTime local = QDateTime::fromMSecsSinceEpoch(ms.count());
  const bool isToday = local.date() == QDate::currentDate();
  return local.toString(isToday ? "HH:mm:ss" : "yyyy-MM-dd HH:mm:ss");
}

std::int64_t LocalOffset(std::int64_t utc) {
  return QDateTime::fromSecsSinceEpoch(utc).offsetFromUtc();
}

}  // namespace kestrel
