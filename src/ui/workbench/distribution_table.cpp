// Rows, columns and choice of the table of distributions.
// SPDX-License-Identifier: MIT
#include "ui/workbench/distribution_table.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "ui/workbench/distribution_painter.h"

namespace kestrel {
namespace {

constexpr int kLeastRow = 30;

}  // namespace

void DistributionModel::Show(std::vector<Row> rows, const DistributionRange& range) {
  range_ = range;
  if (rows.size() != rows_.size()) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    return;
  }
  rows_ = std::move(rows);
  if (rows_.empty()) return;
  emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
  emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

const SmallDistribution* DistributionModel::At(const QModelIndex& index) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || index.column() < 1 || row >= rows_.size()) return nullptr;
  return &rows_[row].axes[static_cast<std::size_t>(index.column() - 1)];
}

int DistributionModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int DistributionModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : 4;
}

QVariant DistributionModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= rows_.size()) return {};
  const SmallDistribution* small = At(index);
  if (small == nullptr) {
    if (role == Qt::DisplayRole) return QString::number(index.row() + 1);
    if (role == Qt::UserRole) return rows_[row].hz;
    if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole) {
      return tr("Band %1, %2 Hz").arg(index.row() + 1).arg(rows_[row].hz);
    }
    return {};
  }
  if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole) return small->spoken;
  return {};
}

QVariant DistributionModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section == 0) return tr("Band, Hz");
  return section <= 3 ? QString(QLatin1Char(Letter(kAxes[static_cast<std::size_t>(section - 1)])))
                      : QVariant();
}

DistributionTable::DistributionTable(QWidget* parent) : QTableView(parent) {
  setObjectName(QStringLiteral("tblDistributions"));
  setAccessibleName(tr("Distributions of the levels by band and axis"));
  setHorizontalHeader(new DistributionHead(this));
  setModel(&model_);
  setItemDelegate(new DistributionDelegate(this));
  setShowGrid(false);
  setFrameShape(QFrame::NoFrame);
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectItems);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setMouseTracking(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(kLeastRow);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setSectionsClickable(false);
  setMinimumHeight(160);
}

void DistributionTable::Show(const baseline::Workbench& bench, const WorkbenchChoice& choice) {
  const DistributionRange range = RangeOf(bench, choice.look);
  std::vector<DistributionModel::Row> rows;
  for (int band = 1; band <= kAlarmBands; ++band) {
    DistributionModel::Row row{.hz = BandHzText(bench, band), .axes = {}};
    for (const Axis axis : kAxes) {
      row.axes[Index(axis)] = SmallOf(bench, {band, axis}, range, choice.look);
    }
    rows.push_back(std::move(row));
  }
  model_.Show(std::move(rows), range);
  FitCells();
  const QModelIndex chosen =
      model_.index(choice.cell.band - 1, 1 + static_cast<int>(Index(choice.cell.axis)));
  if (currentIndex() == chosen) return;
  const QSignalBlocker quiet(this);
  setCurrentIndex(chosen);
  viewport()->update();
}

void DistributionTable::Clear() {
  model_.Show({}, {});
}

QString DistributionTable::AsTabs() const {
  QString text = tr("Band\tHz\tAxis\tFalse\tCaught\n");
  for (int row = 0; row < model_.rowCount(); ++row) {
    for (const Axis axis : kAxes) {
      const SmallDistribution* small =
          model_.At(model_.index(row, 1 + static_cast<int>(Index(axis))));
      text += QStringLiteral("%1\t%2\t%3\t%4\t%5\n")
                  .arg(row + 1)
                  .arg(model_.index(row, 0).data(Qt::UserRole).toString())
                  .arg(QLatin1Char(Letter(axis)))
                  .arg(small->falseAlarms)
                  .arg(small->caught);
    }
  }
  return text;
}

// The names of bands are no cells to choose.
void DistributionTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (!current.isValid()) return;
  if (current.column() == 0) {
    setCurrentIndex(current.siblingAtColumn(1));
    return;
  }
  emit CellChosen({current.row() + 1, kAxes[static_cast<std::size_t>(current.column() - 1)]});
}

void DistributionTable::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QGuiApplication::clipboard()->setText(AsTabs());
    return;
  }
  const bool isAtLeft = event->key() == Qt::Key_Left && currentIndex().column() == 1;
  if (!isAtLeft) QTableView::keyPressEvent(event);
}

void DistributionTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  FitCells();
}

void DistributionTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitCells();
}

// The rows share the height, the axes the width.
void DistributionTable::FitCells() {
  const int rows = std::max(1, model_.rowCount());
  const int least = std::max(kLeastRow, 2 * fontMetrics().height() + 2);
  verticalHeader()->setDefaultSectionSize(std::max(least, viewport()->height() / rows));
  const int band =
      std::max(76, fontMetrics().horizontalAdvance(QStringLiteral("42,659 to 49,899")));
  horizontalHeader()->resizeSection(0, band + 16);
  const int rest = std::max(0, viewport()->width() - band - 16);
  for (int column = 1; column < model_.columnCount(); ++column) {
    horizontalHeader()->resizeSection(column, rest / 3);
  }
}

}  // namespace kestrel
