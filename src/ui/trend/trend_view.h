// The trend view: levels of the archive's records over time, down to the single record.
// SPDX-License-Identifier: MIT
#pragma once

#include <QProgressBar>
#include <QSettings>
#include <QTimer>
#include <QWidget>
#include <map>
#include <memory>
#include <optional>

#include "ui/chart/analyser_plot.h"
#include "ui/chart/picture_out.h"
#include "ui/library/record_keeper.h"
#include "ui/parts/line_label.h"
#include "ui/parts/notice_strip.h"
#include "ui/study/study_model.h"
#include "ui/trend/level_menu.h"
#include "ui/trend/record_card.h"
#include "ui/trend/trend_bar.h"
#include "ui/trend/trend_overview.h"
#include "ui/trend/trend_source.h"
#include "ui/trend/trend_tables.h"

namespace kestrel {

// Reads nothing before it is first shown. Axes and focus are those of the study.
class TrendView : public QWidget {
  Q_OBJECT

 public:
  // Over the keeper's archive; with none, or none that has a place, it says so.
  TrendView(StudyModel& study, RecordKeeper* keeper);
  ~TrendView() override;
  TrendView(const TrendView&) = delete;
  TrendView& operator=(const TrendView&) = delete;

  [[nodiscard]] AnalyserPlot& Plot() const { return *plot_; }
  // None without an archive.
  [[nodiscard]] TrendSource* Source() const { return source_.get(); }
  [[nodiscard]] const trend::Choice& Choice() const { return choice_; }
  [[nodiscard]] std::optional<ArchiveId> AtCursor() const { return cursor_; }
  void FocusPlot() { plot_->setFocus(); }
  void FocusFilter() { bar_->FocusFilter(); }
  void ChooseLevel(const trend::Level& level);

  // As it is shown now: with its line, and where it is from.
  [[nodiscard]] PlotPicture Picture() const;
  // What is shown as a table, CSV.
  [[nodiscard]] std::string Table() const;

  void Keep(QSettings& kept) const;
  void Restore(const QSettings& kept);

 signals:
  void Said(const QString& text);  // in passing
  void CopyAsked();
  void ExportAsked();

 protected:
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();
  [[nodiscard]] QWidget* MakeContent();
  [[nodiscard]] QWidget* MakeProgress();
  void ConnectBar();
  void ConnectPlot();
  void ConnectArchive();

  void Ask();
  void FollowKeeper();
  void TakeStudy();
  void Redraw();
  void ShowSpan();
  void ShowNote();
  void ShowTrouble();
  void ShowReading();
  [[nodiscard]] QString Hint() const;
  [[nodiscard]] const trend::Data& Data() const;
  [[nodiscard]] PlotRange ShownSeconds() const;

  void Change(const std::function<void(trend::Choice&)>& edit);
  void Carry(PlotCommand command);
  void ShowLast(double seconds);
  void AskSpan();
  void AskLimits();
  void OpenMenu(QPoint place, double x);

  void PutCursor(std::optional<std::size_t> point);
  void PutCursorOn(ArchiveId id);
  void StepCursor(double points);
  void NextEvent(int step);
  [[nodiscard]] std::optional<std::size_t> CursorPoint() const;
  [[nodiscard]] std::optional<std::size_t> LargestShown() const;
  [[nodiscard]] QString MomentOf(ArchiveId id) const;
  void LoadRecord();
  void Mark(bool isMarked);
  void Open();

  StudyModel& study_;
  RecordKeeper* keeper_;
  std::unique_ptr<TrendSource> source_;  // none without a place, as the next
  std::unique_ptr<Library> library_;
  trend::Choice choice_;  // its level is that of the data
  trend::Level wanted_;
  std::map<std::string, trend::Limits> typed_;  // by the level's title
  trend::Limits limits_;
  std::optional<ArchiveId> cursor_;
  std::optional<ArchiveId> mark_;  // to compare with
  LibraryChoices choices_;
  std::int64_t kept_ = 0;
  const trend::Data nothing_{};
  bool isBehind_ = true;  // what is shown, behind what is known
  bool isCancelled_ = false;

  TrendBar* bar_;
  LevelMenu* levels_;
  NoticeStrip* notices_;
  LineLabel* lblLine_;
  QLabel* lblNote_;
  AnalyserPlot* plot_;
  TrendOverview* overview_;
  RecordCard* card_;
  TrendTables* tables_;
  QWidget* progress_ = nullptr;
  QProgressBar* barProgress_ = nullptr;
  QTimer soon_;     // records that come in a row are asked for once
  QTimer settled_;  // figures follow when the view has come to rest
  QTimer load_;
};

}  // namespace kestrel
