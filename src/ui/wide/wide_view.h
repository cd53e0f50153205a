// The wide view: one spectrum over all rate options, how they agree, its lines, its severity.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QSettings>
#include <QWidget>
#include <optional>

#include "ui/chart/analyser_plot.h"
#include "ui/chart/picture_out.h"
#include "ui/parts/line_label.h"
#include "ui/parts/notice_strip.h"
#include "ui/study/study_model.h"
#include "ui/wide/option_strip.h"
#include "ui/wide/wide_bar.h"
#include "ui/wide/wide_model.h"
#include "ui/wide/wide_panels.h"

namespace kestrel {

// Axes, focus, machine and zones are those of the study. Captures are asked for, not made.
class WideView : public QWidget {
  Q_OBJECT

 public:
  // `archive` without a text: only what is captured now is shown.
  WideView(StudyModel& study, const archive::Place& archive);
  ~WideView() override;
  WideView(const WideView&) = delete;
  WideView& operator=(const WideView&) = delete;

  [[nodiscard]] WideModel& Model() { return model_; }
  [[nodiscard]] AnalyserPlot& Plot() const { return *plot_; }
  void FocusPlot() { plot_->setFocus(); }
  void FocusKept() { bar_->cbxKept->setFocus(); }
  // Why captures ended before the last one, or which settings are not as they were; empty: all
  // well.
  void SetTrouble(const QString& trouble);

  // As it is shown now.
  [[nodiscard]] PlotPicture Picture() const;
  // The joined curves as CSV.
  [[nodiscard]] std::string Table() const;

  void Keep(QSettings& kept) const;
  void Restore(const QSettings& kept);

 signals:
  void Said(const QString& text);       // in passing
  void CaptureAsked(unsigned options);  // a bit each
  void CopyAsked();
  void ExportAsked();

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut();
  [[nodiscard]] QWidget* MakePicture();
  void Connect();
  void ConnectPlot();
  void Redraw();
  void ShowScene();
  void ShowSide();
  void ShowNotices();
  void ShowKept();
  void ShowSpan();
  void FollowPlot();
  void OpenKept(int index);
  void Change(const study::WideLook& look);
  void Carry(PlotCommand command);
  void ToggleAxis(Axis axis, bool isFocus);
  void OpenMenu(QPoint place);

  void PutCursor(std::optional<double> hz);
  void StepCursor(double points);
  void SnapCursor(double hz);
  void NextLine(int step);
  [[nodiscard]] double MiddleHz() const;

  StudyModel& study_;
  WideModel model_;
  study::WideLook look_;
  study::WideLines lines_;
  std::optional<double> cursor_;  // Hz, of a joined point
  bool hasRead_ = false;
  bool isBehind_ = true;  // what is shown, behind what is known

  WideBar* bar_;
  NoticeStrip* notices_;
  LineLabel* lblLine_;
  AnalyserPlot* plot_;
  OptionStrip* strip_;
  QLabel* lblNoise_;
  WideSeverity* severity_;
  WideLinesTable* table_;
  BenchCard* cardSeverity_;
  BenchCard* cardLines_;
};

}  // namespace kestrel
