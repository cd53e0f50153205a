// The waterfall of a study: the map with the spectrum of a row above and a level over time beside.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QToolButton>
#include <QWidget>
#include <optional>
#include <vector>

#include "display/row_study.h"
#include "ui/analyser/column_view.h"
#include "ui/chart/analyser_plot.h"
#include "ui/study/study_model.h"
#include "ui/waterfall/waterfall_view.h"

namespace kestrel {

// Rows of one option share a map: the option of the row that is looked at. That is the row chosen;
// while none is, the newest, or the one last shown while the study is held. Does nothing while it
// is hidden.
class WaterfallArea : public QWidget {
  Q_OBJECT

 public:
  explicit WaterfallArea(StudyModel& model, QWidget* parent = nullptr);

  [[nodiscard]] AnalyserPlot& Plot() { return *plot_; }
  [[nodiscard]] WaterfallView& Map() { return *map_; }
  [[nodiscard]] ColumnView& Column() { return *column_; }
  // The row that is looked at; nothing before the first.
  [[nodiscard]] std::optional<study::TimePoint> ShownTime() const { return shown_; }
  // That row alone as a study, with its cursor; null before the first.
  [[nodiscard]] const study::Study* Row() const { return row_ ? &*row_ : nullptr; }
  // Nothing follows the newest.
  void Choose(std::optional<study::TimePoint> time);
  [[nodiscard]] bool IsFollowing() const { return !chosen_; }
  // How often all rows were drawn anew.
  [[nodiscard]] int Rebuilds() const { return rebuilds_; }

 signals:
  void CommandAsked(kestrel::PlotCommand command);   // of the spectrum's plot
  void MenuAsked(QPoint place, double x, int pane);  // in the spectrum's plot or the map
  void RowChosen();

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // What the rows in the map have in common, and what was left out.
  struct OnMap {
    int option = -1;
    study::StudyChoice choice = {};
    int version = 0;         // of the study's rows
    std::int64_t taken = 0;  // rows of the study that have been looked at
    int otherOption = 0;     // rows left out, by reason
    int earlier = 0;
    std::optional<analysis::Refusal> refused = {};
    std::string gap = {};  // before the next row
    double largest = kNoValue;
    bool hasScale = false;
  };

  void LayOut();
  void Connect();
  void Refresh();
  void ShowCursor();
  void ShowRow(std::size_t row);
  void ShowColumn();
  void DescribeMap();
  void ShowNote();
  void Begin();
  void AddRows();
  void AddRow(std::size_t row);
  void FitScale();
  void FitSpan();
  void Align();
  void Step(int rows, int bins);
  [[nodiscard]] std::optional<std::size_t> LookedAt() const;
  [[nodiscard]] std::string MapLine() const;

  StudyModel& model_;
  AnalyserPlot* plot_;
  WaterfallView* map_;
  ColumnView* column_;
  QWidget* plotFrame_;
  QLabel* figures_;
  QLabel* note_;
  QToolButton* follow_;
  std::optional<study::Study> row_;  // the row that is looked at
  std::optional<study::TimePoint> chosen_;
  std::optional<study::TimePoint> shown_;
  std::vector<study::RecordId> selected_;
  std::vector<WaterfallGap> gaps_;
  OnMap onMap_;
  bool isFrozen_ = false;
  bool isSpanUsers_ = false;
  int rebuilds_ = 0;
};

}  // namespace kestrel
