// How the trend view is laid out, and what is drawn when something is other than before.
// SPDX-License-Identifier: MIT
#include "ui/trend/trend_view.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "ui/chart/look.h"
#include "ui/parts/local_time.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kSoonMs = 150;
constexpr int kSettledMs = 120;
constexpr int kLoadMs = 60;
constexpr int kSideWidth = 330;

QString CountText(std::int64_t count) {
  return count == 1 ? TrendView::tr("1 record is left out")
                    : TrendView::tr("%L1 records are left out").arg(count);
}

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
  plot_->SetReader([this](double x, int) {
    return trend::ReadOutAt(Data(), choice_, limits_, x, LocalOffset);
  });
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
  auto* none = new QLabel(
      tr("No archive: the program was started with --no-archive, or has no folder to keep one in. "
         "Start it with --archive and a file: every record is kept there, and its levels stand "
         "here over time."));
  none->setObjectName("lblNoTrend");
  none->setWordWrap(true);
  none->setMargin(24);
  none->setAlignment(Qt::AlignTop);
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
  rows->addWidget(bar_);
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
  static const trend::Data kNone;
  return source_ ? source_->Data() : kNone;
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
  const bool isSame = choice_.shown == choice.shown && choice_.focus == choice.focus &&
                      limits_ == trend::LimitsOf(Data(), choice_,
                                                 study_.Get().BandsOf(choice_.level.option,
                                                                      choice_.focus));
  if (isSame && !isBehind_) return;
  choice_.shown = choice.shown;
  choice_.focus = choice.focus;
  isVisible() ? Redraw() : static_cast<void>(isBehind_ = true);
}

void TrendView::Redraw() {
  if (source_ && source_->IsRead()) choice_.level = source_->Level();
  if (!source_ || !source_->IsReading()) wanted_ = choice_.level;
  choice_.limits = typed_[TitleOf(choice_.level)];
  const auto* bands = study_.Get().BandsOf(choice_.level.option, choice_.focus);
  limits_ = trend::LimitsOf(Data(), choice_, bands);
  trend::Choice shown = choice_;
  shown.level = wanted_;
  bar_->Show(shown);
  bar_->ShowSeries(Data().levels, Data().series, choice_.level);
  PlotScene scene = trend::SceneOf(Data(), choice_, limits_, LocalOffset);
  scene.head.clear();  // stands above the plot, where it follows the view
  scene.hint = Hint().toStdString();
  overview_->SetTrace(trend::OverviewOf(Data(), choice_), scene.gaps, scene.across);
  overview_->setVisible(!Data().Shown().empty());
  plot_->SetScene(std::move(scene));
  tables_->ShowEvents(Data(), choice_);
  PutCursor(CursorPoint());
  ShowNote();
}

QString TrendView::Hint() const {
  if (!source_) return {};
  if (!source_->Trouble().isEmpty()) return tr("What the archive holds cannot be told now.");
  if (!source_->IsRead()) {
    return isCancelled_ ? tr("Reading was cancelled. Choose a level to read it.")
                        : tr("Reading the archive.");
  }
  return Text(trend::WhyNone(Data().levels, choice_.level, bar_->IsFiltered()));
}

PlotRange TrendView::ShownSeconds() const {
  const PlotRange& across = plot_->Ranges().across;
  return {across.low + Data().start, across.high + Data().start};
}

void TrendView::ShowSpan() {
  const PlotRange& across = plot_->Ranges().across;
  overview_->SetShown(across);
  const QString line = Text(trend::LineOf(Data(), choice_, across, LocalOffset));
  lblLine_->setText(line.isEmpty() ? tr("Trend") : tr("Trend: %1").arg(line));
  lblLine_->setToolTip(lblLine_->text());
  plot_->setAccessibleName(lblLine_->text());
  const PlotRange seconds = ShownSeconds();
  const double span = seconds.Span() > 3 * 86'400.0 ? 1e9 : 1e6;
  bar_->ShowSpan(Data().Shown().empty()
                     ? tr("From when to when")
                     : tr("%1 to %2").arg(Text(ClockText(seconds.low, LocalOffset, span)),
                                          Text(ClockText(seconds.high, LocalOffset, span))));
  bar_->cmdSpan->setEnabled(!Data().Shown().empty());
  bar_->cmdBack->setEnabled(plot_->CanGoBack());
  bar_->cmdForward->setEnabled(plot_->CanGoForward());
  bar_->cmdShowAll->setEnabled(!plot_->ShowsAll());
  settled_.start();
}

void TrendView::ShowNote() {
  QStringList parts;
  const trend::Data& data = Data();
  parts << Text(trend::Apart(data.levels, data.series, choice_.level));
  const auto refused = static_cast<std::int64_t>(data.levels.refused.size());
  if (refused > 0 && !data.levels.series.empty()) {
    parts << CountText(refused) + ": " + Text(data.levels.refusal);
  }
  if (!bar_->Filter().machine && choices_.machines.size() > 1 && !data.Shown().empty()) {
    parts << tr("Records of %L1 machines are in one trend: choose a machine above")
                 .arg(choices_.machines.size());
  }
  parts.removeAll(QString());
  lblNote_->setText(parts.join(". ") + (parts.isEmpty() ? "" : "."));
  lblNote_->setVisible(!parts.isEmpty());
}

void TrendView::ShowTrouble() {
  const QString& trouble = source_->Trouble();
  if (trouble.isEmpty()) {
    notices_->Take("trendArchive");
  } else {
    notices_->Put({.id = "trendArchive",
                   .gravity = Gravity::Fault,
                   .text = trouble,
                   .cure = tr("Try again"),
                   .carryOut = [this] { Ask(); },
                   .closed = {}});
  }
  Redraw();
}

void TrendView::ShowReading() {
  if (!source_->IsReading()) {
    progress_->hide();
    barProgress_->reset();
  }
  if (!source_->IsRead()) Redraw();
}

void TrendView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && source_) tables_->ShowEvents(Data(), choice_);
}

PlotPicture TrendView::Picture() const {
  PlotPicture picture{.scene = plot_->Scene(),
                      .ranges = plot_->Ranges(),
                      .cursor = plot_->Cursor(),
                      .font = plot_->font(),
                      .size = plot_->size() + QSize(0, 40)};
  picture.scene.head = "Trend";
  picture.scene.line = trend::LineOf(Data(), choice_, picture.ranges.across, LocalOffset);
  picture.scene.source =
      (source_ ? archive::Shown(keeper_->Place()) + ", " : std::string()) +
      QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm t")).toStdString() +
      ", version " + QCoreApplication::applicationVersion().toStdString();
  return picture;
}

std::string TrendView::Table() const {
  return trend::CsvOf(Data(), choice_, plot_->Ranges().across);
}

}  // namespace kestrel
