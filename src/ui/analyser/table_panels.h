// The tables beside the plot: peaks, levels with the sensor's bands, and the cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QWidget>

#include "display/tables.h"
#include "ui/study/flat_button.h"
#include "ui/study/row_delegate.h"
#include "ui/study/study_model.h"
#include "ui/study/text_table.h"

namespace kestrel {

// Told by each panel for its dock's title.
class SummarisedPanel : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

 signals:
  void Summarised(const QString& summary);
};

// A double click or Enter puts the cursor onto the peak.
class PeaksPanel : public SummarisedPanel {
 public:
  explicit PeaksPanel(StudyModel& model);
  [[nodiscard]] TextTable& Table() { return table_; }

 private:
  void Show();
  void GoTo(int row);

  StudyModel& model_;
  TextTable table_;
};

class LevelsPanel : public SummarisedPanel {
 public:
  explicit LevelsPanel(StudyModel& model);
  [[nodiscard]] TextTable& Table() { return levels_; }
  [[nodiscard]] TextTable& Bands() { return bands_; }
  void AddBand(const study::FreeBand& band);
  // The bands of the user's among the selected rows.
  void RemoveBands();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Show();
  void ShowBands();

  StudyModel& model_;
  TextTable levels_;
  QLabel lblBands_;
  Segments axis_;
  TextTable bands_;
  BarDelegate* bars_;
};

class CursorPanel : public SummarisedPanel {
 public:
  explicit CursorPanel(StudyModel& model);
  void NextMember(int step);
  [[nodiscard]] TextTable& Table() { return table_; }

 private:
  void Show();

  StudyModel& model_;
  TextTable table_;
};

}  // namespace kestrel
