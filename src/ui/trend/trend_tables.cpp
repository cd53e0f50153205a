// How events and figures stand in their tables.
// SPDX-License-Identifier: MIT
#include "ui/trend/trend_tables.h"

#include <QVBoxLayout>
#include <algorithm>

#include "record/utc_time.h"
#include "ui/chart/look.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

constexpr auto kLeft = Qt::AlignLeft;
constexpr double kMinutes = 1e6;  // s; moments are told to the minute

// Without its unit, which stands in the head.
QString Bare(double value, const trend::Choice& choice) {
  return Text(ValueText(value, choice.level, choice.up)).section(' ', 0, 0);
}

// Without the year where it is that of the newest record.
QString Moment(double utc, const QString& year) {
  return Text(ClockText(utc, LocalOffset, kMinutes)).remove(' ' + year);
}

// A row with the moment it is sorted by.
struct Row {
  double begin = 0;
  std::vector<TextCell> cells;
};

Row RowOf(const trend::AlarmEvent& event, const trend::Choice& choice, const Look& look,
          const QString& year) {
  const QString largest = event.largest ? Bare(*event.largest, choice) : QString();
  return {event.begin,
          {{Moment(event.begin, year), event.begin},
           {Text(NameOf(event)), {}, event.isFault ? look.fault : look.warning},
           {largest, event.largest ? QVariant(*event.largest) : QVariant()},
           {Text(LastedText(event)), event.to - event.begin},
           {QString::number(event.id), static_cast<qlonglong>(event.id)}}};
}

Row RowOf(const trend::Gap& gap, std::int64_t id, const QString& year) {
  return {gap.from,
          {{Moment(gap.from, year), gap.from},
           {TrendTables::tr("No records")},
           {QString()},
           {Text(trend::DurationText(gap.to - gap.from)), gap.to - gap.from},
           {QString::number(id), static_cast<qlonglong>(id)}}};
}

}  // namespace

TrendTables::TrendTables()
    : lblEvents_(tr("Events")),
      events_("tblTrendEvents"),
      lblFigures_(tr("Figures of what is shown")),
      figures_("tblTrendFigures") {
  setObjectName("trendTables");
  events_.setAccessibleName(tr("Events"));
  figures_.setAccessibleName(tr("Figures of what is shown"));
  events_.SetHint(tr("Alarms of the records and gaps between them will stand here."));
  figures_.SetHint(tr("Least, mean and largest of what is shown will stand here."));
  events_.setSelectionMode(QAbstractItemView::ExtendedSelection);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  for (QLabel* title : {&lblEvents_, &lblFigures_}) {
    title->setFont(LookFonts(font()).bold);
    title->setContentsMargins(12, 6, 12, 6);
  }
  lblEvents_.setBuddy(&events_);
  lblFigures_.setBuddy(&figures_);
  column->addWidget(&lblEvents_);
  column->addWidget(&events_, 3);
  column->addWidget(&lblFigures_);
  column->addWidget(&figures_, 2);
  const auto idOf = [this](const QModelIndex& index) {
    return events_.Model().index(index.row(), 4).data(Qt::UserRole).toLongLong();
  };
  connect(events_.selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this, idOf](const QModelIndex& index) {
            if (index.isValid()) emit RecordAsked(idOf(index));
          });
  connect(&events_, &QTableView::clicked, this,
          [this, idOf](const QModelIndex& index) { emit RecordAsked(idOf(index)); });
  connect(&events_, &QTableView::activated, this, &TrendTables::OpenAsked);
}

void TrendTables::ShowEvents(const trend::Data& read, const trend::Choice& choice) {
  const Look look = Look::Of(palette());
  const QString unit = Text(archive::UnitOf(choice.level.of));
  events_.SetColumns({{.head = tr("Begin"), .alignment = kLeft},
                      {.head = tr("What"), .alignment = kLeft},
                      {.head = unit, .spoken = tr("Largest level, %1").arg(unit)},
                      {.head = tr("Lasted")},
                      {.head = tr("Record"), .isMuted = true, .dropped = 1}});
  const QString year = Text(DayText(SecondsOf(read.Newest()), LocalOffset)).section(' ', -1);
  std::vector<Row> rows;
  for (const trend::AlarmEvent& event : read.events)
    rows.push_back(RowOf(event, choice, look, year));
  for (const trend::Gap& gap : read.gaps) {
    rows.push_back(RowOf(gap, read.Shown()[gap.before].id, year));
  }
  std::ranges::stable_sort(rows, std::greater{}, &Row::begin);
  std::vector<std::vector<TextCell>> cells;
  for (Row& row : rows) cells.push_back(std::move(row.cells));
  lblEvents_.setText(cells.empty() ? tr("Events") : tr("Events: %L1").arg(cells.size()));
  const QSignalBlocker blocker(events_.selectionModel());
  events_.Model().SetRows(std::move(cells));
}

void TrendTables::ShowFigures(const trend::Data& read, const trend::Choice& choice,
                              const PlotRange& across) {
  const bool isOfAxis = archive::IsOfAxis(choice.level.of);
  figures_.SetColumns(
      {{.head = QString(), .alignment = kLeft, .spoken = tr("Axis")},
       {.head = tr("Least")},
       {.head = tr("Mean")},
       {.head = tr("Median"), .dropped = 1},
       {.head = tr("Largest")},
       {.head = QStringLiteral("\u03C3"), .dropped = 2, .spoken = tr("Standard deviation")},
       {.head = tr("Count"), .isMuted = true, .dropped = 3}});
  const PlotRange seconds{across.low + read.start, across.high + read.start};
  // The deviation is no level: it has no decibels.
  trend::Choice linear = choice;
  linear.up = AxisKind::Linear;
  const Look look = Look::Of(palette());
  std::vector<std::vector<TextCell>> rows;
  for (const Axis axis : kAxes) {
    if (isOfAxis ? !choice.Shows(axis) : axis != Axis::X) continue;
    const auto told = trend::StatisticsOf(read.Shown(), Index(axis), seconds);
    if (!told) continue;
    const QVariant ink = isOfAxis ? QVariant(look.inks[Index(axis)]) : QVariant();
    rows.push_back({{isOfAxis ? QString(QLatin1Char(Letter(axis))) : QString(), {}, ink},
                    {Bare(told->least, choice), told->least},
                    {Bare(told->mean, choice), told->mean},
                    {Bare(told->median, choice), told->median},
                    {Bare(told->largest, choice), told->largest},
                    {Bare(told->deviation, linear), told->deviation},
                    {QLocale(QLocale::English).toString(static_cast<qulonglong>(told->count))}});
  }
  figures_.Model().SetRows(std::move(rows));
}

}  // namespace kestrel
