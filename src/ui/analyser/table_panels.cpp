// What stands in the tables beside the plot.
// SPDX-License-Identifier: MIT
#include "ui/analyser/table_panels.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "display/cursors.h"
#include "display/scene.h"
#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr int kBarColumn = 3;
constexpr auto kLeft = Qt::AlignLeft;

QColor InkOf(const QWidget& widget, Axis axis) {
  return Look::Of(widget.palette()).Ink(study::InkOf(axis));
}

QString AxisName(Axis axis) {
  return QString(QLatin1Char(Letter(axis)));
}

std::vector<Segments::Item> AxisItems(const QString& name) {
  std::vector<Segments::Item> items;
  for (const Axis axis : kAxes) items.push_back({name + AxisName(axis), AxisName(axis)});
  return items;
}

QString Unit(const std::string& unit) {
  return unit.empty() ? QString() : QStringLiteral(", ") + Text(unit);
}

QVBoxLayout* Column(QWidget& panel) {
  auto* column = new QVBoxLayout(&panel);
  column->setContentsMargins(1, 0, 1, 1);
  column->setSpacing(0);
  return column;
}

}  // namespace

PeaksPanel::PeaksPanel(StudyModel& model) : model_(model), table_("tblPeaks") {
  Column(*this)->addWidget(&table_);
  table_.setAccessibleName(tr("Peaks"));
  table_.setSortingEnabled(true);
  table_.horizontalHeader()->setSortIndicatorClearable(true);
  table_.horizontalHeader()->setSortIndicator(-1, Qt::DescendingOrder);
  connect(&model, &StudyModel::Changed, this, &PeaksPanel::Show);
  connect(&table_, &QTableView::activated, this,
          [this](const QModelIndex& index) { GoTo(index.row()); });
  Show();
}

void PeaksPanel::Show() {
  const study::PeakTable table = study::PeaksOf(model_.Get());
  const QString bound = QStringLiteral("\u00B1");
  table_.SetColumns(
      {{.head = QString(), .alignment = kLeft, .spoken = tr("Axis")},
       {.head = Text(table.frequencyHead), .spoken = tr("Frequency") + Unit(table.frequencyHead)},
       {.head = bound,
        .alignment = kLeft,
        .isMuted = true,
        .dropped = 3,
        .spoken = tr("Bound of the frequency")},
       {.head = Text(table.valueHead), .spoken = tr("Amplitude") + Unit(table.valueHead)},
       {.head = bound + " ",
        .alignment = kLeft,
        .isMuted = true,
        .dropped = 1,
        .spoken = tr("Bound of the amplitude")},
       {.head = tr("Order"), .dropped = 2, .isWanted = model_.Choice().machine.rpm.has_value()},
       {.head = tr("Nearest"), .alignment = kLeft}});
  std::vector<std::vector<TextCell>> rows;
  for (const study::PeakRow& row : table.rows) {
    rows.push_back({{AxisName(row.axis), static_cast<int>(Index(row.axis)), InkOf(*this, row.axis)},
                    {Text(row.frequency), row.hz},
                    {Text(row.frequencyBound)},
                    {Text(row.value), row.amplitude},
                    {Text(row.valueBound)},
                    {Text(row.order), row.hz},
                    {row.unresolved ? tr("unresolved") : Text(row.nearest)}});
  }
  table_.Model().SetRows(std::move(rows));
  table_.SetHint(model_.Get().Shown() == nullptr
                     ? tr("The peaks of each record, largest first.")
                     : tr("No peak stands above the noise of this record."));
  emit Summarised(Text(table.summary));
}

void PeaksPanel::GoTo(int row) {
  const QModelIndex frequency = table_.Model().index(row, 1);
  const QVariant hz = frequency.data(Qt::UserRole);
  if (!hz.isValid()) return;
  const study::StudyChoice& choice = model_.Choice();
  study::CursorPlaces places = choice.inSpectrum;
  places.at = hz.toDouble();
  const bool isNone = choice.cursor == study::CursorKind::None;
  model_.MoveCursor(isNone ? study::CursorKind::Single : choice.cursor, places);
}

LevelsPanel::LevelsPanel(StudyModel& model)
    : model_(model),
      levels_("tblLevels"),
      lblBands_(tr("Alarm bands")),
      axis_("segBandsAxis", tr("Axis of the alarm bands"), AxisItems("cmdBandsOf")),
      bands_("tblBands"),
      bars_(new BarDelegate(&bands_)) {
  levels_.setAccessibleName(tr("Levels"));
  bands_.setAccessibleName(tr("Levels in the alarm bands"));
  bands_.setItemDelegateForColumn(kBarColumn, bars_);
  auto* column = Column(*this);
  column->addWidget(&levels_, 3);
  auto* head = new QHBoxLayout;
  head->setContentsMargins(12, 4, 8, 4);
  head->addWidget(&lblBands_, 1);
  head->addWidget(&axis_);
  column->addLayout(head);
  column->addWidget(&bands_, 4);
  levels_.installEventFilter(this);
  connect(&model, &StudyModel::Changed, this, &LevelsPanel::Show);
  connect(&axis_, &Segments::Chosen, this, [this](int axis) {
    model_.Change([axis](auto& choice) { choice.focus = kAxes[static_cast<std::size_t>(axis)]; });
  });
  Show();
}

void LevelsPanel::Show() {
  const study::LevelTable table = study::LevelsOf(model_.Get());
  levels_.SetColumns({{.head = QString(), .alignment = kLeft, .spoken = tr("Level")},
                      {QStringLiteral("X")},
                      {QStringLiteral("Y")},
                      {QStringLiteral("Z")},
                      {tr("Note"), kLeft, true}});
  std::vector<std::vector<TextCell>> rows;
  for (const study::LevelRow& row : table.rows) {
    rows.push_back({{Text(row.name)},
                    {Text(row.values[0])},
                    {Text(row.values[1])},
                    {Text(row.values[2])},
                    {Text(row.note)}});
  }
  levels_.Model().SetRows(std::move(rows));
  levels_.SetHint(tr("Overall and band levels of each record."));
  lblBands_.setFont(LookFonts(font()).bold);
  axis_.Choose(static_cast<int>(Index(model_.Choice().focus)));
  ShowBands();
  emit Summarised(Text(table.summary));
}

void LevelsPanel::AddBand(const study::FreeBand& band) {
  model_.Change([&band](study::StudyChoice& choice) { choice.bands.push_back(band); });
}

// The user's bands are the last rows.
void LevelsPanel::RemoveBands() {
  const auto count = static_cast<int>(model_.Choice().bands.size());
  const int first = levels_.Model().rowCount() - count;
  std::vector<int> selected;
  for (const QModelIndex& row : levels_.selectionModel()->selectedRows()) {
    if (row.row() >= first) selected.push_back(row.row() - first);
  }
  if (selected.empty() || model_.Choice().view == study::View::Time) return;
  std::sort(selected.rbegin(), selected.rend());
  model_.Change([&selected](study::StudyChoice& choice) {
    for (const int band : selected) choice.bands.erase(choice.bands.begin() + band);
  });
}

bool LevelsPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
    RemoveBands();
    return true;
  }
  return SummarisedPanel::eventFilter(watched, event);
}

void LevelsPanel::ShowBands() {
  bands_.SetColumns({{tr("Band"), kLeft},
                     {QStringLiteral("Hz"), kLeft, true},
                     {QStringLiteral("g peak")},
                     {tr("level"), kLeft},
                     {tr("dB free")}});
  std::vector<std::vector<TextCell>> rows;
  std::vector<BandBar> bars;
  for (const study::BandRow& row : study::BandsOf(model_.Get())) {
    rows.push_back(
        {{QString::number(row.number)},
         {Text(row.range)},
         {Text(row.largest)},
         {QString(), {}, {}, Text(row.state)},
         {row.kind == analysis::BandState::Free ? Text(row.headroom) : Text(row.state)}});
    bars.push_back({row.level, row.warning, row.fault, row.kind});
  }
  bars_->SetBars(std::move(bars));
  bands_.Model().SetRows(std::move(rows));
  bands_.horizontalHeader()->setSectionResizeMode(kBarColumn, QHeaderView::Stretch);
  bands_.horizontalHeader()->setStretchLastSection(false);
  bands_.SetHint(
      tr("No alarm bands are known for this axis and sample rate. The window Alarm "
         "spectrum reads and sets them."));
  bands_.viewport()->update();
}

CursorPanel::CursorPanel(StudyModel& model) : model_(model), table_("tblCursor") {
  Column(*this)->addWidget(&table_);
  table_.setAccessibleName(tr("Cursor"));
  connect(&model, &StudyModel::Changed, this, &CursorPanel::Show);
  connect(&model, &StudyModel::CursorMoved, this, &CursorPanel::Show);
  Show();
}

void CursorPanel::NextMember(int step) {
  const int rows = table_.Model().rowCount();
  if (rows == 0) return;
  const QModelIndex now = table_.currentIndex();
  table_.selectRow(((now.isValid() ? now.row() + step : 0) + rows) % rows);
}

void CursorPanel::Show() {
  const study::CursorTable table = study::CursorTableOf(model_.Get());
  std::vector<TextColumn> columns;
  for (const std::string& head : table.table.heads) {
    columns.push_back({Text(head), columns.empty() ? kLeft : Qt::AlignRight});
  }
  table_.SetColumns(std::move(columns));
  std::vector<std::vector<TextCell>> rows;
  for (const auto& cells : table.table.rows) {
    std::vector<TextCell> row;
    for (const std::string& cell : cells) row.push_back({Text(cell)});
    rows.push_back(std::move(row));
  }
  table_.Model().SetRows(std::move(rows));
  table_.SetHint(tr("Values at the cursor. A click in the plot or C, D, H, S puts one there."));
  emit Summarised(Text(table.summary));
}

}  // namespace kestrel
