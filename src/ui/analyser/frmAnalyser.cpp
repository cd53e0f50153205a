// How the analyser's window is put together.
// SPDX-License-Identifier: MIT
#include "ui/analyser/frmAnalyser.h"

#include <QApplication>
#include <QMenuBar>
#include <QScrollArea>
#include <QShortcut>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/chart/look.h"
#include "ui/parts/fit_screen.h"
#include "ui/study/scrolling_bars.h"

namespace kestrel {
namespace {

constexpr QSize kUsualSize{1280, 800};
constexpr int kReportSaidMs = 6000;
constexpr double kMostSeconds = 120;  // longer is told in minutes

// With controls of its own.
bool HasOwnControls(study::View view) {
  return view == study::View::Wide || view == study::View::Library || view == study::View::Trend ||
         view == study::View::AlarmBands || view == study::View::Monitor;
}

// Shown over the docks, in place of a menu bar of its own. On a narrow screen the bars scroll.
QWidget* HeadOf(QMenuBar* menus, ViewBar* views, AnalyserToolBar* tools) {
  auto* bars = new QWidget;
  auto* rows = new QVBoxLayout(bars);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(views);
  rows->addWidget(tools);
  auto* scroll = new ScrollingBars("bars", bars);
  auto* head = new QWidget;
  auto* column = new QVBoxLayout(head);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(menus);
  column->addWidget(scroll);
  return head;
}

}  // namespace

frmAnalyser::frmAnalyser(AnalyserHost host, QWidget* parent)
    : QMainWindow(parent, Qt::Window),
      host_(std::move(host)),
      viewBar_(new ViewBar),
      toolBar_(new AnalyserToolBar(model_)),
      area_(new PlotArea(model_)),
      waterfall_(new WaterfallArea(model_)),
      library_(new LibraryView(model_, host_.keeper)),
      trend_(new TrendView(model_, host_.keeper)),
      workbench_(new WorkbenchView(
          host_.keeper != nullptr ? host_.keeper->Place() : archive::Place(),
          {.files = host_.files, .openBands = host_.openBands, .propose = host_.propose})),
      wide_(
          new WideView(model_, host_.keeper != nullptr ? host_.keeper->Place() : archive::Place())),
      monitor_(new MonitorView(model_, host_.files,
                               host_.keeper != nullptr ? host_.keeper->Place() : archive::Place(),
                               host_.monitor)),
      reports_(new ReportExport(model_, *library_, host_.files, *this)),
      views_(new QStackedWidget),
      lblConditions_(new QLabel),
      known_(new KnownPanel(model_)),
      levels_(new LevelsPanel(model_)) {
  setObjectName("frmAnalyser");
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(tr("Analyser"));
  setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  TakeColours();
  qApp->installEventFilter(this);
  LayOut();
  AddDocks();
  AddMenus();
  AddPlotMenu();
  AddKeys();
  Connect();
  resize(kUsualSize.boundedTo(RoomOnScreen(*this)));
  Restore();
  Refresh();
}

frmAnalyser::~frmAnalyser() {
  Keep();
}

void frmAnalyser::LayOut() {
  views_->setObjectName("views");
  views_->addWidget(area_);
  views_->addWidget(waterfall_);
  views_->addWidget(wide_);
  views_->addWidget(library_);
  views_->addWidget(trend_);
  views_->addWidget(workbench_);
  views_->addWidget(monitor_);
  ShowPage(area_);
  setCentralWidget(views_);
  setMenuWidget(HeadOf(new QMenuBar, viewBar_, toolBar_));
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
  statusBar()->setObjectName("analyserStatus");
  statusBar()->setSizeGripEnabled(false);
  lblConditions_->setObjectName("lblConditions");
  lblConditions_->setToolTip(tr("When the record that is shown was read"));
  statusBar()->addPermanentWidget(lblConditions_);
}

AnalyserDock* frmAnalyser::AddDock(const char* name, const QString& title, QWidget* panel,
                                   Qt::DockWidgetArea area) {
  auto* dock = new AnalyserDock(name, title, panel, this);
  if (auto* summarised = qobject_cast<SummarisedPanel*>(panel)) {
    connect(summarised, &SummarisedPanel::Summarised, dock, &AnalyserDock::SetSummary);
  }
  addDockWidget(area, dock);
  docks_.push_back(dock);
  return dock;
}

void frmAnalyser::AddDocks() {
  AddDock("dockRecords", tr("Records"), new RecordsPanel(model_), Qt::LeftDockWidgetArea);
  auto* peaks = new PeaksPanel(model_);
  AddDock("dockPeaks", tr("Peaks"), peaks, Qt::RightDockWidgetArea)->SetCopied(&peaks->Table());
  auto* levels = AddDock("dockLevels", tr("Levels"), levels_, Qt::RightDockWidgetArea);
  levels->SetCopied(&levels_->Table());
  levels->AddButton("_add", "plus", tr("A band of your own; Del removes it"),
                    [this] { AskBand(); });
  auto* cursor = new CursorPanel(model_);
  AddDock("dockCursor", tr("Cursor"), cursor, Qt::BottomDockWidgetArea)
      ->SetCopied(&cursor->Table());
  connect(&area_->Commands(), &PlotCommands::MemberAsked, cursor, &CursorPanel::NextMember);
  auto* known = AddDock("dockKnown", tr("Known frequencies"), known_, Qt::RightDockWidgetArea);
  auto* estimate = new SeverityPanel(model_);
  connect(estimate, &SeverityPanel::OptionWanted, this,
          [this](int option) { host_.captureAtOption(option); });
  auto* severity =
      AddDock("dockSeverity", tr("Severity estimate"), estimate, Qt::RightDockWidgetArea);
  tabifyDockWidget(docks_[2], known);
  tabifyDockWidget(known, severity);
  docks_[2]->raise();
  resizeDocks({docks_[0], docks_[1]}, {236, 392}, Qt::Horizontal);
  resizeDocks({docks_[1], docks_[2]}, {380, 330}, Qt::Vertical);
  resizeDocks({docks_[3]}, {190}, Qt::Vertical);
}

void frmAnalyser::Connect() {
  connect(viewBar_, &ViewBar::ViewChosen, this,
          [this](int view) { ChooseView(static_cast<study::View>(view)); });
  connect(viewBar_->cmdCapture, &QToolButton::clicked, this, &frmAnalyser::ToggleCapture);
  connect(viewBar_->cmdRepeat, &QToolButton::clicked, this, [this] { host_.openRepeat(); });
  connect(known_, &KnownPanel::LibraryChanged, this, &frmAnalyser::Keep);
  connect(&model_, &StudyModel::Changed, this, &frmAnalyser::Refresh);
  connect(library_, &LibraryView::Said, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
  OfferRecords();
  connect(trend_, &TrendView::Said, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
  connect(trend_, &TrendView::CopyAsked, this, &frmAnalyser::Copy);
  connect(trend_, &TrendView::ExportAsked, this, &frmAnalyser::AskExport);
  connect(reports_, &ReportExport::Said, this, [this](const QString& text, bool isTrouble) {
    statusBar()->showMessage(text, isTrouble ? 0 : kReportSaidMs);
  });
  library_->SetTaken([this](const std::vector<ArchiveId>& ids, bool areGood) {
    workbench_->TakeRecords(areGood ? baseline::Verdict::Good : baseline::Verdict::Bad, ids);
  });
  connect(wide_, &WideView::CaptureAsked, this,
          [this](unsigned options) { host_.captureWide(options); });
  connect(monitor_, &MonitorView::Said, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
  connect(monitor_, &MonitorView::StateChanged, this, &frmAnalyser::ShowMainButton);
  connect(monitor_, &MonitorView::TrendAsked, this, [this](const trend::Level& level) {
    ChooseView(study::View::Trend);
    trend_->ChooseLevel(level);
  });
  connect(wide_, &WideView::CopyAsked, this, &frmAnalyser::Copy);
  connect(wide_, &WideView::ExportAsked, this, &frmAnalyser::AskExport);
  connect(workbench_, &WorkbenchView::Said, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
  connect(area_, &PlotArea::CureWanted, this, [this](Cure cure) { host_.cure(cure); });
  connect(area_, &PlotArea::OptionWanted, this,
          [this](int option) { host_.captureAtOption(option); });
  for (AnalyserPlot* plot : {&area_->Plot(), &waterfall_->Plot()}) {
    connect(plot, &AnalyserPlot::ViewChanged, this, &frmAnalyser::Refresh);
  }
  connect(waterfall_, &WaterfallArea::CommandAsked, this, &frmAnalyser::CarryOut);
  connect(toolBar_->cmdBack, &QToolButton::clicked, this, [this] { Plot().GoBack(); });
  connect(toolBar_->cmdForward, &QToolButton::clicked, this, [this] { Plot().GoForward(); });
  connect(toolBar_->cmdShowAll, &QToolButton::clicked, this, [this] { Plot().ShowAll(); });
  connect(toolBar_->cmdCopy, &QToolButton::clicked, this, &frmAnalyser::Copy);
  connect(toolBar_->cmdExport, &QToolButton::clicked, this, &frmAnalyser::AskExport);
  connect(toolBar_->cmdLive, &QToolButton::clicked, this, [this] { model_.ToggleHold(); });
  connect(&area_->Commands(), &PlotCommands::CopyAsked, this, &frmAnalyser::Copy);
  connect(&area_->Commands(), &PlotCommands::ExportAsked, this, &frmAnalyser::AskExport);
  connect(&area_->Commands(), &PlotCommands::MarkerAsked, this, &frmAnalyser::AskMarker);
}

void frmAnalyser::ChooseView(study::View view) {
  if (view == model_.Choice().view) return;
  model_.Change([view](study::StudyChoice& choice) { choice.view = view; });
}

// Each view remembers its own docks.
void frmAnalyser::Refresh() {
  const study::View view = model_.Choice().view;
  viewBar_->SetView(static_cast<int>(view));
  if (view != view_) ShowView(view);
  const AnalyserPlot& plot = Plot();
  toolBar_->cmdBack->setEnabled(plot.CanGoBack());
  toolBar_->cmdForward->setEnabled(plot.CanGoForward());
  toolBar_->cmdShowAll->setEnabled(!plot.ShowsAll());
  ShowConditions();
}

// Views with controls of their own need all the room there is: docks are hidden until the user
// wants them.
void frmAnalyser::ShowView(study::View view) {
  dockStates_[view_] = saveState(kDocksVersion);
  const bool hadOwnControls = HasOwnControls(std::exchange(view_, view));
  const bool hasOwnControls = HasOwnControls(view);
  const auto kept = dockStates_.find(view);
  if (kept != dockStates_.end()) {
    restoreState(kept->second, kDocksVersion);
  } else if (hasOwnControls || hadOwnControls) {
    for (AnalyserDock* dock : docks_) dock->setVisible(!hasOwnControls);
  }
  toolBar_->setVisible(!hasOwnControls);
  ShowMainButton();
  reports_->SetFromLibrary(view == study::View::Library);
  menuWidget()->findChild<QScrollArea*>("bars")->updateGeometry();
  ShowPage(WidgetOf(view));
}

// A page that is not seen asks for no room.
void frmAnalyser::ShowPage(QWidget* page) {
  for (int i = 0; i < views_->count(); ++i) {
    QWidget* each = views_->widget(i);
    const auto policy = each == page ? QSizePolicy::Preferred : QSizePolicy::Ignored;
    each->setSizePolicy(policy, policy);
  }
  views_->setCurrentWidget(page);
}

QWidget* frmAnalyser::WidgetOf(study::View view) const {
  switch (view) {
    case study::View::Wide:
      return wide_;
    case study::View::Library:
      return library_;
    case study::View::Trend:
      return trend_;
    case study::View::AlarmBands:
      return workbench_;
    case study::View::Monitor:
      return monitor_;
    case study::View::Waterfall:
      return waterfall_;
    default:
      return area_;
  }
}

AnalyserPlot& frmAnalyser::Plot() const {
  if (view_ == study::View::Trend) return trend_->Plot();
  if (view_ == study::View::Wide) return wide_->Plot();
  if (view_ == study::View::Monitor) return monitor_->Plot();
  return view_ == study::View::Waterfall ? waterfall_->Plot() : area_->Plot();
}

void frmAnalyser::SetSensor(const QString& text, const QString& detail) {
  viewBar_->SetSensor(text, detail);
}

void frmAnalyser::SetRunning(bool isRunning) {
  isRunning_ = isRunning;
  ShowMainButton();
}

void frmAnalyser::SetProgress(const QString& text, double part) {
  viewBar_->SetProgress(text, part);
}

void frmAnalyser::ToggleCapture() {
  if (view_ == study::View::Monitor) return monitor_->StartOrStop();
  if (isRunning_) return host_.stop();
  view_ == study::View::Wide ? host_.captureWide(0b1111) : host_.capture();
}

// Where monitoring is shown, it is what the button starts and stops.
void frmAnalyser::ShowMainButton() {
  const bool isMonitor = view_ == study::View::Monitor;
  const MonitorView::Offer offer = monitor_->WhatNow();
  isMonitor ? viewBar_->NameCapture(offer.text, offer.tip) : ShowCaptureName();
  viewBar_->SetRunning(isMonitor ? offer.mayStop : isRunning_);
  viewBar_->cmdCapture->setEnabled(!isMonitor || offer.isEnabled);
}

// What the main button does in the other views.
void frmAnalyser::ShowCaptureName() {
  if (view_ != study::View::Wide) return viewBar_->NameCapture({}, {});
  const double seconds = host_.wideSeconds();
  const QString lasts = seconds < kMostSeconds ? tr("%1 s").arg(std::ceil(seconds))
                                               : tr("%1 min").arg(std::ceil(seconds / 60));
  viewBar_->NameCapture(
      seconds > 0 ? tr("Capture wide, %1").arg(lasts) : tr("Capture wide"),
      tr("One capture at each sample-rate option, then the settings as they were (F5)"));
}

void frmAnalyser::ShowInFront() {
  show();
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
  if (view_ == study::View::Library) return library_->FocusList();
  if (view_ == study::View::AlarmBands) return workbench_->FocusFirst();
  if (view_ == study::View::Wide) return wide_->FocusPlot();
  if (view_ == study::View::Monitor) return monitor_->FocusFirst();
  view_ == study::View::Trend ? trend_->FocusPlot() : area_->Plot().setFocus();
}

void frmAnalyser::TakeColours() {
  const QPalette colours = Look::Of(QApplication::palette()).Palette();
  if (palette() != colours) setPalette(colours);
}

// The window's own colours keep the program's from reaching it by themselves.
bool frmAnalyser::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp) TakeColours();
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace kestrel
