// Asks for a band of the user's: name, from and to in Hz.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include "chart/axis_map.h"
#include "study/study_choice.h"
#include "ui/study/number_field.h"

namespace kestrel {

// Stays beside the analyser without stopping it, and is gone when it closes.
class BandDialog : public QDialog {
  Q_OBJECT

 public:
  // `proposed` in Hz: what the plot shows.
  explicit BandDialog(const PlotRange& proposed, QWidget* parent = nullptr);

 signals:
  void Told(const kestrel::study::FreeBand& band);

 private:
  void Add();

  QLineEdit* called_;
  NumberField* from_;
  NumberField* to_;
  QLabel* lblWhyNot_;
};

}  // namespace kestrel
