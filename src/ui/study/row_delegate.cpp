// How the rows of tables and the bars of bands are painted.
// SPDX-License-Identifier: MIT
#include "ui/study/row_delegate.h"

#include <QPainter>
#include <cmath>

#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr int kSwatch = 10;

void PaintThreshold(QPainter& painter, double x, double middle, QPen pen) {
  pen.setWidth(2);
  painter.setPen(pen);
  painter.drawLine(QPointF(x, middle - 6), QPointF(x, middle + 6));
}

}  // namespace

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  const Look look = Look::Of(option.palette);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const bool isPointed = option.state.testFlag(QStyle::State_MouseOver);
  const bool isActive = option.state.testFlag(QStyle::State_Active);
  if (isSelected || isPointed) {
    painter->fillRect(option.rect, !isSelected ? look.pointedAt
                                   : isActive  ? look.selected
                                               : look.header);
  }
  painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                    look.grid);
  QRectF place = QRectF(option.rect).adjusted(kCellInside, 0, -kCellInside, 0);
  const QVariant mark = index.data(Qt::DecorationRole);
  if (mark.isValid()) {
    painter->fillRect(QRectF(place.left(), place.center().y() - kSwatch / 2.0, kSwatch, kSwatch),
                      mark.value<QColor>());
    place.setLeft(place.left() + kSwatch + 6);
  }
  const auto ink = index.data(Qt::ForegroundRole);
  painter->setPen(ink.toBool() ? look.muted : look.text);
  const LookFonts fonts(option.font);
  const QFont& font = ink.toBool() ? fonts.small : fonts.plain;
  const QString text = index.data(Qt::DisplayRole).toString();
  const auto alignment = index.data(Qt::TextAlignmentRole).value<Qt::Alignment>();
  const QString shown = QFontMetricsF(font).elidedText(text, Qt::ElideRight, place.width() + 1);
  DrawTabular(*painter, font, place, alignment, shown == text ? text : shown);
  if (option.state.testFlag(QStyle::State_HasFocus)) {
    painter->setPen(QPen(look.accent, 1));
    painter->drawRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -1.5));
  }
}

// The widths of columns follow every record; the style's own hint takes as long as all else.
QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QString text = index.data(Qt::DisplayRole).toString();
  if (!meter_ || meter_->Font() != option.font) meter_.emplace(option.font);
  const double width = meter_->WidthOf(text) + 2 * kCellInside +
                       (index.data(Qt::DecorationRole).isValid() ? kSwatch + 6 : 0);
  return {static_cast<int>(std::ceil(width)) + 2, option.fontMetrics.height() + 4};
}

void BarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  RowDelegate::paint(painter, option, index);
  const auto row = static_cast<std::size_t>(index.row());
  if (row >= bars_.size()) return;
  const BandBar& bar = bars_[row];
  const Look look = Look::Of(option.palette);
  const QRectF place = QRectF(option.rect).adjusted(kCellInside, 0, -kCellInside, 0);
  const double middle = place.center().y();
  const auto x = [&](double part) { return place.left() + part * place.width(); };
  const QColor ink = bar.state == analysis::BandState::Fault     ? look.fault
                     : bar.state == analysis::BandState::Warning ? look.warning
                                                                 : look.muted;
  painter->fillRect(QRectF(place.left(), middle - 2, place.width(), 4), look.grid);
  painter->fillRect(QRectF(place.left(), middle - 2, x(bar.level) - place.left(), 4), ink);
  QPen dashed(look.warning);
  dashed.setDashPattern({1.5, 1});
  if (bar.warning > 0) PaintThreshold(*painter, x(bar.warning), middle, dashed);
  if (bar.fault > 0) PaintThreshold(*painter, x(bar.fault), middle, QPen(look.fault));
}

}  // namespace kestrel
