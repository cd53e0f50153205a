// How the head row of a table is painted.
// SPDX-License-Identifier: MIT
#include "ui/study/table_head.h"

#include <QPainter>
#include <cmath>

#include "ui/chart/look.h"
#include "ui/study/row_delegate.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kIndicator = 12;

}  // namespace

TableHead::TableHead(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setSectionsClickable(true);
  setSectionsMovable(true);
  setHighlightSections(false);
}

QString TableHead::Word(int section) const {
  // A model whose words are said as they are painted has no others for painting.
  const auto role = [&](int wanted) { return model()->headerData(section, orientation(), wanted); };
  const QVariant painted = role(TextTableModel::kPaintedHead);
  return (painted.isValid() ? painted : role(Qt::DisplayRole)).toString().trimmed();
}

void TableHead::paintEvent(QPaintEvent* event) {
  QHeaderView::paintEvent(event);
  const int end = length() - offset();
  QPainter(viewport())
      .fillRect(viewport()->rect().adjusted(end, 0, 0, 0), Look::Of(palette()).header);
}

void TableHead::paintSection(QPainter* painter, const QRect& rect, int section) const {
  const Look look = Look::Of(palette());
  painter->fillRect(rect, look.header);
  painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), look.hairline);
  QRect place = rect.adjusted(kCellInside, 0, -kCellInside, 0);
  if (isSortIndicatorShown() && sortIndicatorSection() == section) {
    const double middle = place.center().y();
    const double tip = sortIndicatorOrder() == Qt::AscendingOrder ? -3 : 3;
    const double x = place.right() - 4;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(look.muted);
    painter->drawPolygon(QPolygonF({QPointF(x - 4, middle - tip / 2),
                                    QPointF(x + 4, middle - tip / 2), QPointF(x, middle + tip)}));
    painter->restore();
    place.setRight(place.right() - kIndicator);
  }
  painter->setPen(look.muted);
  painter->setFont(LookFonts(font()).small);
  const auto alignment =
      model()->headerData(section, orientation(), Qt::TextAlignmentRole).value<Qt::Alignment>();
  painter->drawText(place, static_cast<int>(alignment | Qt::AlignVCenter), Word(section));
}

QSize TableHead::sectionSizeFromContents(int section) const {
  const QFontMetricsF metrics(LookFonts(font()).small);
  return {
      static_cast<int>(std::ceil(metrics.horizontalAdvance(Word(section)))) + 2 * kCellInside + 1,
      fontMetrics().height() + 9};
}

void SetUpTable(QTableView& table, TableHead* head, QAbstractItemDelegate* delegate) {
  table.setHorizontalHeader(head);
  table.setItemDelegate(delegate);
  table.setShowGrid(false);
  table.setFrameShape(QFrame::NoFrame);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::ExtendedSelection);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.setMouseTracking(true);
  table.setTabKeyNavigation(false);
  table.verticalHeader()->hide();
  head->setMinimumSectionSize(24);
  head->setStretchLastSection(true);
}

}  // namespace kestrel
