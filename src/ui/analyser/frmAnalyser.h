// The analyser: the window in which records are looked at, compared and understood.
// SPDX-License-Identifier: MIT
#pragma once

#include <QActionGroup>
#include <QMainWindow>
#include <QStackedWidget>
#include <array>
#include <functional>
#include <map>
#include <memory>

#include "seams/files.h"
#include "ui/analyser/analyser_dock.h"
#include "ui/analyser/plot_area.h"
#include "ui/analyser/records_panel.h"
#include "ui/analyser/report_export.h"
#include "ui/analyser/table_panels.h"
#include "ui/analyser/tool_bar.h"
#include "ui/analyser/view_bar.h"
#include "ui/analyser/waterfall_area.h"
#include "ui/chart/theme.h"
#include "ui/library/library_view.h"
#include "ui/library/record_export.h"
#include "ui/machine/known_panel.h"
#include "ui/machine/severity_panel.h"
#include "ui/study/study_model.h"
#include "ui/trend/trend_view.h"
#include "ui/watch/monitor_view.h"
#include "ui/wide/wide_view.h"
#include "ui/workbench/workbench_view.h"

namespace kestrel {

// What the window asks of the program around it. Each may be called at any time and returns at
// once.
struct AnalyserHost {
  Files& files;                              // where pictures go
  std::function<void()> capture;             // as a press of Start
  std::function<void()> stop;                // what runs, repeats included
  std::function<void(int)> captureAtOption;  // sets the sample-rate option, then captures
  std::function<void(Cure)> cure;            // of the record at hand
  std::function<void()> openRepeat;          // the form of repeated captures
  std::function<void()> toggleRepeat;
  RecordKeeper* keeper = nullptr;           // of the archive; null where there is none
  std::function<void()> openBands = [] {};  // as WorkbenchHost has them
  std::function<void(const BandProposal&, bool, std::function<void(const std::string&)>)> propose =
      [](const auto&, bool, const auto&) {};
  // Captures at these rate options, a bit each, one after the other, and puts the settings back.
  std::function<void(unsigned)> captureWide = [](unsigned) {};
  // About how long four of them take, s; 0 where it is not known.
  std::function<double()> wideSeconds = [] { return 0.0; };
  MonitorHost monitor = {};
};

class frmAnalyser : public QMainWindow {
 public:
  // Of what is kept about docks: another one where there are other docks.
  static constexpr int kDocksVersion = 3;

  explicit frmAnalyser(AnalyserHost host, QWidget* parent = nullptr);
  ~frmAnalyser() override;
  frmAnalyser(const frmAnalyser&) = delete;
  frmAnalyser& operator=(const frmAnalyser&) = delete;

  [[nodiscard]] StudyModel& Model() { return model_; }
  [[nodiscard]] PlotArea& Area() { return *area_; }
  [[nodiscard]] LibraryView& Library() { return *library_; }
  [[nodiscard]] TrendView& Trend() { return *trend_; }
  [[nodiscard]] WorkbenchView& Workbench() { return *workbench_; }
  [[nodiscard]] WideView& Wide() { return *wide_; }
  [[nodiscard]] MonitorView& Monitor() { return *monitor_; }

  // "Simulated sensor", "USB adapter Ezusb-0", and what else is known.
  void SetSensor(const QString& text, const QString& detail);
  // The capture, or a series of them, has begun or ended.
  void SetRunning(bool isRunning);
  void SetProgress(const QString& text, double part);

  void ShowInFront();
  void ChooseView(study::View view);
  // Writes the plot into a file, a trend also as a table (csv); says in the status bar how that
  // went.
  bool Export(const QString& file);
  [[nodiscard]] ReportExport& Reports() { return *reports_; }
  void Copy();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void LayOut();
  void AddDocks();
  AnalyserDock* AddDock(const char* name, const QString& title, QWidget* panel,
                        Qt::DockWidgetArea area);
  void AddMenus();
  void AddPlotMenu();
  void AddThemes(QMenu& menu);
  void AddKeys();
  void AddKey(const QKeySequence& key, std::function<void()> deed);
  void Connect();
  void Refresh();
  void ShowView(study::View view);
  void ShowPage(QWidget* page);
  [[nodiscard]] QWidget* WidgetOf(study::View view) const;
  // The plot of the view that is shown.
  [[nodiscard]] AnalyserPlot& Plot() const;
  void TakeColours();
  void ShowConditions();
  // In the view that is shown.
  void CarryOut(PlotCommand command);
  void AskMarker(double hz);
  void AskBand();
  void AskExport();
  void OfferRecords();
  // The view that is shown, as the content of a picture file.
  [[nodiscard]] QByteArray FileOf(const QString& ending);
  [[nodiscard]] PlotPicture PlotPictureNow() const;
  // Of the files that the view can be written into.
  [[nodiscard]] QStringList Endings() const;
  void ToggleCapture();
  void ShowCaptureName();
  void ShowMainButton();
  void NextPane(int step);
  void ShowPlotAlone(bool isAlone);
  void Restore();
  // What could not be read of it.
  QStringList RestoreChoice(const QString& text);
  void SayUnread(const QStringList& unread);
  void Keep() const;

  AnalyserHost host_;
  StudyModel model_;
  ViewBar* viewBar_;
  AnalyserToolBar* toolBar_;
  PlotArea* area_;
  WaterfallArea* waterfall_;
  LibraryView* library_;
  TrendView* trend_;
  WorkbenchView* workbench_;
  WideView* wide_;
  MonitorView* monitor_;
  std::unique_ptr<RecordExport> records_;  // none without an archive
  ReportExport* reports_;
  QStackedWidget* views_;
  QLabel* lblConditions_;
  KnownPanel* known_;
  LevelsPanel* levels_;
  std::vector<AnalyserDock*> docks_;
  QActionGroup* themes_ = nullptr;
  study::View view_ = study::View::Spectrum;
  std::map<study::View, QByteArray> dockStates_;
  QByteArray beforeAlone_;
  bool isRunning_ = false;
};

}  // namespace kestrel
