// What the user does in the trend view: keys, spans, thresholds, the menu.
// SPDX-License-Identifier: MIT
#include <QMenu>
#include <algorithm>

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
    Change(
        [index](trend::Choice& choice) { choice.up = kScales[static_cast<std::size_t>(index)]; });
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
  plot_->installEventFilter(this);
  connect(plot_, &AnalyserPlot::ViewChanged, this, &TrendView::ShowSpan);
  connect(plot_, &AnalyserPlot::CursorPlaced, this,
          [this](double x) { PutCursor(Data().Nearest(x)); });
  connect(plot_, &AnalyserPlot::MemberDragged, this,
          [this](int, double x) { PutCursor(Data().Nearest(x)); });
  connect(plot_, &AnalyserPlot::MemberClicked, this, &TrendView::Open);
  connect(plot_, &AnalyserPlot::StepAsked, this, &TrendView::StepCursor);
  connect(plot_, &AnalyserPlot::CommandAsked, this, &TrendView::Carry);
  connect(plot_, &AnalyserPlot::MenuAsked, this, &TrendView::OpenMenu);
  connect(overview_, &TrendOverview::Wanted, this,
          [this](const PlotRange& shown, bool isSettled) { plot_->ShowAcross(shown, isSettled); });
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

}  // namespace kestrel
