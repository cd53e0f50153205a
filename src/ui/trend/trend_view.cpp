// How the trend view is laid out, and follows archive and study.
// SPDX-License-Identifier: MIT
#include "ui/trend/trend_view.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "ui/library/archive_widgets.h"
#include "ui/parts/local_time.h"
#include "ui/study/scrolling_bars.h"

namespace kestrel {
namespace {

constexpr int kSoonMs = 150;
constexpr int kSettledMs = 120;
constexpr int kLoadMs = 60;
constexpr int kSideWidth = 330;

}  // namespace

TrendView::TrendView(StudyModel& study, RecordKeeper* keeper)
    : study_(study),
      keeper_(keeper != nullptr && keeper->HasPlace() ? keeper : nullptr),
      bar_(new TrendBar),
      levels_(new LevelMenu(study, this)),
      notices_(new NoticeStrip("trendNotices")),
      lblLine_(new LineLabel),
      lblNote_(new QLabel),
      plot_(new AnalyserPlot),
      overview_(new TrendOverview),
      card_(new RecordCard),
      tables_(new TrendTables) {
  setObjectName("trend");
  if (keeper_ != nullptr) {
    source_ = std::make_unique<TrendSource>(keeper_->Place());
    library_ = std::make_unique<Library>(keeper_->Place());
  }
  plot_->setObjectName("trendPlot");
  plot_->SetReader(
      [this](double x, int) { return trend::ReadOutAt(Data(), choice_, limits_, x, LocalOffset); });
  const std::array timers{std::pair(&soon_, kSoonMs), std::pair(&settled_, kSettledMs),
                          std::pair(&load_, kLoadMs)};
  for (const auto& [timer, ms] : timers) {
    timer->setSingleShot(true);
    timer->setInterval(ms);
  }
  LayOut();
  ConnectBar();
  ConnectPlot();
  if (source_) ConnectArchive();
  TakeStudy();
}

TrendView::~TrendView() = default;

void TrendView::LayOut() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  QWidget* content = MakeContent();
  column->addWidget(notices_);
  column->addWidget(content, 1);
  content->setVisible(source_ != nullptr);
  QLabel* none = MakeNoArchive(
      "lblNoTrend",
      tr("No archive: the program was started with --no-archive, or has no folder to keep one in. "
         "Start it with --archive and a file: every record is kept there, and its levels stand "
         "here over time."));
  column->addWidget(none, source_ == nullptr ? 1 : 0);
  none->setVisible(source_ == nullptr);
}

QWidget* TrendView::MakeContent() {
  lblLine_->setObjectName("lblTrendLine");
  lblLine_->setContentsMargins(12, 8, 12, 4);
  lblNote_->setObjectName("lblTrendNote");
  lblNote_->setWordWrap(true);
  lblNote_->setContentsMargins(12, 0, 12, 4);
  lblNote_->hide();
  auto* picture = new QWidget;
  picture->setAutoFillBackground(true);
  picture->setBackgroundRole(QPalette::Base);
  auto* left = new QVBoxLayout(picture);
  left->setContentsMargins(0, 0, 0, 0);
  left->setSpacing(0);
  left->addWidget(lblLine_);
  left->addWidget(lblNote_);
  left->addWidget(plot_, 1);
  left->addWidget(overview_);
  left->addWidget(MakeProgress());
  auto* side = new QSplitter(Qt::Vertical);
  side->setObjectName("trendSide");
  side->setChildrenCollapsible(false);
  side->addWidget(card_);
  side->addWidget(tables_);
  side->setSizes({260, 340});
  auto* parts = new QSplitter;
  parts->setObjectName("trendParts");
  parts->setChildrenCollapsible(false);
  parts->addWidget(picture);
  parts->addWidget(side);
  parts->setStretchFactor(0, 1);
  parts->setSizes({1000, kSideWidth});
  auto* content = new QWidget;
  auto* rows = new QVBoxLayout(content);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(new ScrollingBars("trendBars", bar_));
  rows->addWidget(parts, 1);
  return content;
}

QWidget* TrendView::MakeProgress() {
  progress_ = new QWidget;
  progress_->setObjectName("trendProgress");
  barProgress_ = new QProgressBar;
  barProgress_->setObjectName("barTrendProgress");
  barProgress_->setAccessibleName(tr("Records read"));
  auto* cancel = new FlatButton("cmdTrendCancel", tr("Cancel"), "close");
  cancel->setToolTip(tr("Give this level up; what was shown before stays"));
  auto* row = new QHBoxLayout(progress_);
  row->setContentsMargins(12, 4, 12, 8);
  row->addWidget(barProgress_, 1);
  row->addWidget(cancel);
  connect(cancel, &QToolButton::clicked, this, [this] {
    isCancelled_ = true;
    source_->Cancel();
    wanted_ = source_->Level();
    Redraw();
  });
  progress_->hide();
  return progress_;
}

void TrendView::ConnectArchive() {
  connect(source_.get(), &TrendSource::Changed, this, &TrendView::Redraw);
  connect(source_.get(), &TrendSource::TroubleChanged, this, &TrendView::ShowTrouble);
  connect(source_.get(), &TrendSource::ReadingChanged, this, &TrendView::ShowReading);
  connect(source_.get(), &TrendSource::Progressed, this, [this](qint64 done, qint64 all) {
    barProgress_->setRange(0, static_cast<int>(all));
    barProgress_->setValue(static_cast<int>(done));
    barProgress_->setFormat(tr("%L1 of %L2 records").arg(done).arg(all));
    progress_->show();
  });
  connect(library_.get(), &Library::ChoicesTold, this, [this](const LibraryChoices& choices) {
    choices_ = choices;
    bar_->SetChoices(choices);
    ShowNote();
  });
  connect(bar_, &TrendBar::MachineChosen, this, [this] { library_->AskChoices(bar_->Machine()); });
  connect(bar_, &TrendBar::FilterChanged, this, &TrendView::Ask);
  connect(bar_, &TrendBar::SeriesChosen, this,
          [this](int index) { source_->Choose(static_cast<std::size_t>(index)); });
  connect(&soon_, &QTimer::timeout, source_.get(), &TrendSource::Follow);
  connect(keeper_, &RecordKeeper::StateChanged, this, &TrendView::FollowKeeper);
  connect(&study_, &StudyModel::Changed, this, &TrendView::TakeStudy);
}

const trend::Data& TrendView::Data() const {
  return source_ ? source_->Data() : nothing_;
}

void TrendView::Ask() {
  if (!source_) return;
  isCancelled_ = false;
  source_->Ask(bar_->Filter(), wanted_);
}

// What has changed while it was hidden is read when it is shown.
void TrendView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!source_) return;
  library_->AskChoices(bar_->Machine());
  if (!source_->IsRead()) {
    Ask();
  } else {
    source_->Follow();
  }
  if (std::exchange(isBehind_, false)) Redraw();
}

void TrendView::FollowKeeper() {
  const std::int64_t kept = keeper_->State().kept;
  if (kept == kept_) return;
  kept_ = kept;
  if (isVisible() && !soon_.isActive()) soon_.start();
}

// Axes, focus and the sensor's bands.
void TrendView::TakeStudy() {
  const study::StudyChoice& choice = study_.Choice();
  const bool isSame =
      choice_.shown == choice.shown && choice_.focus == choice.focus &&
      limits_ == trend::LimitsOf(Data(), choice_,
                                 study_.Get().BandsOf(choice_.level.option, choice_.focus));
  if (isSame && !isBehind_) return;
  choice_.shown = choice.shown;
  choice_.focus = choice.focus;
  isVisible() ? Redraw() : static_cast<void>(isBehind_ = true);
}

}  // namespace kestrel
