// What the user does in the trend view: keys, cursor, spans, thresholds, records opened.
// SPDX-License-Identifier: MIT
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <cmath>

#include "ui/library/look_at.h"
#include "ui/parts/local_time.h"
#include "ui/study/text_table.h"
#include "ui/trend/pair_dialog.h"
#include "ui/trend/span_dialog.h"
#include "ui/trend/trend_view.h"

namespace kestrel {
namespace {

constexpr std::array kScales{AxisKind::Linear, AxisKind::Logarithmic, AxisKind::Decibel};
constexpr double kMostLimit = 1e6;

NumberField::Rule LimitRule(const QString& what) {
  return {what, TrendView::tr("above 0, or nothing"),
          [](double value) { return value > 0 && value < kMostLimit; }, true};
}

}  // namespace

void TrendView::ConnectBar() {
  bar_->cmdLevel->SetMenu(levels_);
  connect(levels_, &LevelMenu::Chosen, this, &TrendView::ChooseLevel);
  for (const Axis axis : kAxes) {
    connect(bar_->axes[Index(axis)], &QToolButton::clicked, this, [this, axis](bool on) {
      study_.Change([&](study::StudyChoice& choice) { choice.shown[Index(axis)] = on; });
    });
  }
  connect(bar_->segVertical, &Segments::Chosen, this, [this](int index) {
    Change([index](trend::Choice& choice) { choice.up = kScales[static_cast<std::size_t>(index)]; });
  });
  connect(bar_->cmdLimits, &QToolButton::clicked, this,
          [this](bool on) { Change([on](trend::Choice& choice) { choice.hasLimits = on; }); });
  connect(bar_->cmdTemperature, &QToolButton::clicked, this,
          [this](bool on) { Change([on](trend::Choice& choice) { choice.hasTemperature = on; }); });
  connect(bar_->cmdSetLimits, &QToolButton::clicked, this, &TrendView::AskLimits);
  connect(bar_->cmdSpan, &QToolButton::clicked, this, &TrendView::AskSpan);
  connect(bar_, &TrendBar::LastAsked, this, &TrendView::ShowLast);
  connect(bar_->cmdBack, &QToolButton::clicked, plot_, &AnalyserPlot::GoBack);
  connect(bar_->cmdForward, &QToolButton::clicked, plot_, &AnalyserPlot::GoForward);
  connect(bar_->cmdShowAll, &QToolButton::clicked, plot_, &AnalyserPlot::ShowAll);
  connect(bar_->cmdCopy, &QToolButton::clicked, this, &TrendView::CopyAsked);
  connect(bar_->cmdExport, &QToolButton::clicked, this, &TrendView::ExportAsked);
}

void TrendView::ConnectPlot() {
  connect(plot_, &AnalyserPlot::ViewChanged, this, &TrendView::ShowSpan);
  connect(plot_, &AnalyserPlot::CursorPlaced, this,
          [this](double x) { PutCursor(Data().Nearest(x)); });
  connect(plot_, &AnalyserPlot::MemberDragged, this,
          [this](int, double x) { PutCursor(Data().Nearest(x)); });
  connect(plot_, &AnalyserPlot::MemberClicked, this, &TrendView::Open);
  connect(plot_, &AnalyserPlot::StepAsked, this, &TrendView::StepCursor);
  connect(plot_, &AnalyserPlot::CommandAsked, this, &TrendView::Carry);
  connect(plot_, &AnalyserPlot::MenuAsked, this, &TrendView::OpenMenu);
  connect(overview_, &TrendOverview::Wanted, this, [this](const PlotRange& shown, bool isSettled) {
    plot_->ShowAcross(shown, isSettled);
  });
  connect(&settled_, &QTimer::timeout, this,
          [this] { tables_->ShowFigures(Data(), choice_, plot_->Ranges().across); });
  connect(&load_, &QTimer::timeout, this, &TrendView::LoadRecord);
  connect(card_, &RecordCard::OpenAsked, this, &TrendView::Open);
  connect(card_->cmdCompare, &QToolButton::clicked, this, &TrendView::Mark);
  connect(tables_, &TrendTables::RecordAsked, this, &TrendView::PutCursorOn);
  connect(tables_, &TrendTables::OpenAsked, this, &TrendView::Open);
}

void TrendView::ChooseLevel(const trend::Level& level) {
  wanted_ = level;
  trend::Choice shown = choice_;
  shown.level = level;
  bar_->Show(shown);
  Ask();
}

void TrendView::Change(const std::function<void(trend::Choice&)>& edit) {
  edit(choice_);
  Redraw();
}

void TrendView::Carry(PlotCommand command) {
  const auto axis = [&](PlotCommand first) {
    return static_cast<std::size_t>(command) - static_cast<std::size_t>(first);
  };
  switch (command) {
    case PlotCommand::ShowX:
    case PlotCommand::ShowY:
    case PlotCommand::ShowZ:
      study_.Change([&](study::StudyChoice& choice) {
        choice.shown[axis(PlotCommand::ShowX)] = !choice.shown[axis(PlotCommand::ShowX)];
      });
      return;
    case PlotCommand::FocusX:
    case PlotCommand::FocusY:
    case PlotCommand::FocusZ:
      study_.Change([&](study::StudyChoice& choice) {
        choice.focus = static_cast<Axis>(axis(PlotCommand::FocusX));
        choice.shown[axis(PlotCommand::FocusX)] = true;
      });
      return;
    case PlotCommand::Vertical:
      Change([](trend::Choice& choice) {
        const auto* now = std::ranges::find(kScales, choice.up);
        choice.up = kScales[static_cast<std::size_t>(now - kScales.begin() + 1) % kScales.size()];
      });
      return;
    case PlotCommand::Bands:
      Change([](trend::Choice& choice) { choice.hasLimits = !choice.hasLimits; });
      return;
    case PlotCommand::CursorNone:
      cursor_.reset();
      return PutCursor(std::nullopt);
    case PlotCommand::CursorSingle: {
      const PlotRange& across = plot_->Ranges().across;
      return PutCursor(Data().Nearest((across.low + across.high) / 2));
    }
    case PlotCommand::FirstValid:
      return PutCursor(Data().Nearest(plot_->Ranges().across.low));
    case PlotCommand::LastValid:
      return PutCursor(Data().Nearest(plot_->Ranges().across.high));
    case PlotCommand::SnapToPeak:
      return PutCursor(LargestShown());
    case PlotCommand::SmallerPeak:
    case PlotCommand::LargerPeak:
      return NextEvent(command == PlotCommand::SmallerPeak ? -1 : 1);
    case PlotCommand::Copy:
      emit CopyAsked();
      return;
    case PlotCommand::Export:
      emit ExportAsked();
      return;
    default:
      return;
  }
}

// Up to the newest record, whenever that was.
void TrendView::ShowLast(double seconds) {
  const trend::Points points = Data().Shown();
  if (points.empty()) return;
  if (seconds <= 0) {
    plot_->ShowAll();
    return;
  }
  const double last = Data().Across(points.back());
  plot_->ShowAcross({last - seconds, last + seconds * 0.02});
}

void TrendView::AskSpan() {
  const auto show = [this](const PlotRange& seconds) {
    plot_->ShowAcross({seconds.low - Data().start, seconds.high - Data().start});
  };
  (new SpanDialog(ShownSeconds(), show, window()))->show();
}

void TrendView::AskLimits() {
  const QString unit = Text(UnitOf(choice_.level, AxisKind::Linear));
  const trend::Limits& now = choice_.limits;
  auto* dialog = new PairDialog(
      {.name = "askTrendLimits",
       .title = tr("Thresholds of %1").arg(Text(TitleOf(choice_.level))),
       .why = tr("Nothing in a field: the sensor's threshold, where the level is a band's peak."),
       .first = {"txtTrendWarning", tr("Warning, %1").arg(unit), now.warning,
                 LimitRule(tr("threshold"))},
       .second = {"txtTrendFault", tr("Fault, %1").arg(unit), now.fault,
                  LimitRule(tr("threshold"))},
       .whyNot =
           [](PairDialog::Number warning, PairDialog::Number fault) {
             return warning && fault && *warning >= *fault
                        ? tr("A fault lies above its warning. Type a larger number for it.")
                        : QString();
           },
       .told =
           [this, title = TitleOf(choice_.level)](PairDialog::Number warning,
                                                  PairDialog::Number fault) {
             typed_[title] = {warning, fault};
             choice_.hasLimits = true;
             Redraw();
           }},
      window());
  dialog->show();
}

void TrendView::OpenMenu(QPoint place, double x) {
  if (Data().Shown().empty()) return;
  PutCursor(Data().Nearest(x));
  auto* menu = new QMenu(this);
  menu->setObjectName("mnuTrend");
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(tr("&Open record"), this, &TrendView::Open)->setObjectName("mnuTrendOpen");
  QAction* compare = menu->addAction(tr("&Compare with this"), this, &TrendView::Mark);
  compare->setObjectName("mnuTrendCompare");
  compare->setCheckable(true);
  compare->setChecked(cursor_ && cursor_ == mark_);
  menu->addSeparator();
  menu->addAction(tr("Show &all"), plot_, &AnalyserPlot::ShowAll);
  menu->addAction(tr("Co&py picture"), this, &TrendView::CopyAsked);
  menu->addAction(tr("&Export..."), this, &TrendView::ExportAsked);
  menu->popup(place);
}

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
  const auto step = static_cast<std::ptrdiff_t>(points < 0 ? std::floor(points) : std::ceil(points));
  const auto last = static_cast<std::ptrdiff_t>(shown.size()) - 1;
  const auto next = std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(*now) + step, 0, last);
  PutCursorOn(shown[static_cast<std::size_t>(next)].id);
}

// Events stand the latest first.
void TrendView::NextEvent(int step) {
  const auto now = CursorPoint();
  const double at = now ? trend::SecondsOf(Data().Shown()[*now].time) : ShownSeconds().high;
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
  return Text(
      ClockText(trend::SecondsOf(Data().Shown()[*point].time), LocalOffset, kToSeconds));
}

void TrendView::LoadRecord() {
  if (!cursor_ || !library_) return;
  std::vector<ArchiveId> ids{*cursor_};
  if (mark_ && mark_ != cursor_) ids.push_back(*mark_);
  library_->Load(ids, [this, asked = ids](std::vector<study::RecordPointer> records) {
    if (cursor_ != asked.front()) return;  // moved on meanwhile
    const auto point = CursorPoint();
    const bool isThere = !records.empty() && point &&
                         records.front()->time == Data().Shown()[*point].time;
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
    emit Said(tr("The record of %1 stands beside the ones looked at next.").arg(MomentOf(*cursor_)));
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

void TrendView::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter && plot_->hasFocus()) {
    Open();
    return;
  }
  QWidget::keyPressEvent(event);
}

void TrendView::Keep(QSettings& kept) const {
  kept.beginGroup("trend");
  kept.setValue("level", static_cast<int>(choice_.level.of));
  kept.setValue("from", choice_.level.fromHz);
  kept.setValue("to", choice_.level.toHz);
  kept.setValue("near", choice_.level.nearHz);
  kept.setValue("within", choice_.level.withinHz);
  kept.setValue("name", Text(choice_.level.name));
  kept.setValue("band", choice_.level.band);
  kept.setValue("option", choice_.level.option);
  kept.setValue("scale", static_cast<int>(choice_.up));
  kept.setValue("thresholds", choice_.hasLimits);
  kept.setValue("temperature", choice_.hasTemperature);
  kept.setValue("warning", choice_.limits.warning.value_or(0));
  kept.setValue("fault", choice_.limits.fault.value_or(0));
  kept.endGroup();
}

// What cannot be one is as it is at the first start.
void TrendView::Restore(const QSettings& kept) {
  const auto number = [&](const char* key) {
    const double value = kept.value(QStringLiteral("trend/") + key).toDouble();
    return std::isfinite(value) ? value : 0;
  };
  const auto whole = [&](const char* key, int most) {
    const double value = number(key);
    return value >= 0 && value <= most ? static_cast<int>(value) : 0;
  };
  trend::Level level{.of = static_cast<archive::TrendOf>(
                         whole("level", static_cast<int>(archive::TrendOf::PeakNear))),
                     .fromHz = number("from"),
                     .toHz = number("to"),
                     .nearHz = number("near"),
                     .withinHz = number("within"),
                     .name = kept.value("trend/name").toString().left(80).toStdString(),
                     .band = whole("band", 6),
                     .option = whole("option", 3)};
  const bool isNear = level.of == archive::TrendOf::PeakNear;
  const bool isWhole = isNear ? study::IsFrequency(level.nearHz) && level.withinHz > 0
                              : !archive::IsWorkedOut(level.of) || level.fromHz < level.toHz;
  if (!isWhole) level = {};
  choice_.level = wanted_ = level;
  choice_.up = kScales[static_cast<std::size_t>(whole("scale", 2))];
  choice_.hasLimits = kept.value("trend/thresholds", true).toBool();
  choice_.hasTemperature = kept.value("trend/temperature", false).toBool();
  trend::Limits& limits = typed_[TitleOf(level)];
  if (number("warning") > 0) limits.warning = number("warning");
  if (number("fault") > 0) limits.fault = number("fault");
  Redraw();
}

}  // namespace kestrel
