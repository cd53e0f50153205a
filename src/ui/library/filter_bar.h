// Which records of the archive are listed: time, machine, point, kind, option, alarm, tag, text.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QDate>
#include <QDateEdit>
#include <QLineEdit>
#include <QTimer>
#include <QWidget>

#include "archive/filter.h"
#include "ui/library/library.h"
#include "ui/study/flat_button.h"

namespace kestrel {

class FilterBar : public QWidget {
  Q_OBJECT

 public:
  FilterBar();

  // At this day, which decides what "today" and "7 days" are.
  [[nodiscard]] archive::Filter Filter(QDate today) const;
  // The machine chosen; empty for all.
  [[nodiscard]] std::string Machine() const;
  void SetChoices(const LibraryChoices& choices);
  // The records of one day.
  void ChooseDay(QDate day);
  void Clear();
  [[nodiscard]] bool IsClear() const;
  [[nodiscard]] QLineEdit& Text() { return *txtText_; }

  FlatButton* cmdCalendar;

 signals:
  void Changed();
  void MachineChosen();

 private:
  void LayOut();
  void Connect();
  void ShowDays();
  void Ask();
  // The data of the item that is chosen.
  template <typename Value>
  [[nodiscard]] std::optional<Value> Chosen(const QComboBox& list) const;

  QLineEdit* txtText_;
  QComboBox* cbxTime_;
  QDateEdit* dateFrom_;
  QDateEdit* dateUntil_;
  QComboBox* cbxMachine_;
  QComboBox* cbxPoint_;
  QComboBox* cbxKind_;
  QComboBox* cbxOption_;
  QComboBox* cbxAlarm_;
  QLineEdit* txtTag_;
  FlatButton* cmdClear_;
  QTimer typing_;
};

}  // namespace kestrel
