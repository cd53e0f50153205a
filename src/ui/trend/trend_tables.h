// The tables beside a trend: its alarm events and gaps, and the figures of what is shown.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QWidget>

#include "trend/scene.h"
#include "ui/study/text_table.h"

namespace kestrel {

class TrendTables : public QWidget {
  Q_OBJECT

 public:
  TrendTables();

  void ShowEvents(const trend::Data& read, const trend::Choice& choice);
  // Of what lies within a part of the axis.
  void ShowFigures(const trend::Data& read, const trend::Choice& choice, const PlotRange& across);
  [[nodiscard]] TextTable& Events() { return events_; }
  [[nodiscard]] TextTable& Figures() { return figures_; }
  // The row of the latest event that begins at or before a moment, in s since 1970.
  void SelectEvent(int row) { events_.selectRow(row); }

 signals:
  // Of a record, by its number; of a gap, the last before it.
  void RecordAsked(qint64 id);
  void OpenAsked();

 private:
  QLabel lblEvents_;
  TextTable events_;
  QLabel lblFigures_;
  TextTable figures_;
};

}  // namespace kestrel
