// The cursor of the trend view: its moves, and the record that it is at.
// SPDX-License-Identifier: MIT
#include <QKeyEvent>
#include <algorithm>
#include <cmath>

#include "record/utc_time.h"
#include "ui/library/look_at.h"
#include "ui/parts/local_time.h"
#include "ui/study/text_table.h"
#include "ui/trend/trend_view.h"

namespace kestrel {

std::optional<std::size_t> TrendView::CursorPoint() const {
  return cursor_ ? Data().Find(*cursor_) : std::nullopt;
}

std::optional<std::size_t> TrendView::LargestShown() const {
  const std::size_t axis = archive::IsOfAxis(choice_.level.of) ? Index(choice_.focus) : 0;
  const trend::Points points = Data().Shown();
  std::optional<std::size_t> largest;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double value = points[i].value[axis];
    if (std::isnan(value) || !plot_->Ranges().across.Holds(Data().Across(points[i]))) continue;
    if (!largest || value > points[*largest].value[axis]) largest = i;
  }
  return largest;
}

void TrendView::PutCursor(std::optional<std::size_t> point) {
  if (!point) {
    plot_->SetCursor({});
    if (!cursor_) card_->ShowNone({});
    card_->SetMarked(false);
    return;
  }
  cursor_ = Data().Shown()[*point].id;
  plot_->SetCursor(trend::CursorAt(Data(), choice_, limits_, *point, LocalOffset));
  card_->SetMarked(cursor_ == mark_);
  load_.start();
}

// The view follows a cursor that leaves it.
void TrendView::PutCursorOn(ArchiveId id) {
  const auto point = Data().Find(id);
  if (!point) return;
  PutCursor(point);
  const PlotRange& across = plot_->Ranges().across;
  const double x = Data().Across(Data().Shown()[*point]);
  const double half = across.Span() / 2;
  if (!across.Holds(x)) plot_->ShowAcross({x - half, x + half});
}

void TrendView::StepCursor(double points) {
  const trend::Points shown = Data().Shown();
  if (shown.empty()) return;
  const auto now = CursorPoint();
  if (!now) return Carry(PlotCommand::CursorSingle);
  // A tenth of a step is the next one: between two records there is none.
  const auto step =
      static_cast<std::ptrdiff_t>(points < 0 ? std::floor(points) : std::ceil(points));
  const auto last = static_cast<std::ptrdiff_t>(shown.size()) - 1;
  const auto next = std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(*now) + step, 0, last);
  PutCursorOn(shown[static_cast<std::size_t>(next)].id);
}

// Events stand the latest first.
void TrendView::NextEvent(int step) {
  const auto now = CursorPoint();
  const double at = now ? SecondsOf(Data().Shown()[*now].time) : ShownSeconds().high;
  std::optional<double> next;
  for (const trend::AlarmEvent& event : Data().events) {
    const bool isBeyond = step < 0 ? event.begin < at : event.begin > at;
    const bool isNearer = !next || (step < 0 ? event.begin > *next : event.begin < *next);
    if (isBeyond && isNearer) next = event.begin;
  }
  if (!next) {
    emit Said(step < 0 ? tr("No alarm begins before.") : tr("No alarm begins after."));
    return;
  }
  const auto point = Data().Nearest(*next - Data().start);
  if (point) PutCursorOn(Data().Shown()[*point].id);
}

QString TrendView::MomentOf(ArchiveId id) const {
  const auto point = Data().Find(id);
  if (!point) return tr("a record of another trend");
  constexpr double kToSeconds = 3600;
  return Text(ClockText(SecondsOf(Data().Shown()[*point].time), LocalOffset, kToSeconds));
}

void TrendView::LoadRecord() {
  if (!cursor_ || !library_) return;
  std::vector<ArchiveId> ids{*cursor_};
  if (mark_ && mark_ != cursor_) ids.push_back(*mark_);
  library_->Load(ids, [this, asked = ids](std::vector<study::RecordPointer> records) {
    if (cursor_ != asked.front()) return;  // moved on meanwhile
    const auto point = CursorPoint();
    const bool isThere =
        !records.empty() && point && records.front()->time == Data().Shown()[*point].time;
    if (!isThere) {
      card_->ShowNone(tr("This record is not in the archive any more."));
      return;
    }
    const bool isCompared = asked.size() > 1 && records.size() > 1;
    card_->Show(MomentOf(asked.front()), records.front(), isCompared ? records[1] : nullptr,
                isCompared ? MomentOf(asked[1]) : QString());
    card_->SetMarked(cursor_ == mark_);
  });
}

void TrendView::Mark(bool isMarked) {
  mark_ = isMarked ? cursor_ : std::nullopt;
  card_->SetMarked(isMarked && cursor_.has_value());
  if (isMarked && cursor_) {
    emit Said(
        tr("The record of %1 stands beside the ones looked at next.").arg(MomentOf(*cursor_)));
  }
  LoadRecord();
}

void TrendView::Open() {
  if (!cursor_ || !library_) return;
  std::vector<ArchiveId> ids{*cursor_};
  if (mark_ && mark_ != cursor_) ids.push_back(*mark_);
  library_->Load(ids, [this](const std::vector<study::RecordPointer>& records) {
    if (records.empty()) {
      emit Said(tr("This record is not in the archive any more."));
      return;
    }
    const QString said = LookAt(study_, records.size() > 1 ? Way::Overlay : Way::Open, records);
    if (!said.isEmpty()) emit Said(said);
  });
}

// Return in the plot, which has no use for it.
bool TrendView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == plot_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      Open();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kestrel
