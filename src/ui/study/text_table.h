// A table of texts as the analyser shows them: calm rows, copied with heads and units.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <QVariant>
#include <vector>

#include "analysis/cursors.h"

namespace kestrel {

class TableHead;

// How a column is set.
struct TextColumn {
  QString head;
  Qt::Alignment alignment = Qt::AlignRight;
  bool isMuted = false;  // bounds, seconds
  int dropped = 0;       // 1 is the first to go in a narrow dock; 0 stays
  bool isWanted = true;  // shown where there is room
  QString spoken = {};   // for assistive technology, where the head is a sign or nothing
};

// A cell: its text, and what it is sorted by where that is not the text.
struct TextCell {
  QString text;
  QVariant order = {};
  QVariant mark = {};   // a swatch's colour
  QString spoken = {};  // for assistive technology, where the text does not say it
};

class TextTableModel : public QAbstractTableModel {
 public:
  static constexpr int kPaintedHead = Qt::UserRole;  // of a header; what is spoken is its text

  using QAbstractTableModel::QAbstractTableModel;

  // Rows stay where the columns have the same heads.
  void SetColumns(std::vector<TextColumn> columns);
  void SetRows(std::vector<std::vector<TextCell>> rows);
  // Letters of the longest text in a column.
  [[nodiscard]] qsizetype LongestText(std::size_t column) const;

  [[nodiscard]] const std::vector<TextColumn>& Columns() const { return columns_; }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  void SortRows();

  std::vector<TextColumn> columns_;
  std::vector<std::vector<TextCell>> rows_;
  int sortColumn_ = -1;  // as it came
  Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
};

class TextTable : public QTableView {
 public:
  explicit TextTable(const char* name, QWidget* parent = nullptr);

  [[nodiscard]] TextTableModel& Model() { return model_; }
  // The last column takes the room that is left, unless its texts stand on the right. Where the
  // columns do not fit, some are hidden; copied they are all the same.
  void SetColumns(std::vector<TextColumn> columns);
  // Says what will stand here while there are no rows.
  void SetHint(const QString& hint);
  // Cells of the selected rows, or of all where none is, with tabs, heads first.
  [[nodiscard]] QString AsTabs() const;
  void Copy() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void FitRows();
  void FitColumns();
  [[nodiscard]] int WidthOf(std::size_t column) const;
  // Whether something has changed since it was last asked that the widths of columns depend on.
  [[nodiscard]] bool IsToBeFitted();

  TextTableModel model_;
  TableHead* head_;
  std::vector<qsizetype> fitted_;  // what the columns were fitted to
  QString hint_;
};

[[nodiscard]] inline QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace kestrel
