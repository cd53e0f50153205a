// How the list keeps its place, and its keys.
// SPDX-License-Identifier: MIT
#include "ui/library/library_table.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "ui/chart/look.h"
#include "ui/library/library_delegate.h"
#include "ui/study/table_head.h"

namespace kestrel {
namespace {

constexpr std::size_t kMostChosenAgain = 2000;

}  // namespace

LibraryTable::LibraryTable(LibraryModel& model) : model_(model) {
  setObjectName("tblLibrary");
  setAccessibleName(tr("Records of the archive"));
  SetUpTable(*this, new TableHead(this), new LibraryDelegate(this));
  setModel(&model);
  setWordWrap(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  FitRows();
  connect(&model, &QAbstractItemModel::rowsInserted, this,
          [this](const QModelIndex&, int first, int last) {
            const int before = verticalScrollBar()->value();
            const int height = verticalHeader()->defaultSectionSize();
            if (before == 0 || first * height > before) return;
            updateGeometries();
            verticalScrollBar()->setValue(before + (last - first + 1) * height);
          });
  connect(&model, &LibraryModel::RowsToBeOthers, this, &LibraryTable::Remember);
  connect(&model, &LibraryModel::RowsAreOthers, this, &LibraryTable::ChooseAgain);
  connect(this, &QTableView::doubleClicked, this, &LibraryTable::OpenAsked);
}

std::vector<ArchiveId> LibraryTable::Chosen() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  }
  std::ranges::sort(rows);
  const auto rest = std::ranges::unique(rows);
  rows.erase(rest.begin(), rest.end());
  std::vector<ArchiveId> ids;
  for (const int row : rows) ids.push_back(model_.IdOf(row));
  return ids;
}

void LibraryTable::SetHint(const QString& hint) {
  if (hint_ == hint) return;
  hint_ = hint;
  viewport()->update();
}

void LibraryTable::Remember() {
  chosen_ = Chosen();
  current_.reset();
  if (currentIndex().isValid()) current_ = model_.IdOf(currentIndex().row());
  top_.reset();
  const int top = rowAt(1);
  if (verticalScrollBar()->value() > 0 && top >= 0) top_ = model_.IdOf(top);
}

void LibraryTable::ChooseAgain() {
  QItemSelection again;
  if (chosen_.size() <= kMostChosenAgain) {
    for (const ArchiveId id : chosen_) {
      const int row = model_.RowOf(id);
      if (row < 0) continue;
      again.merge(
          QItemSelection(model_.index(row, 0), model_.index(row, LibraryModel::Columns - 1)),
          QItemSelectionModel::Select);
    }
  }
  if (current_ && model_.RowOf(*current_) >= 0) {
    selectionModel()->setCurrentIndex(model_.index(model_.RowOf(*current_), LibraryModel::Time),
                                      QItemSelectionModel::NoUpdate);
  }
  selectionModel()->select(again, QItemSelectionModel::ClearAndSelect);
  const int top = top_ ? model_.RowOf(*top_) : -1;
  if (top >= 0) {
    updateGeometries();
    verticalScrollBar()->setValue(top * verticalHeader()->defaultSectionSize());
  }
}

void LibraryTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    emit OpenAsked();
    return;
  }
  if (event->matches(QKeySequence::Delete)) {
    emit DeleteAsked();
    return;
  }
  QTableView::keyPressEvent(event);
}

void LibraryTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitRows();
}

void LibraryTable::FitRows() {
  verticalHeader()->setDefaultSectionSize(std::max(36, fontMetrics().height() + 12));
  FitColumns();
}

// By the font alone: to measure the rows would mean to read them all.
void LibraryTable::FitColumns() {
  using M = LibraryModel;
  static constexpr std::array<std::pair<int, int>, 10> kCharacters{{{M::Time, 19},
                                                                    {M::Machine, 13},
                                                                    {M::Point, 11},
                                                                    {M::Kind, 25},
                                                                    {M::X, 7},
                                                                    {M::Y, 7},
                                                                    {M::Z, 7},
                                                                    {M::Alarm, 5},
                                                                    {M::Tags, 9},
                                                                    {M::Note, 5}}};
  setColumnWidth(M::Picture, 68);
  for (const auto& [column, characters] : kCharacters) {
    const int least = horizontalHeader()->sectionSizeHint(column);
    setColumnWidth(column, std::max(least, characters * fontMetrics().horizontalAdvance('0')));
  }
}

void LibraryTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (hint_.isEmpty() || model_.rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(Look::Of(palette()).muted);
  painter.drawText(viewport()->rect().adjusted(24, 24, -24, -24),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, hint_);
}

}  // namespace kestrel
