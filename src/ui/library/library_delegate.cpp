// How the library's rows are painted.
// SPDX-License-Identifier: MIT
#include "ui/library/library_delegate.h"

#include <QPainter>

#include "ui/chart/icons.h"
#include "ui/chart/look.h"
#include "ui/library/library_model.h"
#include "ui/study/sketch.h"

namespace kestrel {
namespace {

constexpr int kIcon = 16;

}  // namespace

void LibraryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  const Look look = Look::Of(option.palette);
  const QRectF inside = QRectF(option.rect).adjusted(kCellInside, 3, -kCellInside, -4);
  if (index.column() == LibraryModel::Picture) {
    RowDelegate::paint(painter, option, index);
    PaintSketch(*painter, inside, index.data(LibraryModel::Sketch).value<QList<double>>(),
                look.muted);
    return;
  }
  if (index.column() == LibraryModel::Alarm && !index.data().toString().isEmpty()) {
    QStyleOptionViewItem right = option;
    RowDelegate::paint(painter, right, index.siblingAtColumn(LibraryModel::Picture));
    const QRectF icon(inside.left(), inside.center().y() - kIcon / 2.0, kIcon, kIcon);
    PaintIcon(*painter, icon, QStringLiteral("warn"), look.warning);
    return;
  }
  RowDelegate::paint(painter, option, index);
}

QSize LibraryDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  const QSize size = RowDelegate::sizeHint(option, index);
  if (index.column() == LibraryModel::Picture)
    return {kSketchWidth + 2 * kCellInside, size.height()};
  return size;
}

}  // namespace kestrel
