// The chosen band and axis: its edges, its distribution and its thresholds.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDoubleSpinBox>
#include <QWidget>

#include "ui/workbench/detail_of.h"
#include "ui/workbench/detail_plot.h"
#include "ui/workbench/workbench_model.h"

namespace kestrel {

class DetailPanel : public QWidget {
  Q_OBJECT

 public:
  explicit DetailPanel(WorkbenchModel& model);

  [[nodiscard]] DetailPlot& Plot() { return *plot_; }
  [[nodiscard]] QString Title() const;
  // "Z, 7,827 to 8,610 Hz, option 0; 0 of 132 good above the warning, 3 of 24 bad below it"
  [[nodiscard]] QString Summary() const;

 private:
  void LayOut();
  void Show();
  void ShowEdges();
  void TakeEdges(bool isLow);
  void Move(AlarmLevel level, double g);
  void Step(AlarmLevel level, double db, int codes);

  WorkbenchModel& model_;
  DetailPlot* plot_;
  QDoubleSpinBox* spnLow_;
  QDoubleSpinBox* spnHigh_;
  DetailCurves curves_;
};

}  // namespace kestrel
