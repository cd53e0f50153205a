// The severity estimate, 10 to 1000 Hz: zones by editable limits, or what has to be captured.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <array>
#include <vector>

#include "ui/machine/severity_picture.h"
#include "ui/study/number_field.h"
#include "ui/study/study_model.h"

namespace kestrel {

// While it is hidden it waits.
class SeverityPanel : public QWidget {
  Q_OBJECT

 public:
  explicit SeverityPanel(StudyModel& model, QWidget* parent = nullptr);

  [[nodiscard]] SeverityPicture& Picture() { return *picture_; }

 signals:
  void OptionWanted(int option);  // capture there: the slowest of those that are missing

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();
  void Refresh();
  void ShowLimits();
  void Take(std::size_t limit, double value);
  void ChooseTable(int index);
  [[nodiscard]] analysis::ZoneLimits With(std::size_t limit, double value) const;

  StudyModel& model_;
  const std::vector<analysis::SeverityTable> tables_;
  QLabel* heading_;
  SeverityPicture* picture_;
  QLabel* note_;
  QPushButton* capture_;
  QComboBox* table_;
  std::array<NumberField*, 3> limits_;  // A/B, B/C, C/D
  QLabel* source_;
};

}  // namespace kestrel
