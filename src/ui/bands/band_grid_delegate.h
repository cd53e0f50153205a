// How a cell of the alarm bands is painted and edited.
// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace kestrel {

// Paints the cells of a BandGrid with their marks, and makes the line edit that one is typed in.
class BandGridDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  // Room for the widest value of the column.
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;

  // Text1_<band x 10 + column>.
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
};

}  // namespace kestrel
