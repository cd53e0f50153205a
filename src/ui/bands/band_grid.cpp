// Keys, focus, entries and selection of the grid.
// SPDX-License-Identifier: MIT
#include "ui/bands/band_grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "ui/bands/band_grid_delegate.h"

namespace kestrel {
namespace {

constexpr int kCells = kAlarmBands * kBandColumns;

}  // namespace

BandGrid::BandGrid(BandGridModel& model)
    : cut(Add("mnuCut", tr("Cu&t"), {QKeySequence::Cut})),
      copy(Add("mnuCopy", tr("&Copy"), {QKeySequence::Copy})),
      paste(Add("mnuPaste", tr("&Paste"), {QKeySequence::Paste})),
      zero(Add("mnuZero", tr("Set to &0"), {QKeySequence::Delete})),
      bands_(model) {
  setObjectName("grdBands");
  setAccessibleName(tr("Alarm bands"));
  setModel(&model);
  setItemDelegate(new BandGridDelegate(this));
  setSelectionMode(ContiguousSelection);
  setTabKeyNavigation(false);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  setWordWrap(false);
  setHorizontalScrollMode(ScrollPerPixel);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setHighlightSections(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  setCurrentIndex(model.index(0, 0));
}

QAction* BandGrid::Add(const char* name, const QString& text, const QList<QKeySequence>& keys) {
  auto* action = new QAction(text, this);
  action->setObjectName(name);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetShortcut);
  addAction(action);
  return action;
}

CellBlock BandGrid::Selected() const {
  const QItemSelection selection = selectionModel()->selection();
  if (selection.isEmpty()) {
    const BandCell cell = BandGridModel::CellAt(currentIndex());
    return {cell, cell};
  }
  CellBlock block{BandGridModel::CellAt(selection.first().topLeft()),
                  BandGridModel::CellAt(selection.first().bottomRight())};
  for (const QItemSelectionRange& range : selection) {
    const BandCell first = BandGridModel::CellAt(range.topLeft());
    const BandCell last = BandGridModel::CellAt(range.bottomRight());
    block = {{std::min(block.first.band, first.band), std::min(block.first.column, first.column)},
             {std::max(block.last.band, last.band), std::max(block.last.column, last.column)}};
  }
  return block;
}

void BandGrid::Select(const CellBlock& block) {
  const QModelIndex first = bands_.index(block.first.band - 1, block.first.column - 1);
  const QModelIndex last = bands_.index(block.last.band - 1, block.last.column - 1);
  selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  selectionModel()->select(QItemSelection(first, last), QItemSelectionModel::ClearAndSelect);
}

bool BandGrid::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  const bool wished = (trigger & editTriggers()) != 0 && index.isValid();
  if (wished && !bands_.flags(index).testFlag(Qt::ItemIsEditable)) refused();
  return QTableView::edit(index, trigger, event);
}

void BandGrid::Commit() {
  QWidget* editor = indexWidget(currentIndex());
  if (editor == nullptr) return;
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
}

// After an entry the cursor moves on, and typing begins the next one.
void BandGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
  if (hint == QAbstractItemDelegate::SubmitModelCache) StepDown(1);
  if (hint == QAbstractItemDelegate::EditNextItem && !Step(1)) focusNextChild();
  if (hint == QAbstractItemDelegate::EditPreviousItem && !Step(-1)) focusPreviousChild();
}

void BandGrid::keyPressEvent(QKeyEvent* event) {
  const bool editing = state() == EditingState;
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!editing) StepDown(event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
      return;
    case Qt::Key_Escape:  // a second one does not close the window
      if (!editing) setCurrentIndex(currentIndex());
      return;
    case Qt::Key_Space:  // begins no number
      return;
    default:
      QTableView::keyPressEvent(event);
  }
}

bool BandGrid::Step(int step) {
  const int cell = currentIndex().row() * kBandColumns + currentIndex().column() + step;
  if (cell < 0 || cell >= kCells) return false;
  setCurrentIndex(bands_.index(cell / kBandColumns, cell % kBandColumns));
  return true;
}

void BandGrid::StepDown(int step) {
  const int cell = currentIndex().column() * kAlarmBands + currentIndex().row() + step;
  if (cell >= 0 && cell < kCells) {
    setCurrentIndex(bands_.index(cell % kAlarmBands, cell / kAlarmBands));
  }
}

bool BandGrid::focusNextPrevChild(bool next) {
  return (state() != EditingState && Step(next ? 1 : -1)) || QTableView::focusNextPrevChild(next);
}

// Whoever comes by Tab begins at the end he comes from.
void BandGrid::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason) setCurrentIndex(bands_.index(0, 0));
  if (event->reason() == Qt::BacktabFocusReason) {
    setCurrentIndex(bands_.index(kAlarmBands - 1, kBandColumns - 1));
  }
}

void BandGrid::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitCells();
}

void BandGrid::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  FitCells();
}

int BandGrid::ColumnWidth(int column) const {
  return std::max(sizeHintForIndex(bands_.index(0, column)).width(),
                  horizontalHeader()->sectionSizeHint(column));
}

// Every cell has the room it needs; what is left over is shared.
void BandGrid::FitCells() {
  const int row = sizeHintForIndex(bands_.index(0, 0)).height();
  verticalHeader()->setDefaultSectionSize(
      std::clamp(viewport()->height() / kAlarmBands, row, 2 * row));
  int needed = 0;
  for (int column = 0; column < kBandColumns; ++column) needed += ColumnWidth(column);
  const int spare = std::max(0, viewport()->width() - needed);
  for (int column = 0; column < kBandColumns; ++column) {
    const int share = spare * (column + 1) / kBandColumns - spare * column / kBandColumns;
    horizontalHeader()->resizeSection(column, ColumnWidth(column) + share);
  }
}

QSize BandGrid::sizeHint() const {
  int width = verticalHeader()->sizeHint().width() + 2 * frameWidth();
  for (int column = 0; column < kBandColumns; ++column) width += ColumnWidth(column);
  const int row = sizeHintForIndex(bands_.index(0, 0)).height();
  return {width, horizontalHeader()->sizeHint().height() + kAlarmBands * row + 2 * frameWidth()};
}

// On a small screen or with a large font it scrolls.
QSize BandGrid::minimumSizeHint() const {
  const QSize room = screen()->availableGeometry().size();
  return sizeHint().boundedTo(QSize(room.width() * 9 / 10, room.height() * 4 / 10));
}

}  // namespace kestrel
