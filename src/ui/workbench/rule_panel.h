// The rule by which thresholds are proposed, and the judgement of the replay.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDoubleSpinBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QWidget>
#include <array>

#include "ui/workbench/bench_card.h"
#include "ui/workbench/workbench_model.h"

namespace kestrel {

class RulePanel : public QWidget {
  Q_OBJECT

 public:
  explicit RulePanel(WorkbenchModel& model);

 private:
  void LayOut();
  void Connect();
  void Show();
  void ShowNeeds();
  void TakeRule();
  void TakeJudgement();

  WorkbenchModel& model_;
  std::array<QRadioButton*, 3> kinds_;  // by baseline::RuleKind
  std::array<BenchNote*, 3> needs_;
  QDoubleSpinBox* spnK_;
  QDoubleSpinBox* spnAtLeast_;
  QDoubleSpinBox* spnFaultAbove_;
  QSpinBox* spnM_;
  QSpinBox* spnN_;
  QDoubleSpinBox* spnHysteresis_;
};

}  // namespace kestrel
