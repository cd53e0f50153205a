// A record in words, amber where it is not as it seems.
// SPDX-License-Identifier: MIT
#include "ui/plot/record_caption.h"

#include <QVBoxLayout>

#include "record/record_line.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

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
  return LocalTime(record.time);
}

RecordCaption::RecordCaption()
    : lblRecordLine_(new LineLabel), notices_(new RecordNoticeStrip("recordNotices")) {
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
  connect(notices_, &RecordNoticeStrip::CureWanted, this, &RecordCaption::CureWanted);
}

void RecordCaption::Show(const Record& record, const RecordPresent& present) {
  const std::string line = RecordLine(record, LocalTimeOf(record).toStdString());
  lblRecordLine_->setText(QString::fromStdString(line));
  lblRecordLine_->setToolTip(Details(record));
  notices_->Show(record, RecordNotices(record, present));
}

}  // namespace kestrel
