// The replay: false alarms and misses of all bands together, and of each band and axis.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QWidget>

#include "ui/study/text_table.h"
#include "ui/workbench/bench_card.h"
#include "ui/workbench/workbench_model.h"

namespace kestrel {

// A row is a cell of the workbench: chosen here, it is chosen everywhere.
class ReplayPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ReplayPanel(WorkbenchModel& model);
  [[nodiscard]] TextTable& Table() { return *table_; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  struct Figure {
    QLabel* title;
    QLabel* count;
    QLabel* of;
    BenchNote* share;
  };
  [[nodiscard]] Figure MakeFigure(const char* name, const QString& title);
  void LayOut();
  void Show();
  void ShowFigure(const Figure& figure, const baseline::Count& count);
  void ShowRows();
  void Colour();

  WorkbenchModel& model_;
  Figure falseAlarms_;
  Figure misses_;
  TextTable* table_;
};

}  // namespace kestrel
