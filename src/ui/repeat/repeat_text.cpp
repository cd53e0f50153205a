// The words for progress, times and gaps.
// SPDX-License-Identifier: MIT
#include "ui/repeat/repeat_text.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>
#include <cmath>

namespace kestrel {
namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("RepeatText", text);
}

QString Two(qint64 number) {
  return QString("%1").arg(number, 2, 10, QChar('0'));
}

QDateTime Local(std::chrono::system_clock::time_point time) {
  return QDateTime::fromMSecsSinceEpoch(
      std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count());
}

QString Counted(const RepeatProgress& progress) {
  const QString done = QString::number(progress.done);
  if (progress.settings.times) {
    return tr("%1 of %2 captures done").arg(done).arg(*progress.settings.times);
  }
  return progress.done == 1 ? tr("1 capture done") : tr("%1 captures done").arg(done);
}

QString Doing(const RepeatProgress& progress) {
  const bool follows = progress.settings.mode == RepeatMode::FollowTimer;
  if (progress.ending) return tr("ending with the capture under way");
  switch (progress.state) {
    case RepeatState::Capturing:
      return follows ? tr("reading a record") : tr("capturing");
    case RepeatState::Paused:
      return tr("paused: %1").arg(QString::fromStdString(progress.reason));
    case RepeatState::Ended:
      return progress.reason.empty() ? tr("complete") : QString::fromStdString(progress.reason);
    case RepeatState::Waiting:
      break;
  }
  if (progress.nextIn) return tr("the next in %1").arg(DurationWords(*progress.nextIn));
  return follows ? tr("waiting for the sensor's next one") : tr("the next follows");
}

}  // namespace

QString DurationWords(double seconds) {
  const auto all = static_cast<qint64>(std::ceil(seconds));
  if (all < 60) return tr("%1 s").arg(all);
  if (all < 3600) return tr("%1 min %2 s").arg(all / 60).arg(Two(all % 60));
  if (all < 86400) return tr("%1 h %2 min").arg(all / 3600).arg(Two(all / 60 % 60));
  return tr("%1 d %2 h").arg(all / 86400).arg(all / 3600 % 24);
}

QString RepeatLine(const RepeatProgress& progress) {
  QStringList parts{Counted(progress), Doing(progress)};
  if (progress.remaining) parts << tr("%1 left").arg(DurationWords(*progress.remaining));
  if (progress.missed > 0) parts << tr("%1 missed").arg(progress.missed);
  if (progress.gaps.size() == 1) parts << tr("1 gap");
  if (progress.state == RepeatState::Waiting && !progress.reason.empty()) {
    parts << QString::fromStdString(progress.reason);
  }
  if (progress.gaps.size() > 1) parts << tr("%1 gaps").arg(progress.gaps.size());
  return parts.join(", ");
}

QString GapLine(const RepeatGap& gap) {
  const QDateTime from = Local(gap.from);
  const QString begin = from.toString("yyyy-MM-dd HH:mm:ss");
  const QString reason = QString::fromStdString(gap.reason);
  if (!gap.to) return tr("since %1: %2").arg(begin, reason);
  const QDateTime to = Local(*gap.to);
  const bool sameDay = from.date() == to.date();
  return tr("%1 to %2: %3")
      .arg(begin, to.toString(sameDay ? "HH:mm:ss" : "yyyy-MM-dd HH:mm:ss"), reason);
}

QString WideLine(const WideProgress& progress) {
  switch (progress.state) {
    case WideState::Lost:
      return tr("Wide: the sensor is lost; its settings are put back when it is there again");
    case WideState::PuttingBack:
      return tr("Wide: putting the settings back");
    case WideState::Ended:
      return tr("Wide: ended");
    case WideState::Capturing:
      break;
  }
  QString line = tr("Wide: option %1, %2 of %3")
                     .arg(progress.option.value_or(0))
                     .arg(progress.done.size() + 1)
                     .arg(progress.order.size());
  if (progress.ending) return tr("Wide: ending");
  if (progress.remaining)
    line += tr(", %1 left").arg(DurationWords(std::ceil(*progress.remaining)));
  return line;
}

QString WideTrouble(const WideProgress& progress) {
  const bool isStopped = progress.reason.empty() || progress.reason == "stopped";
  QStringList texts;
  if (!isStopped) texts << QString::fromStdString(progress.reason);
  if (!progress.notPutBack.empty()) texts << QString::fromStdString(progress.notPutBack);
  return texts.join(' ');
}

}  // namespace kestrel
