// Beside the wide spectrum: the severity estimate and the lines, each once over all options.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QWidget>

#include "display/wide_view.h"
#include "ui/machine/severity_picture.h"
#include "ui/study/text_table.h"
#include "ui/workbench/bench_card.h"

namespace kestrel {

class WideSeverity : public QWidget {
 public:
  WideSeverity();
  void Show(const study::SeverityView& view, const analysis::ZoneLimits& limits);
  [[nodiscard]] const study::SeverityView& View() const { return picture_->View(); }

 private:
  QLabel* lblHeading_;
  SeverityPicture* picture_;
  BenchNote* note_;
};

// A press on a row puts the cursor there.
class WideLinesTable : public QWidget {
  Q_OBJECT

 public:
  WideLinesTable();
  void Show(const study::WideLines& lines);
  [[nodiscard]] TextTable& Table() { return *table_; }

 signals:
  void LineChosen(double hz);

 private:
  TextTable* table_;
};

}  // namespace kestrel
