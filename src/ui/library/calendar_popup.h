// A calendar in which days with records are bold.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCalendarWidget>
#include <QFrame>
#include <QLabel>
#include <QMap>

namespace kestrel {

class CalendarPopup : public QFrame {
  Q_OBJECT

 public:
  explicit CalendarPopup(QWidget* parent);

  void SetDays(const QMap<QDate, int>& counts);
  void ShowUnder(const QWidget& button);

 signals:
  void Chosen(QDate day);

 private:
  void ShowCount();

  QCalendarWidget* calendar_;
  QLabel* lblCount_;
  QMap<QDate, int> counts_;
};

}  // namespace kestrel
