// What cannot be told from a record, why, and what would do: a card over the plot.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QLabel>
#include <optional>

#include "analysis/refusal.h"
#include "ui/study/flat_button.h"
#include "ui/study/text_table.h"

namespace kestrel {

class RefusalCard : public QFrame {
  Q_OBJECT

 public:
  explicit RefusalCard(QWidget* parent);

  // Hidden without one. `lowestHz`: from where the record could tell the quantity; none where it
  // cannot at all.
  void Show(const std::optional<analysis::Refusal>& refusal, std::optional<double> lowestHz);
  [[nodiscard]] const std::optional<analysis::Refusal>& Shown() const { return refusal_; }

 signals:
  void OptionWanted(int option);  // capture there
  void LowestWanted(double hz);   // take what this record can
  void BackWanted();              // to acceleration

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void FillOptions();

  std::optional<analysis::Refusal> refusal_;
  double lowestHz_ = 0;
  QLabel* lblTitle_;
  QLabel* lblReason_;
  TextTable* table_;
  FlatButton* cmdCure_;
  FlatButton* cmdLowest_;
  FlatButton* cmdBack_;
};

}  // namespace kestrel
