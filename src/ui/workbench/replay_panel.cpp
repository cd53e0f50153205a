// How the replay's counts are shown.
// SPDX-License-Identifier: MIT
#include "ui/workbench/replay_panel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "display/scene.h"
#include "ui/chart/look.h"
#include "ui/workbench/detail_of.h"

namespace kestrel {
namespace {

constexpr auto kLeft = Qt::AlignLeft;

}  // namespace

ReplayPanel::ReplayPanel(WorkbenchModel& model)
    : model_(model),
      falseAlarms_(MakeFigure("lblFalseAlarms", tr("False alarms, any band"))),
      misses_(MakeFigure("lblMisses", tr("Misses, all bands silent"))),
      table_(new TextTable("tblReplay")) {
  setObjectName("replayPanel");
  LayOut();
  connect(&model_, &WorkbenchModel::Changed, this, &ReplayPanel::Show);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& row) {
            const auto cells = baseline::AllCells();
            const auto index = static_cast<std::size_t>(row.row());
            if (row.isValid() && index < cells.size()) model_.ChooseCell(cells[index]);
          });
  Show();
}

ReplayPanel::Figure ReplayPanel::MakeFigure(const char* name, const QString& title) {
  Figure figure{new QLabel(title), new QLabel, new QLabel, new BenchNote(QString(name) + "_share")};
  figure.title->setObjectName(QString(name) + "_title");
  figure.count->setObjectName(name);
  figure.of->setObjectName(QString(name) + "_of");
  return figure;
}

void ReplayPanel::LayOut() {
  table_->setAccessibleName(tr("False alarms and catches by band and axis"));
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->SetColumns({{.head = tr("Band"), .alignment = kLeft},
                      {.head = tr("Axis"), .alignment = kLeft},
                      {.head = tr("False")},
                      {.head = QStringLiteral("%"),
                       .isMuted = true,
                       .dropped = 2,
                       .spoken = tr("95 % bounds of false alarms, %")},
                      {.head = tr("Caught")},
                      {.head = QStringLiteral("% "),
                       .isMuted = true,
                       .dropped = 1,
                       .spoken = tr("95 % bounds of catches, %")}});
  const int last = table_->Model().columnCount() - 1;
  table_->horizontalHeader()->setSectionResizeMode(last, QHeaderView::Stretch);
  table_->SetHint(tr("How often each band would have alarmed over the records that are chosen."));
  auto* figures = new QHBoxLayout;
  figures->setContentsMargins(12, 6, 12, 6);
  figures->setSpacing(12);
  for (const Figure& figure : {falseAlarms_, misses_}) {
    auto* line = new QHBoxLayout;
    line->setSpacing(4);
    line->addWidget(figure.count);
    line->addWidget(figure.of, 0, Qt::AlignBottom);
    line->addStretch(1);
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    figure.title->setWordWrap(true);
    column->addWidget(figure.title);
    column->addLayout(line);
    column->addWidget(figure.share);
    column->addStretch(1);
    figures->addLayout(column, 1);
  }
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(figures);
  column->addWidget(table_, 1);
  Colour();
}

void ReplayPanel::Show() {
  const bool isThere = model_.HasGood();
  const baseline::Overall none{};
  const baseline::Overall& overall = isThere ? model_.Bench().Everything() : none;
  ShowFigure(falseAlarms_, overall.falseAlarms);
  ShowFigure(misses_, overall.misses);
  ShowRows();
}

void ReplayPanel::ShowFigure(const Figure& figure, const baseline::Count& count) {
  const bool isThere = count.of > 0;
  figure.count->setText(isThere ? QStringLiteral("%L1").arg(count.counted)
                                : QStringLiteral("\u2013"));
  figure.of->setText(isThere ? tr("of %L1").arg(count.of) : QString());
  figure.share->setText(ShareText(count));
}

void ReplayPanel::ShowRows() {
  const QSignalBlocker quiet(table_->selectionModel());
  if (!model_.HasGood()) {
    table_->Model().SetRows({});
    return;
  }
  const Look look = Look::Of(palette());
  std::vector<std::vector<TextCell>> rows;
  int chosen = 0;
  for (const baseline::CellPlace& cell : baseline::AllCells()) {
    const baseline::CellState& state = model_.Bench().At(cell);
    const QString name = QString(QLatin1Char(Letter(cell.axis)));
    const QString band = cell.axis == Axis::X ? QString::number(cell.band) : QString();
    if (cell == model_.Choice().cell) chosen = static_cast<int>(rows.size());
    std::vector<TextCell> row{{band, {}, {}, tr("Band %1").arg(cell.band)},
                              {name, {}, look.Ink(study::InkOf(cell.axis))}};
    const bool isRefused = !state.levels.refusal.empty();
    for (const baseline::Count& count : {state.warnings.falseAlarms, state.warnings.caught}) {
      const bool isCounted = !isRefused && count.of > 0;
      row.push_back({isCounted ? QStringLiteral("%L1").arg(count.counted) : QString()});
      row.push_back({isCounted ? BoundsText(count) : QString()});
    }
    rows.push_back(std::move(row));
  }
  table_->Model().SetRows(std::move(rows));
  if (table_->currentIndex().row() != chosen || !table_->selectionModel()->hasSelection()) {
    table_->setCurrentIndex(table_->Model().index(chosen, 0));
    table_->scrollTo(table_->currentIndex());
  }
  table_->viewport()->update();
}

void ReplayPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) Colour();
  if (event->type() == QEvent::PaletteChange) ShowRows();
}

void ReplayPanel::Colour() {
  const LookFonts fonts(font());
  for (const Figure& figure : {falseAlarms_, misses_}) {
    if (figure.count->font() != fonts.figure) figure.count->setFont(fonts.figure);
    if (figure.title->font() != fonts.small) figure.title->setFont(fonts.small);
  }
}

}  // namespace kestrel
