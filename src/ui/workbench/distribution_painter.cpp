// Histogram, rug, thresholds and counts in a cell.
// SPDX-License-Identifier: MIT
#include "ui/workbench/distribution_painter.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "display/scene.h"
#include "ui/chart/look.h"
#include "ui/chart/tabular_text.h"
#include "ui/workbench/distribution_table.h"

namespace kestrel {
namespace {

constexpr double kRug = 5;
constexpr double kInside = 8;

// Columns of a cell: the picture, then the two counts.
struct CellPlaces {
  QRectF picture;
  QRectF falseAlarms;
  QRectF caught;
};

// Where there is little room the counts give way last.
CellPlaces PlacesIn(const QRectF& cell, const QFont& font) {
  const QFontMetricsF metrics(font);
  const double caught = metrics.horizontalAdvance(QObject::tr("caught")) + 8;
  const double wrong = metrics.horizontalAdvance(QObject::tr("false")) + 4;
  CellPlaces places;
  places.caught = QRectF(cell.right() - kInside - caught, cell.top(), caught, cell.height());
  places.falseAlarms = QRectF(places.caught.left() - wrong, cell.top(), wrong, cell.height());
  places.picture = QRectF(cell.left() + kInside, cell.top() + 3,
                          std::max(20.0, places.falseAlarms.left() - cell.left() - 2 * kInside),
                          cell.height() - 7);
  return places;
}

class CellPicture {
 public:
  CellPicture(QPainter& painter, const Look& look, const QRectF& place,
              const DistributionRange& range)
      : painter_(painter),
        look_(look),
        place_(place),
        across_({range.lowDb, range.highDb}, AxisKind::Linear, place.left(), place.right()) {}

  void Paint(const SmallDistribution& small) {
    painter_.setPen(QPen(look_.hairline, 1));
    const double foot = std::floor(place_.bottom() - kRug - 1) + 0.5;
    painter_.drawLine(QPointF(place_.left(), foot), QPointF(place_.right(), foot));
    Bars(small, foot);
    Rug(small, foot);
    if (small.proposedDb[0]) Line(*small.proposedDb[0], look_.warning, true);
    if (small.proposedDb[1]) Line(*small.proposedDb[1], look_.fault, false);
    if (small.nowDb[0]) Present(*small.nowDb[0]);
  }

 private:
  [[nodiscard]] double X(double db) const {
    return std::clamp(across_.ToPixel(db), place_.left(), place_.right());
  }
  void Bars(const SmallDistribution& small, double foot) {
    QColor ink = look_.Ink(study::InkOf(small.axis));
    ink.setAlphaF(0.7F);
    const double high = foot - place_.top() - 2;
    for (std::size_t i = 0; i < small.heights.size(); ++i) {
      const double from = small.fromDb + static_cast<double>(i) * small.widthDb;
      const double left = X(from);
      const double wide = std::max(1.0, X(from + small.widthDb) - left - 0.5);
      const double up = small.heights[i] * high;
      painter_.fillRect(QRectF(left, foot - up, wide, up), ink);
    }
  }
  void Rug(const SmallDistribution& small, double foot) {
    painter_.setPen(QPen(look_.fault, 1));
    for (const double db : small.badDb) {
      const double x = std::floor(X(db)) + 0.5;
      painter_.drawLine(QPointF(x, foot + 1.5), QPointF(x, place_.bottom()));
    }
  }
  void Line(double db, const QColor& colour, bool isDashed) {
    if (!across_.Range().Holds(db)) return;
    QPen pen(colour, 2, isDashed ? Qt::CustomDashLine : Qt::SolidLine, Qt::FlatCap);
    if (isDashed) pen.setDashPattern({2, 1.25});
    painter_.setPen(pen);
    const double x = std::round(across_.ToPixel(db));
    painter_.drawLine(QPointF(x, place_.top()), QPointF(x, place_.bottom()));
  }
  // A hollow triangle at the top; beyond the edge it points there.
  void Present(double db) {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(look_.text, 1));
    painter_.setBrush(look_.panel);
    const double top = place_.top() + 1;
    if (across_.Range().Holds(db)) {
      const double x = across_.ToPixel(db);
      painter_.drawPolygon(QPolygonF({{x - 4, top}, {x + 4, top}, {x, top + 6}}));
    } else {
      const bool isRight = db > across_.Range().high;
      const double x = isRight ? place_.right() : place_.left();
      const double back = isRight ? -6 : 6;
      painter_.drawPolygon(QPolygonF({{x + back, top}, {x + back, top + 8}, {x, top + 4}}));
    }
    painter_.restore();
  }

  QPainter& painter_;
  const Look& look_;
  QRectF place_;
  AxisMap across_;
};

void PaintCounts(QPainter& painter, const Look& look, const LookFonts& fonts,
                 const CellPlaces& places, const SmallDistribution& small) {
  const bool isFalse = small.falseAlarms > 0;
  painter.setPen(isFalse ? look.warning : look.text);
  DrawTabular(painter, isFalse ? fonts.bold : fonts.plain, places.falseAlarms, Qt::AlignRight,
              QString::number(small.falseAlarms));
  painter.setPen(small.caught > 0 ? look.text : look.muted);
  DrawTabular(painter, fonts.plain, places.caught, Qt::AlignRight,
              small.hasBad ? QString::number(small.caught) : QStringLiteral("\u2013"));
}

void PaintName(QPainter& painter, const Look& look, const LookFonts& fonts, const QRectF& place,
               const QModelIndex& index) {
  const QRectF half(place.left() + 12, place.top(), place.width() - 12, place.height() / 2);
  painter.setPen(look.text);
  painter.setFont(fonts.bold);
  painter.drawText(half, Qt::AlignLeft | Qt::AlignBottom, index.data().toString());
  painter.setPen(look.muted);
  DrawTabular(painter, fonts.small, half.translated(0, half.height()), Qt::AlignLeft,
              index.data(Qt::UserRole).toString());
}

}  // namespace

void DistributionDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
  const Look look = Look::Of(option.palette);
  const LookFonts fonts(option.font);
  const auto* model = static_cast<const DistributionModel*>(index.model());
  const SmallDistribution* small = model->At(index);
  const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
  const bool isChosen = view != nullptr && view->currentIndex() == index;
  painter->save();
  painter->fillRect(option.rect,
                    isChosen ? look.selected
                    : option.state.testFlag(QStyle::State_MouseOver) && small != nullptr
                        ? look.pointedAt
                        : look.panel);
  painter->setPen(look.hairline);
  painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
  const QRectF place(option.rect);
  if (small == nullptr) {
    PaintName(*painter, look, fonts, place, index);
  } else if (!small->isUsed) {
    painter->setPen(look.muted);
    painter->setFont(fonts.small);
    painter->drawText(place.adjusted(kInside, 2, -kInside, -2),
                      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, small->refusal);
  } else {
    const CellPlaces places = PlacesIn(place, fonts.small);
    CellPicture(*painter, look, places.picture, model->Range()).Paint(*small);
    PaintCounts(*painter, look, fonts, places, *small);
  }
  if (isChosen) {
    const bool isFocused = view->hasFocus();
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(look.accent, isFocused ? 2 : 1));
    painter->drawRect(place.adjusted(1, 1, -1.5, -1.5));
  }
  painter->restore();
}

DistributionHead::DistributionHead(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setHighlightSections(false);
  setFocusPolicy(Qt::NoFocus);
}

QSize DistributionHead::sizeHint() const {
  return {QHeaderView::sizeHint().width(), fontMetrics().height() + 8};
}

void DistributionHead::paintEvent(QPaintEvent* event) {
  const Look look = Look::Of(palette());
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), look.header);
  painter.setPen(look.hairline);
  painter.drawLine(viewport()->rect().bottomLeft(), viewport()->rect().bottomRight());
  QHeaderView::paintEvent(event);
}

void DistributionHead::paintSection(QPainter* painter, const QRect& rect, int section) const {
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  painter->save();
  painter->fillRect(rect, look.header);
  painter->setPen(look.hairline);
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  const QString word = model()->headerData(section, Qt::Horizontal).toString();
  if (section == 0) {
    painter->setPen(look.muted);
    painter->setFont(fonts.small);
    painter->drawText(rect.adjusted(12, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, word);
  } else {
    const Axis axis = kAxes[static_cast<std::size_t>(section - 1)];
    const CellPlaces places = PlacesIn(QRectF(rect), fonts.small);
    painter->fillRect(QRectF(places.picture.left(), rect.center().y() - 4, 9, 9),
                      look.Ink(study::InkOf(axis)));
    painter->setPen(look.text);
    painter->setFont(fonts.bold);
    painter->drawText(QRectF(places.picture.left() + 15, rect.top(), 40, rect.height()),
                      Qt::AlignLeft | Qt::AlignVCenter, word);
    painter->setPen(look.muted);
    painter->setFont(fonts.small);
    painter->drawText(places.falseAlarms, Qt::AlignRight | Qt::AlignVCenter, tr("false"));
    painter->drawText(places.caught, Qt::AlignRight | Qt::AlignVCenter, tr("caught"));
  }
  painter->restore();
}

}  // namespace kestrel
