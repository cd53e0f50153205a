// Painting thresholds with their names, and lanes with their spans.
// SPDX-License-Identifier: MIT
#include "ui/chart/limit_painter.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "ui/chart/band_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kLeastSpan = 3;
constexpr double kInside = 8;

// At the edge that a threshold lies beyond.
void PaintBeyond(QPainter& painter, const QRectF& canvas, bool isAbove, const QColor& colour) {
  const QPointF tip(canvas.left() + kInside, isAbove ? canvas.top() + 2 : canvas.bottom() - 2);
  PaintTriangle(painter, tip, isAbove, colour);
}

void PaintLimit(QPainter& painter, const PlotPage& page, const PaneLayout& pane,
                const PlotLimit& limit) {
  const QRectF& canvas = pane.canvas;
  const QColor& colour = limit.isFault ? page.look.fault : page.look.warning;
  const double y = std::round(pane.up.ToPixel(limit.value));
  if (!std::isfinite(limit.value)) return;
  if (y < canvas.top() || y > canvas.bottom()) {
    PaintBeyond(painter, canvas, y < canvas.top(), colour);
    return;
  }
  QPen pen(colour, 2, Qt::SolidLine, Qt::FlatCap);
  if (!limit.isFault) pen.setDashPattern({2.5, 1.5});  // 5 and 3 pixels
  painter.setPen(pen);
  painter.drawLine(QPointF(canvas.left(), y), QPointF(canvas.right(), y));
  const double height = std::ceil(QFontMetricsF(page.fonts.small).height());
  const bool isAbove = y - height - 2 >= canvas.top();
  const QRectF text(canvas.left() + kInside, isAbove ? y - height - 2 : y + 2,
                    canvas.width() - 2 * kInside, height);
  painter.setPen(page.look.text);
  DrawWithHalo(painter, page.fonts.small, text, Qt::AlignLeft, limit.name, page.look.canvas);
}

void PaintSpans(QPainter& painter, const PlotPage& page, const PlotLane& lane,
                const QRectF& place) {
  const PaneLayout& pane = page.layout.panes.front();
  for (const PlotLane::Span& span : lane.spans) {
    if (span.to < pane.across.Range().low || span.from > pane.across.Range().high) continue;
    const QRectF part = SpanOf(pane, span.from, span.to);
    const double width = std::max(part.width(), kLeastSpan);
    const double left = std::min(part.left(), place.right() - width);
    const bool isFault = span.state == BandState::Fault;
    painter.fillRect(QRectF(left, place.top() + 2, width, place.height() - 4),
                     isFault ? page.look.fault : page.look.noticeEdge);
  }
}

}  // namespace

void PaintLimits(QPainter& painter, const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  painter.save();
  painter.setClipRect(pane.canvas, Qt::IntersectClip);
  for (const PlotLimit& limit : page.scene.panes[index].limits) {
    PaintLimit(painter, page, pane, limit);
  }
  painter.restore();
}

void PaintLanes(QPainter& painter, const PlotPage& page) {
  if (page.layout.panes.empty()) return;
  for (std::size_t i = 0; i < page.layout.lanes.size(); ++i) {
    const QRectF& place = page.layout.lanes[i];
    const PlotLane& lane = page.scene.lanes[i];
    painter.fillRect(place, page.look.header);
    painter.setPen(page.look.muted);
    DrawTabular(painter, page.fonts.small,
                QRectF(0, place.top(), place.left() - kInside, place.height()), Qt::AlignRight,
                lane.name);
    PaintSpans(painter, page, lane, place);
  }
}

}  // namespace kestrel
