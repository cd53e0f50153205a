// How the monitor's view is laid out and follows what runs.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "ui/study/scrolling_bars.h"
#include "ui/study/text_table.h"
#include "ui/watch/kept_watch.h"

namespace kestrel {
namespace {

constexpr int kGutter = 8;
constexpr int kPlanWidth = 420;
constexpr int kTickMs = 250;

}  // namespace

MonitorView::MonitorView(StudyModel& study, Files& files, archive::Place archive, MonitorHost host)
    : study_(study),
      files_(files),
      archive_(std::move(archive)),
      host_(std::move(host)),
      bar_(new MonitorBar),
      notices_(new NoticeStrip("monitorNotices")),
      figures_(new MonitorFigures),
      plan_(new PlanCard(files)),
      trend_(new MonitorTrend(study)),
      incidents_(new IncidentsPanel),
      pages_(new QStackedWidget) {
  setObjectName("monitorView");
  tick_.setInterval(kTickMs);
  LayOut();
  Connect();
  ShowState();
}

MonitorView::~MonitorView() = default;

void MonitorView::LayOut() {
  pages_->setObjectName("monitorPages");
  pages_->addWidget(MakeEmpty());
  pages_->addWidget(parts_ = MakeParts());
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(new ScrollingBars("monitorBars", bar_));
  column->addWidget(notices_);
  column->addWidget(pages_, 1);
  bar_->ckNotify->setChecked(host_.teller != nullptr && host_.teller->IsOn());
  bar_->ckNotify->setEnabled(host_.teller != nullptr);
}

QWidget* MonitorView::MakeEmpty() {
  auto* text = new QLabel(
      tr("The monitor captures by a plan for days, keeps every record and tells of alarms: make a "
         "plan of the sensor's present settings, then start it."));
  text->setObjectName("lblNoPlan");
  text->setWordWrap(true);
  text->setAlignment(Qt::AlignHCenter);
  auto* button = new FlatButton("cmdFirstPlan", tr("New plan from present settings"), "plus");
  button->SetMain(true);
  connect(button, &QToolButton::clicked, this, &MonitorView::MakeNew);
  auto* column = new QVBoxLayout;
  column->addStretch(2);
  column->addWidget(text);
  column->addSpacing(kGutter);
  column->addWidget(button, 0, Qt::AlignHCenter);
  column->addStretch(3);
  auto* empty = new QWidget;
  auto* row = new QHBoxLayout(empty);
  row->addStretch(1);
  row->addLayout(column, 2);
  row->addStretch(1);
  return empty;
}

QWidget* MonitorView::MakeParts() {
  auto* left = new QSplitter(Qt::Vertical);
  left->setObjectName("monitorLeft");
  left->setChildrenCollapsible(false);
  left->setHandleWidth(kGutter);
  left->addWidget(trend_);
  left->addWidget(incidents_);
  left->setSizes({300, 240});
  auto* parts = new QSplitter;
  parts->setObjectName("monitorParts");
  parts->setChildrenCollapsible(false);
  parts->setHandleWidth(kGutter);
  parts->addWidget(left);
  parts->addWidget(plan_);
  parts->setStretchFactor(0, 1);
  parts->setSizes({1000, kPlanWidth});
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(kGutter, kGutter, kGutter, kGutter);
  column->setSpacing(kGutter);
  column->addWidget(new ScrollingBars("monitorFiguresBars", figures_));
  column->addWidget(parts, 1);
  return page;
}

void MonitorView::Connect() {
  const auto clicked = &QToolButton::clicked;
  connect(bar_->cmdNew, clicked, this, &MonitorView::MakeNew);
  connect(bar_->cmdOpen, clicked, this, &MonitorView::AskOpen);
  connect(bar_->cmdSave, clicked, this, &MonitorView::Save);
  connect(bar_->cmdSaveAs, clicked, this, &MonitorView::AskSave);
  connect(bar_->ckNotify, &QCheckBox::toggled, this, [this](bool isOn) {
    if (host_.teller != nullptr) host_.teller->SwitchOn(isOn);
  });
  connect(plan_, &PlanCard::Changed, this, &MonitorView::ShowPlan);
  connect(trend_, &MonitorTrend::TrendAsked, this, &MonitorView::TrendAsked);
  connect(&tick_, &QTimer::timeout, this, [this] { figures_->Show(*host_.runner); });
  if (host_.runner == nullptr) return;
  connect(host_.runner, &MonitorRunner::Changed, this, &MonitorView::ShowState);
  connect(host_.runner, &MonitorRunner::Ended, this, &MonitorView::ShowTrouble);
}

bool MonitorView::Running() const {
  return host_.runner != nullptr && host_.runner->Running();
}

// The plan that was shown last is read when the view is first seen.
void MonitorView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!std::exchange(hasBegun_, true) && file_.empty()) {
    const QString file = ReadKeptWatch().file;
    if (!file.isEmpty() && files_.Read(file.toStdU16String(), 1)) Open(file);
  }
  ShowState();
}

void MonitorView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  tick_.stop();
}

void MonitorView::ShowState() {
  const bool isRunning = Running();
  // Only what runs counts down.
  if (!isRunning || !isVisible()) {
    tick_.stop();
  } else if (!tick_.isActive()) {
    tick_.start();
  }
  plan_->SetRunning(isRunning);
  const bool hasPlan = pages_->currentWidget() == parts_;
  for (FlatButton* button : {bar_->cmdNew, bar_->cmdSave, bar_->cmdSaveAs}) {
    button->setVisible(hasPlan);
  }
  for (FlatButton* button : {bar_->cmdNew, bar_->cmdOpen}) button->setEnabled(!isRunning);
  bar_->cmdSave->setEnabled(!isRunning && !plan_->IsSaved());
  if (host_.runner != nullptr) {
    figures_->Show(*host_.runner);
    const auto& account = host_.runner->Account();
    incidents_->Follow(isRunning && account ? &*account : nullptr);
    const std::int64_t records = account ? account->records : 0;
    if (std::exchange(records_, records) != records) trend_->Follow();
    if (isRunning) ShowTrouble();
  }
  emit StateChanged();
}

// What is shown beside it is of the plan that is written.
void MonitorView::ShowPlan() {
  pages_->setCurrentWidget(parts_);
  if (const auto& plan = plan_->Plan()) {
    const archive::Place place = monitor::ArchiveOf(*plan, archive_);
    trend_->Of(place, *plan);
    incidents_->Of(place, plan->bench, plan->sensor);
  }
  ShowState();
}

void MonitorView::Fail(const QString& trouble) {
  trouble_ = trouble;
  ShowTrouble();
}

void MonitorView::ShowTrouble() {
  if (Running()) trouble_.clear();
  QString text = trouble_;
  if (text.isEmpty() && host_.runner != nullptr) text = host_.runner->Trouble();
  if (text.isEmpty()) return notices_->Take("monitorTrouble");
  notices_->Put({.id = "monitorTrouble",
                 .gravity = Gravity::Fault,
                 .text = text,
                 .cure = {},
                 .carryOut = {},
                 .closed = {}});
}

MonitorView::Offer MonitorView::WhatNow() const {
  if (host_.runner == nullptr) return {.text = tr("Start monitoring"), .isEnabled = false};
  switch (host_.runner->Now()) {
    case MonitorRunner::Phase::Running:
      return {.text = tr("Start monitoring"),
              .tip = tr("Ends monitoring when the record under way is done"),
              .mayStop = true};
    case MonitorRunner::Phase::Ending:
      return {.text = tr("Ending"),
              .tip = tr("The record under way is finished first"),
              .isEnabled = false};
    default:
      return {.text = tr("Start monitoring"),
              .tip = tr("Captures by the plan until it is stopped (F5)"),
              .isEnabled = pages_->currentWidget() == parts_};
  }
}

void MonitorView::FocusFirst() {
  if (pages_->currentWidget() != parts_) return findChild<FlatButton*>("cmdFirstPlan")->setFocus();
  Running() ? incidents_->Table().setFocus() : plan_->FocusText();
}

}  // namespace kestrel
