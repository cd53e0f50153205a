// A record in words, amber where it is not as it seems.
// SPDX-License-Identifier: MIT
#include "ui/plot/record_caption.h"

#include <QDateTime>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "record/record_line.h"

namespace kestrel {
namespace {

constexpr std::array kKinds{NoticeKind::NotNew, NoticeKind::Empty, NoticeKind::WrongScale,
                            NoticeKind::Clipped, NoticeKind::SensorLost};

QString IdOf(NoticeKind kind) {
  return QString("record%1").arg(static_cast<int>(kind));
}

QString Details(const Record& record) {
  QStringList lines;
  for (const std::string& line : RecordDetails(record, LocalTimeOf(record).toStdString())) {
    lines << QString::fromStdString(line);
  }
  return lines.join("\n");
}

}  // namespace

QString LocalTimeOf(const Record& record) {
  if (!record.Taken()) return {};
  const auto sinceEpoch =
      std::chrono::duration_cast<std::chrono::milliseconds>(record.time.time_since_epoch());
  const QDateTime time = QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
  const bool today = time.date() == QDate::currentDate();
  return time.toString(today ? "HH:mm:ss" : "yyyy-MM-dd HH:mm:ss");
}

RecordCaption::RecordCaption()
    : lblRecordLine_(new LineLabel), notices_(new NoticeStrip("recordNotices")) {
  setObjectName("recordCaption");
  lblRecordLine_->setObjectName("lblRecordLine");
  lblRecordLine_->setTextFormat(Qt::PlainText);
  lblRecordLine_->setAccessibleDescription(tr("The record on the plot"));
  lblRecordLine_->setMinimumHeight(lblRecordLine_->fontMetrics().height());
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(2);
  all->addWidget(lblRecordLine_);
  all->addWidget(notices_);
}

void RecordCaption::Show(const Record& record, const RecordPresent& present) {
  const std::string line = RecordLine(record, LocalTimeOf(record).toStdString());
  lblRecordLine_->setText(QString::fromStdString(line));
  lblRecordLine_->setToolTip(Details(record));
  if (record.time != shown_) closed_.clear();
  shown_ = record.time;
  ShowNotices(RecordNotices(record, present));
}

// Of equal weight in the strip, they stand in the order they come in.
void RecordCaption::ShowNotices(const std::vector<RecordNotice>& notices) {
  for (const NoticeKind kind : kKinds) {
    const bool holds = std::any_of(notices.begin(), notices.end(),
                                   [&](const RecordNotice& notice) { return notice.kind == kind; });
    if (holds) continue;
    closed_.erase(kind);
    notices_->Take(IdOf(kind));
  }
  for (const RecordNotice& notice : notices) {
    if (closed_.contains(notice.kind)) continue;
    notices_->Put({.id = IdOf(notice.kind),
                   .gravity = Gravity::Doubt,
                   .text = QString::fromStdString(notice.what + ". " + notice.means),
                   .cure = QString::fromStdString(notice.cureText),
                   .carryOut = [this, cure = notice.cure] { emit CureWanted(cure); },
                   .closed = [this, kind = notice.kind] { closed_.insert(kind); }});
  }
}

}  // namespace kestrel
