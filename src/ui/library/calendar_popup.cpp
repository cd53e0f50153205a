// How the calendar is filled and shown.
// SPDX-License-Identifier: MIT
#include "ui/library/calendar_popup.h"

#include <QTextCharFormat>
#include <QVBoxLayout>

#include "ui/library/keeper_text.h"

namespace kestrel {

CalendarPopup::CalendarPopup(QWidget* parent)
    : QFrame(parent, Qt::Popup), calendar_(new QCalendarWidget), lblCount_(new QLabel) {
  setObjectName("popCalendar");
  setFrameShape(QFrame::StyledPanel);
  calendar_->setObjectName("calLibrary");
  calendar_->setAccessibleName(tr("Days with records"));
  calendar_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  lblCount_->setObjectName("lblDayCount");
  auto* column = new QVBoxLayout(this);
  column->addWidget(calendar_);
  column->addWidget(lblCount_);
  connect(calendar_, &QCalendarWidget::selectionChanged, this, &CalendarPopup::ShowCount);
  // Enter, or a click; the arrow keys only move.
  const auto choose = [this](QDate day) {
    hide();
    emit Chosen(day);
  };
  connect(calendar_, &QCalendarWidget::activated, this, choose);
}

void CalendarPopup::SetDays(const QMap<QDate, int>& counts) {
  counts_ = counts;
  calendar_->setDateTextFormat({}, {});
  QTextCharFormat bold;
  bold.setFontWeight(QFont::Bold);
  bold.setFontUnderline(true);
  for (auto day = counts.begin(); day != counts.end(); ++day) {
    calendar_->setDateTextFormat(day.key(), bold);
  }
  ShowCount();
}

void CalendarPopup::ShowCount() {
  const int count = counts_.value(calendar_->selectedDate());
  lblCount_->setText(count == 0 ? tr("No records on this day")
                                : CountOf(count, tr("record"), tr("records")));
}

void CalendarPopup::ShowUnder(const QWidget& button) {
  adjustSize();
  move(button.mapToGlobal(QPoint(button.width() - width(), button.height())));
  show();
  calendar_->setFocus();
}

}  // namespace kestrel
