// Choosing records that are known to be good or bad, by filters over the archive.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "baseline/sets.h"
#include "ui/library/filter_bar.h"
#include "ui/library/library.h"

namespace kestrel {

// Says how many records fit while the filters change.
class SetChooser : public QDialog {
  Q_OBJECT

 public:
  SetChooser(const archive::Place& place, baseline::Verdict verdict, QWidget* parent);

  [[nodiscard]] baseline::Part Part() const;

 signals:
  void Chosen(const kestrel::baseline::Part& part);

 private:
  void LayOut();
  void Count();
  void ShowCount(std::size_t count);

  baseline::Verdict verdict_;
  Library library_;
  FilterBar* filter_;
  QLineEdit* txtName_;
  QComboBox* cbxEvery_;
  QLabel* lblCount_;
  QPushButton* cmdTake_;
};

}  // namespace kestrel
