// Painting the cells and the head of the table of distributions.
// SPDX-License-Identifier: MIT
#pragma once

#include <QHeaderView>
#include <QStyledItemDelegate>

#include "ui/workbench/detail_of.h"

namespace kestrel {

class DistributionDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

// The axis with its colour; right the words over the counts.
class DistributionHead : public QHeaderView {
 public:
  explicit DistributionHead(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  [[nodiscard]] QSize sizeHint() const override;
};

}  // namespace kestrel
