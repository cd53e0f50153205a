// How the library's rows are painted.
// SPDX-License-Identifier: MIT
#include "ui/library/library_delegate.h"

#include <QPainter>

#include "ui/chart/icons.h"
#include "ui/chart/look.h"
#include "ui/library/library_model.h"

namespace kestrel {
namespace {

constexpr int kSketchWidth = 56;
constexpr int kIcon = 16;

}  // namespace

void PaintSketch(QPainter& painter, const QRectF& place, const QList<double>& heights,
                 const QColor& ink) {
  if (heights.isEmpty()) return;
  QPolygonF line;
  const double step = place.width() / static_cast<double>(heights.size());
  for (qsizetype i = 0; i < heights.size(); ++i) {
    line << QPointF(place.left() + static_cast<double>(i) * step,
                    place.bottom() - heights[i] * place.height());
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 1));
  painter.drawPolyline(line);
  painter.restore();
}

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
