// The monitor's view: a plan chosen, made, started and followed.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFileDialog>
#include <QStackedWidget>
#include <QTimer>
#include <QWidget>
#include <filesystem>

#include "seams/files.h"
#include "ui/parts/notice_strip.h"
#include "ui/study/study_model.h"
#include "ui/watch/alarm_teller.h"
#include "ui/watch/incidents_panel.h"
#include "ui/watch/monitor_bar.h"
#include "ui/watch/monitor_figures.h"
#include "ui/watch/monitor_host.h"
#include "ui/watch/monitor_runner.h"
#include "ui/watch/monitor_trend.h"
#include "ui/watch/plan_card.h"

namespace kestrel {

// Nothing in it waits, and nothing it shows has to be answered.
class MonitorView : public QWidget {
  Q_OBJECT

 public:
  // `archive`: where records go whose plan names no other place; without a text nowhere.
  MonitorView(StudyModel& study, Files& files, archive::Place archive, MonitorHost host);
  ~MonitorView() override;
  MonitorView(const MonitorView&) = delete;
  MonitorView& operator=(const MonitorView&) = delete;

  // What the window's main button does in this view: starts what is written, or stops what runs.
  void StartOrStop();
  [[nodiscard]] bool Running() const;
  // What that button says now, and whether it can be pressed.
  struct Offer {
    QString text = {};
    QString tip = {};
    bool mayStop = false;
    bool isEnabled = true;
  };
  [[nodiscard]] Offer WhatNow() const;

  void FocusFirst();
  // Reads a plan's file.
  void Open(const QString& file);
  bool SaveTo(const std::filesystem::path& file);
  [[nodiscard]] PlanCard& Plan() { return *plan_; }
  [[nodiscard]] MonitorTrend& Trend() { return *trend_; }
  [[nodiscard]] IncidentsPanel& Incidents() { return *incidents_; }
  [[nodiscard]] AnalyserPlot& Plot() const { return trend_->Plot(); }

 signals:
  void Said(const QString& text);  // in passing
  void StateChanged();             // WhatNow
  void TrendAsked(const kestrel::trend::Level& level);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void LayOut();
  [[nodiscard]] QWidget* MakeEmpty();
  [[nodiscard]] QWidget* MakeParts();
  void Connect();
  void MakeNew();
  void AskOpen();
  void AskSave();
  [[nodiscard]] QFileDialog* Ask(const char* name, const QString& title,
                                 QFileDialog::AcceptMode mode);
  void Save();
  void Start();
  void Fail(const QString& trouble);
  void ShowState();
  void ShowPlan();
  void ShowTrouble();
  // A file that no plan has yet.
  [[nodiscard]] std::filesystem::path FreeFile(const std::string& sensor) const;

  StudyModel& study_;
  Files& files_;
  archive::Place archive_;
  MonitorHost host_;
  std::filesystem::path file_;
  std::int64_t records_ = 0;  // as followed last
  QString trouble_;           // of this view's own doing
  bool hasBegun_ = false;

  MonitorBar* bar_;
  NoticeStrip* notices_;
  MonitorFigures* figures_;
  PlanCard* plan_;
  MonitorTrend* trend_;
  IncidentsPanel* incidents_;
  QStackedWidget* pages_;
  QWidget* parts_ = nullptr;
  QTimer tick_;
};

}  // namespace kestrel
