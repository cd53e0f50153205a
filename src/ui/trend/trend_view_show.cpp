// What the trend view shows when something is other than before.
// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>

#include "ui/parts/local_time.h"
#include "ui/study/text_table.h"
#include "ui/trend/trend_view.h"

namespace kestrel {
namespace {

QString CountText(std::int64_t count) {
  return count == 1 ? TrendView::tr("1 record is left out")
                    : TrendView::tr("%L1 records are left out").arg(count);
}

}  // namespace

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
  if (!source_->Trouble().isEmpty()) return tr("The archive cannot be read now.");
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
                     : tr("%1 to %2")
                           .arg(Text(ClockText(seconds.low, LocalOffset, span)),
                                Text(ClockText(seconds.high, LocalOffset, span))));
  bar_->cmdSpan->setEnabled(!Data().Shown().empty());
  bar_->cmdBack->setEnabled(plot_->CanGoBack());
  bar_->cmdForward->setEnabled(plot_->CanGoForward());
  bar_->cmdShowAll->setEnabled(!plot_->ShowsAll());
  settled_.start();
}

void TrendView::ShowNote() {
  QStringList parts;
  const trend::Data& read = Data();
  parts << Text(trend::Apart(read.levels, read.series, choice_.level));
  const auto refused = static_cast<std::int64_t>(read.levels.refused.size());
  if (refused > 0 && !read.levels.series.empty()) {
    parts << CountText(refused) + ": " + Text(read.levels.refusal);
  }
  if (!bar_->Filter().machine && choices_.machines.size() > 1 && !read.Shown().empty()) {
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
                   .carryOut = [this, level = wanted_] { ChooseLevel(level); },
                   .closed = {}});
  }
  Redraw();
}

void TrendView::ShowReading() {
  if (!source_->IsReading()) {
    progress_->hide();
    barProgress_->reset();
    wanted_ = choice_.level;
    bar_->Show(choice_);
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
