// The proposal for the chosen band and axis, and what is done with all of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "ui/study/flat_button.h"
#include "ui/study/text_table.h"
#include "ui/workbench/bench_card.h"
#include "ui/workbench/workbench_model.h"

namespace kestrel {

class ProposalPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ProposalPanel(WorkbenchModel& model);

  [[nodiscard]] TextTable& Table() { return *table_; }
  // Beside the title: "band 3, Z; 17 more changed".
  [[nodiscard]] QString Summary() const;
  // How taking over or writing ended.
  void Say(const QString& text);

  FlatButton* cmdReport;
  FlatButton* cmdWrite;
  FlatButton* cmdTakeOver;
  FlatButton* cmdReset;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();
  void Show();
  void FitTable();

  WorkbenchModel& model_;
  TextTable* table_;
  BenchNote* lblRefusal_;
  BenchNote* lblSaid_;
};

}  // namespace kestrel
