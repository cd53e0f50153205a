// Drawing a column of the waterfall as level against time.
// SPDX-License-Identifier: MIT
#include "ui/analyser/column_view.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <utility>

#include "chart/axis_ticks.h"
#include "chart/trace_points.h"
#include "ui/chart/ground_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kEdge = 12;
constexpr double kLongestOf = 3;  // times the step before: longer is a break
constexpr double kRing = 4;

}  // namespace

ColumnView::ColumnView(const WaterfallView& map, QWidget* parent) : QWidget(parent), map_(map) {
  setObjectName(QStringLiteral("waterfallColumn"));
  setAccessibleName(QStringLiteral("Level against time"));
}

void ColumnView::Show(MapColumn column, std::vector<WaterfallGap> gaps) {
  column_ = std::move(column);
  gaps_ = std::move(gaps);
  setAccessibleDescription(column_.hint.isEmpty() ? column_.title : column_.hint);
  double least = kNoValue;
  double largest = kNoValue;
  const WaterfallRows& rows = map_.Rows();
  const auto take = [&](double value) {
    const bool isShowable =
        std::isfinite(value) && (column_.kind != AxisKind::Logarithmic || value > 0);
    if (!isShowable) return;
    least = std::fmin(least, value);
    largest = std::fmax(largest, value);
  };
  for (std::size_t row = 0; row < rows.Count(); ++row) {
    if (column_.bin < rows.Values()) take(double{rows.Row(row)[column_.bin]});
  }
  take(column_.thresholds.warning);
  take(column_.thresholds.fault);
  range_ = std::isfinite(least) ? RangeFor(least, largest, column_.kind) : PlotRange{0, 1};
  if (!IsShowable(range_, column_.kind)) range_ = {0.1, 1};
  update();
}

QRectF ColumnView::Canvas() const {
  const QRectF map = map_.Canvas();
  return {kEdge, map.top(), std::max(24.0, width() - 2 * kEdge), map.height()};
}

AxisMap ColumnView::Levels() const {
  const QRectF canvas = Canvas();
  return {range_, column_.kind, canvas.left(), canvas.right()};
}

bool ColumnView::IsBreak(std::size_t row) const {
  const WaterfallRows& rows = map_.Rows();
  const double from = rows.Time(row - 1);
  const double to = rows.Time(row);
  const bool isNamed = std::any_of(gaps_.begin(), gaps_.end(), [&](const WaterfallGap& gap) {
    return gap.from < to && gap.to > from;
  });
  if (isNamed) return true;
  return row > 1 && to - from > kLongestOf * (from - rows.Time(row - 2));
}

std::vector<std::vector<QPointF>> ColumnView::Lines() const {
  const WaterfallRows& rows = map_.Rows();
  std::vector<std::vector<QPointF>> lines;
  if (!column_.hint.isEmpty() || column_.bin >= rows.Values()) return lines;
  const AxisMap levels = Levels();
  for (std::size_t row = 0; row < rows.Count(); ++row) {
    const double value = double{rows.Row(row)[column_.bin]};
    if (lines.empty() || row == 0 || IsBreak(row)) lines.emplace_back();
    const double x = std::max(levels.ToPixel(value), Canvas().left());
    lines.back().emplace_back(x, map_.YOf(rows.Time(row)));
  }
  return lines;
}

void ColumnView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  painter.fillRect(rect(), look.panel);
  if (!column_.hint.isEmpty()) {
    painter.setPen(look.muted);
    painter.drawText(Canvas(), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, column_.hint);
    return;
  }
  PaintGround(painter, look, fonts);
  painter.save();
  painter.setClipRect(Canvas());
  PaintThresholds(painter, look);
  PaintLevel(painter, look);
  PaintTime(painter, look);
  painter.restore();
}

void ColumnView::PaintGround(QPainter& painter, const Look& look, const LookFonts& fonts) const {
  const QRectF canvas = Canvas();
  const double ratio = painter.deviceTransform().m11();
  painter.fillRect(canvas, look.canvas);
  for (const WaterfallGap& gap : gaps_) {
    const double top = std::clamp(map_.YOf(gap.to), canvas.top(), canvas.bottom());
    const double bottom = std::clamp(map_.YOf(gap.from), canvas.top(), canvas.bottom());
    PaintHatch(painter, look, QRectF(canvas.left(), top, canvas.width(), bottom - top));
  }
  const AxisMap levels = Levels();
  const double height = std::ceil(QFontMetricsF(fonts.small).height());
  painter.setPen(look.muted);
  for (const AxisTick& tick : AxisTicks(range_, column_.kind, canvas.width(), 48)) {
    const double x = levels.ToPixel(tick.value);
    FillColumn(painter, ratio, x, canvas.top(), canvas.bottom(), look.grid);
    FillColumn(painter, ratio, x, canvas.bottom(), canvas.bottom() + 4, look.axis);
    DrawTabular(painter, fonts.small, QRectF(x - 30, canvas.bottom() + 8, 60, height),
                Qt::AlignHCenter, tick.label);
  }
  FillRow(painter, ratio, canvas.bottom(), canvas.left(), canvas.right(), look.axis);
  FillColumn(painter, ratio, canvas.left() - 1 / ratio, canvas.top(), canvas.bottom(), look.axis);
  DrawTabular(painter, fonts.small,
              QRectF(0, canvas.bottom() + 8 + height + 2, width() - kEdge, height), Qt::AlignRight,
              column_.title);
}

void ColumnView::PaintThresholds(QPainter& painter, const Look& look) const {
  const QRectF canvas = Canvas();
  const AxisMap levels = Levels();
  const auto line = [&](double value, const QPen& pen) {
    const double x = levels.ToPixel(value);
    painter.setPen(pen);
    painter.drawLine(QPointF(x, canvas.top()), QPointF(x, canvas.bottom()));
  };
  if (std::isfinite(column_.thresholds.warning)) {
    QPen pen(look.warning, 2);
    pen.setDashPattern({2.5, 1.5});
    line(column_.thresholds.warning, pen);
  }
  if (std::isfinite(column_.thresholds.fault)) {
    const double x = levels.ToPixel(column_.thresholds.fault);
    painter.fillRect(QRectF(QPointF(x, canvas.top()), canvas.bottomRight()), look.faultGround);
    line(column_.thresholds.fault, QPen(look.fault, 2));
  }
}

// Thinned along time, which runs downwards here.
void ColumnView::PaintLevel(QPainter& painter, const Look& look) const {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look.Ink(column_.ink), 1.5));
  for (const auto& points : Lines()) {
    PlotLine along;
    for (auto point = points.rbegin(); point != points.rend(); ++point) {
      const bool isNear = point->y() > -height() && point->y() < 2 * height();
      if (isNear) along.push_back({point->y(), point->x()});
    }
    QPolygonF line;
    for (const PlotPoint& point : ReducedToColumns(along)) line << QPointF(point.y, point.x);
    if (line.size() == 1) line << line.front() + QPointF(0, 1.5);
    painter.drawPolyline(line);
  }
}

void ColumnView::PaintTime(QPainter& painter, const Look& look) const {
  const WaterfallRows& rows = map_.Rows();
  if (!column_.time || rows.Count() == 0) return;
  const double y = std::floor(map_.YOf(*column_.time)) + 0.5;
  const QRectF canvas = Canvas();
  painter.setPen(QPen(look.accent, 1.5));
  painter.drawLine(QPointF(canvas.left(), y), QPointF(canvas.right(), y));
  const std::size_t row = rows.Nearest(*column_.time);
  const double x = Levels().ToPixel(double{rows.Row(row)[column_.bin]});
  painter.setBrush(look.canvas);
  painter.drawEllipse(QPointF(x, y), kRing, kRing);
}

}  // namespace kestrel
