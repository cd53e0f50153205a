// The figures' words and colours.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_figures.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>
#include <cmath>

#include "ui/chart/look.h"
#include "ui/parts/local_time.h"
#include "ui/study/number_field.h"

namespace kestrel {
namespace {

using Doing = monitor::Account::Doing;
using Phase = MonitorRunner::Phase;

const QString kNone = QStringLiteral("–");

QString StateText(const MonitorRunner& runner) {
  if (runner.Now() == Phase::Ending) return MonitorFigures::tr("Ending");
  if (runner.Now() == Phase::Idle) {
    if (!runner.What()) return kNone;
    return runner.Trouble().isEmpty() ? MonitorFigures::tr("Stopped")
                                      : MonitorFigures::tr("Broke off");
  }
  if (!runner.Account()) return MonitorFigures::tr("Starting");
  switch (runner.Account()->doing) {
    case Doing::Capturing:
      return MonitorFigures::tr("Capturing");
    case Doing::Ending:
      return MonitorFigures::tr("Ending");
    case Doing::Connecting:
      return MonitorFigures::tr("Connecting");
    default:
      return runner.Account()->isConnected ? MonitorFigures::tr("Waiting")
                                           : MonitorFigures::tr("No sensor");
  }
}

}  // namespace

QString CountDown(double seconds) {
  const auto whole = std::llround(std::ceil(seconds));
  if (whole < 60) return MonitorFigures::tr("%1 s").arg(whole);
  const auto two = [](qint64 number) {
    return QStringLiteral("%1").arg(number, 2, 10, QChar('0'));
  };
  if (whole < 3600) return MonitorFigures::tr("%1:%2 min").arg(whole / 60).arg(two(whole % 60));
  return MonitorFigures::tr("%1:%2 h").arg(whole / 3600).arg(two(whole / 60 % 60));
}

MonitorFigures::MonitorFigures() {
  setObjectName("monitorFigures");
  const std::array<std::pair<const char*, QString>, kFigures> names{
      {{"State", tr("State")},
       {"Next", tr("Next capture in")},
       {"Last", tr("Last record")},
       {"Records", tr("Records kept")},
       {"Missed", tr("Captures missed")},
       {"Alarms", tr("Alarms on")},
       {"Incidents", tr("Incidents open")}}};
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(12, 8, 12, 8);
  row->setSpacing(24);
  for (std::size_t i = 0; i < names.size(); ++i) {
    Tile& tile = tiles_.at(i);
    tile.caption = new QLabel(names.at(i).second);
    tile.value = new QLabel(kNone);
    tile.caption->setObjectName(QStringLiteral("lblMonitorCaption") + names.at(i).first);
    tile.value->setObjectName(QStringLiteral("lblMonitor") + names.at(i).first);
    tile.value->setAccessibleName(names.at(i).second);
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    column->addWidget(tile.caption);
    column->addWidget(tile.value);
    row->addLayout(column);
  }
  row->addStretch(1);
  Colour();
}

void MonitorFigures::Put(Figure figure, const QString& text, Ink ink, const QString& tip) {
  Tile& tile = tiles_.at(figure);
  if (tile.value->text() != text) {
    tile.value->setText(text);
    tile.value->setAccessibleName(tile.caption->text() + QStringLiteral(": ") + text);
  }
  tile.value->setToolTip(tip);
  if (std::exchange(tile.ink, ink) != ink) Colour();
}

void MonitorFigures::Show(const MonitorRunner& runner) {
  const auto& account = runner.Account();
  const bool isBroken = !runner.Trouble().isEmpty();
  Put(State, StateText(runner), isBroken ? Ink::Fault : Ink::Plain, runner.Trouble());
  const auto next = runner.NextIn();
  Put(Next, next ? CountDown(*next) : kNone);
  const bool hasLast = account && account->lastRecord;
  Put(Last, hasLast ? LocalTime(*account->lastRecord) : kNone);
  if (!account) {
    for (const Figure figure : {Records, Missed, Alarms, Incidents}) Put(figure, kNone);
    return;
  }
  const auto count = [](auto number) { return QStringLiteral("%L1").arg(number); };
  const QString unsafe =
      account->unsafe > 0 ? tr("%L1 more wait in memory").arg(account->unsafe) : QString();
  Put(Records,
      account->unsafe > 0 ? tr("%L1 + %L2").arg(account->records).arg(account->unsafe)
                          : count(account->records),
      account->unsafe > 0 ? Ink::Warning : Ink::Plain, unsafe);
  Put(Missed, count(account->missed), account->missed > 0 ? Ink::Warning : Ink::Plain);
  Put(Alarms, count(account->alarms.size()), account->alarms.empty() ? Ink::Plain : Ink::Fault);
  Put(Incidents, count(account->incidents.size()),
      account->incidents.empty() ? Ink::Plain : Ink::Warning);
}

void MonitorFigures::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Colour();
}

void MonitorFigures::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.fillRect(rect(), look.panel);
  painter.setPen(look.hairline);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MonitorFigures::Colour() {
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  for (const Tile& tile : tiles_) {
    SetInk(*tile.caption, look.muted);
    SetInk(*tile.value, tile.ink == Ink::Fault     ? look.fault
                        : tile.ink == Ink::Warning ? look.warning
                                                   : look.text);
    if (tile.caption->font() != fonts.small) tile.caption->setFont(fonts.small);
    if (tile.value->font() != fonts.heading) tile.value->setFont(fonts.heading);
  }
  layout()->invalidate();
}

}  // namespace kestrel
