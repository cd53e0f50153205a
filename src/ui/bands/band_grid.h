// The grid of the alarm bands.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QTableView>
#include <functional>

#include "ui/bands/band_grid_model.h"

namespace kestrel {

// The grid of the alarm bands. Arrows, Tab and Enter move, F2, typing and a double click edit,
// Escape leaves an edit. Tab leaves the grid at its ends.
class BandGrid : public QTableView {
 public:
  explicit BandGrid(BandGridModel& model);

  [[nodiscard]] CellBlock Selected() const;
  void Select(const CellBlock& block);

  // Takes what is being typed into a cell.
  void Commit();

  // Called when an edit of a cell that cannot be edited is tried.
  std::function<void()> refused;

  // In the context menu, with their keys while the grid has the focus.
  QAction* const cut;
  QAction* const copy;
  QAction* const paste;
  QAction* const zero;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  using QTableView::edit;
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void focusInEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QAction* Add(const char* name, const QString& text, const QList<QKeySequence>& keys);
  // To the next cell in reading order, or the one before; false at the end.
  bool Step(int step);
  // Down a column, then to the top of the next; or the other way.
  void StepDown(int step);
  [[nodiscard]] int ColumnWidth(int column) const;
  void FitCells();

  BandGridModel& bands_;
};

}  // namespace kestrel
