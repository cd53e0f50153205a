// The head row of the analyser's tables.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemDelegate>
#include <QHeaderView>
#include <QTableView>
#include <algorithm>

namespace kestrel {

// Small muted words over a hairline; a triangle where the rows are sorted by the user.
class TableHead : public QHeaderView {
 public:
  explicit TableHead(QWidget* parent);

  // What a section's word needs, also while the section is hidden; pixels.
  [[nodiscard]] int WidthOf(int section) const {
    return std::max(sectionSizeFromContents(section).width(), minimumSectionSize());
  }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  [[nodiscard]] QSize sectionSizeFromContents(int section) const override;

 private:
  [[nodiscard]] QString Word(int section) const;
};

// Calm rows under a TableHead: whole rows are selected, nothing is edited, moved about by pixels.
void SetUpTable(QTableView& table, TableHead* head, QAbstractItemDelegate* delegate);

}  // namespace kestrel
