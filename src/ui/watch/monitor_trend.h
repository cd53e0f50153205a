// One level of the monitored sensor over time.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QSettings>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "monitor/plan/plan.h"
#include "ui/chart/analyser_plot.h"
#include "ui/trend/level_menu.h"
#include "ui/trend/trend_source.h"
#include "ui/workbench/bench_card.h"

namespace kestrel {

// Of the plan's machine at its bench. Axes and focus are those of the study.
class MonitorTrend : public QWidget {
  Q_OBJECT

 public:
  explicit MonitorTrend(StudyModel& study);
  ~MonitorTrend() override;
  MonitorTrend(const MonitorTrend&) = delete;
  MonitorTrend& operator=(const MonitorTrend&) = delete;

  // Records of the plan there; without a place there are none.
  void Of(const archive::Place& place, const monitor::Plan& plan);
  // Records have come.
  void Follow();
  void ChooseLevel(const trend::Level& level);
  [[nodiscard]] const trend::Level& Level() const { return choice_.level; }
  [[nodiscard]] AnalyserPlot& Plot() const { return *plot_; }
  [[nodiscard]] const trend::Data& Data() const;

 signals:
  void TrendAsked(const kestrel::trend::Level& level);  // the whole of it, in its own view

 private:
  void Ask();
  void Redraw();
  void TakeStudy();
  void Carry(PlotCommand command);
  [[nodiscard]] QString Hint() const;

  StudyModel& study_;
  archive::Place place_;
  archive::Filter filter_;
  trend::Choice choice_;
  const trend::Data nothing_{};
  FlatButton* cmdLevel_;
  AnalyserPlot* plot_;
  BenchCard* card_;
  QTimer soon_;
  std::unique_ptr<TrendSource> source_;  // goes first
};

}  // namespace kestrel
