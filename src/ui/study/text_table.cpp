// How the analyser's tables hold, sort, paint and copy their rows.
// SPDX-License-Identifier: MIT
#include "ui/study/text_table.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <map>
#include <utility>

#include "ui/chart/look.h"
#include "ui/study/row_delegate.h"
#include "ui/study/table_head.h"

namespace kestrel {
void TextTableModel::SetColumns(std::vector<TextColumn> columns) {
  const bool isSame = std::equal(
      columns.begin(), columns.end(), columns_.begin(), columns_.end(),
      [](const auto& a, const auto& b) { return a.head == b.head && a.spoken == b.spoken; });
  if (isSame) {
    columns_ = std::move(columns);
    return;
  }
  beginResetModel();
  columns_ = std::move(columns);
  rows_.clear();
  endResetModel();
}

void TextTableModel::SetRows(std::vector<std::vector<TextCell>> rows) {
  const auto now = static_cast<int>(rows.size());
  const auto before = static_cast<int>(rows_.size());
  if (now > before) {
    beginInsertRows({}, before, now - 1);
    rows_ = std::move(rows);
    SortRows();
    endInsertRows();
  } else if (now < before) {
    beginRemoveRows({}, now, before - 1);
    rows_ = std::move(rows);
    SortRows();
    endRemoveRows();
  } else {
    rows_ = std::move(rows);
    SortRows();
  }
  if (now > 0) emit dataChanged(index(0, 0), index(now - 1, columnCount() - 1));
}

int TextTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TextTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant TextTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const auto& row = rows_[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<std::size_t>(index.column());
  if (column >= row.size() || column >= columns_.size()) return {};
  const TextCell& cell = row[column];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return cell.text;
    case Qt::AccessibleTextRole:
      if (!cell.spoken.isEmpty()) return cell.spoken;
      return cell.text.isEmpty() ? tr("none") : cell.text;
    case Qt::DecorationRole:
      return cell.mark;
    case Qt::UserRole:
      return cell.order;
    case Qt::ForegroundRole:
      return columns_[column].isMuted;
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(columns_[column].alignment);
    default:
      return {};
  }
}

qsizetype TextTableModel::LongestText(std::size_t column) const {
  qsizetype longest = 0;
  for (const auto& row : rows_) {
    if (column < row.size()) longest = std::max(longest, row[column].text.size());
  }
  return longest;
}

QVariant TextTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const TextColumn& column = columns_[static_cast<std::size_t>(section)];
  if (role == kPaintedHead) return column.head;
  if (role == Qt::DisplayRole) return column.spoken.isEmpty() ? column.head : column.spoken;
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
  }
  return {};
}

void TextTableModel::sort(int column, Qt::SortOrder order) {
  sortColumn_ = column;
  sortOrder_ = order;
  emit layoutAboutToBeChanged();
  SortRows();
  emit layoutChanged();
}

void TextTableModel::SortRows() {
  if (sortColumn_ < 0 || sortColumn_ >= columnCount()) return;
  const auto column = static_cast<std::size_t>(sortColumn_);
  const auto key = [column](const std::vector<TextCell>& row) {
    return column < row.size() ? row[column] : TextCell();
  };
  const auto isLess = [](const TextCell& a, const TextCell& b) {
    if (a.order.isValid() && b.order.isValid()) return a.order.toDouble() < b.order.toDouble();
    return QString::localeAwareCompare(a.text, b.text) < 0;
  };
  std::stable_sort(rows_.begin(), rows_.end(), [&](const auto& a, const auto& b) {
    return sortOrder_ == Qt::AscendingOrder ? isLess(key(a), key(b)) : isLess(key(b), key(a));
  });
}

TextTable::TextTable(const char* name, QWidget* parent)
    : QTableView(parent), head_(new TableHead(this)) {
  setObjectName(name);
  SetUpTable(*this, head_, new RowDelegate(this));
  setModel(&model_);
  head_->setSectionResizeMode(QHeaderView::ResizeToContents);
  for (const auto changed : {&TextTableModel::rowsInserted, &TextTableModel::rowsRemoved}) {
    connect(&model_, changed, this, &TextTable::FitColumns);
  }
  connect(&model_, &TextTableModel::dataChanged, this, &TextTable::FitColumns);
  FitRows();
}

void TextTable::SetColumns(std::vector<TextColumn> columns) {
  horizontalHeader()->setStretchLastSection(!columns.empty() &&
                                            columns.back().alignment == Qt::AlignLeft);
  model_.SetColumns(std::move(columns));
  FitColumns();
}

void TextTable::SetHint(const QString& hint) {
  hint_ = hint;
  viewport()->update();
}

QString TextTable::AsTabs() const {
  analysis::TextTable table;
  for (const TextColumn& column : model_.Columns()) {
    table.heads.push_back(column.head.toStdString());
  }
  QModelIndexList rows = selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  const auto add = [&](int row) {
    std::vector<std::string> cells;
    for (int column = 0; column < model_.columnCount(); ++column) {
      cells.push_back(
          model_.data(model_.index(row, column), Qt::DisplayRole).toString().toStdString());
    }
    table.rows.push_back(std::move(cells));
  };
  if (rows.isEmpty()) {
    for (int row = 0; row < model_.rowCount(); ++row) add(row);
  }
  for (const QModelIndex& row : rows) add(row.row());
  return Text(table.WithTabs());
}

void TextTable::Copy() const {
  QGuiApplication::clipboard()->setText(AsTabs());
}

void TextTable::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
    return;
  }
  QTableView::keyPressEvent(event);
}

void TextTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (model_.rowCount() > 0 || hint_.isEmpty()) return;
  QPainter painter(viewport());
  const Look look = Look::Of(palette());
  if (hasFocus()) {  // no row shows it
    painter.setPen(QPen(look.accent, 2));
    painter.drawRect(viewport()->rect().adjusted(2, 2, -2, -2));
  }
  painter.setPen(look.muted);
  painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, hint_);
}

void TextTable::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitRows();
  QTableView::changeEvent(event);
}

void TextTable::FitRows() {
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 9);
  verticalHeader()->setMinimumSectionSize(fontMetrics().height() + 4);
}

void TextTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  FitColumns();
}

// Measuring every cell at every record takes longer than showing it: texts of the same length with
// tabular figures need the same room.
bool TextTable::IsToBeFitted() {
  const std::vector<TextColumn>& columns = model_.Columns();
  std::vector<qsizetype> now{viewport()->width(), fontMetrics().height()};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    now.push_back(columns[i].isWanted ? model_.LongestText(i) : -1);
    now.push_back(columns[i].head.size());
  }
  return std::exchange(fitted_, now) != now;
}

void TextTable::FitColumns() {
  if (!IsToBeFitted()) return;
  const std::vector<TextColumn>& columns = model_.Columns();
  std::map<int, std::size_t> turns;  // of the columns that may go
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].isWanted && columns[i].dropped > 0) turns[columns[i].dropped] = i;
  }
  std::vector<bool> isShown;
  for (const TextColumn& column : columns) isShown.push_back(column.isWanted);
  int excess = turns.empty() ? 0 : -viewport()->width();
  for (std::size_t i = 0; i < columns.size() && !turns.empty(); ++i) {
    if (isShown[i]) excess += WidthOf(i);
  }
  for (const auto& [turn, column] : turns) {
    if (excess <= 0) break;
    isShown[column] = false;
    excess -= WidthOf(column);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int section = static_cast<int>(i);
    if (isColumnHidden(section) == isShown[i]) setColumnHidden(section, !isShown[i]);
  }
}

// What its head and its cells need.
int TextTable::WidthOf(std::size_t column) const {
  const int section = static_cast<int>(column);
  return std::max(sizeHintForColumn(section), head_->WidthOf(section));
}

}  // namespace kestrel
