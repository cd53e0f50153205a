// Painting the ground layer of a plot from back to front.
// SPDX-License-Identifier: MIT
#include "ui/chart/ground_painter.h"

#include <QRegion>
#include <algorithm>
#include <cmath>

#include "ui/chart/band_painter.h"
#include "ui/chart/legend.h"
#include "ui/chart/limit_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kTick = 4;
constexpr double kHatchApart = 6;

double Device(double value, double ratio) {
  return std::floor(value * ratio + 1e-6) / ratio;
}

void PaintGrid(QPainter& painter, const PlotPage& page, const PaneLayout& pane) {
  const double ratio = page.layout.ratio;
  const QRectF& canvas = pane.canvas;
  for (const AxisTick& tick : page.layout.acrossTicks) {
    FillColumn(painter, ratio, pane.across.ToPixel(tick.value), canvas.top(), canvas.bottom(),
               page.look.grid);
  }
  for (const AxisTick& tick : pane.upTicks) {
    FillRow(painter, ratio, pane.up.ToPixel(tick.value), canvas.left(), canvas.right(),
            page.look.grid);
  }
  if (pane.up.Kind() == AxisKind::Linear && pane.up.Range().low < 0 && pane.up.Range().high > 0) {
    FillRow(painter, ratio, pane.up.ToPixel(0), canvas.left(), canvas.right(), page.look.axis);
  }
}

void PaintAxes(QPainter& painter, const PlotPage& page, const PaneLayout& pane) {
  const double ratio = page.layout.ratio;
  const QRectF& canvas = pane.canvas;
  const QColor& colour = page.look.axis;
  const double pixel = 1 / ratio;
  FillColumn(painter, ratio, canvas.left() - pixel, canvas.top(), canvas.bottom() + pixel, colour);
  FillRow(painter, ratio, canvas.bottom(), canvas.left() - pixel, canvas.right(), colour);
  FillColumn(painter, ratio, canvas.right(), canvas.top(), canvas.bottom(), page.look.grid);
  FillRow(painter, ratio, canvas.top(), canvas.left(), canvas.right(), page.look.grid);
  for (const AxisTick& tick : page.layout.acrossTicks) {
    FillColumn(painter, ratio, pane.across.ToPixel(tick.value), canvas.bottom(),
               canvas.bottom() + kTick, colour);
  }
  painter.setPen(page.look.muted);
  for (const AxisTick& tick : pane.upTicks) {
    const double y = pane.up.ToPixel(tick.value);
    FillRow(painter, ratio, y, canvas.left() - kTick, canvas.left(), colour);
    DrawTabular(painter, page.fonts.small, QRectF(0, y - 10, canvas.left() - 2 * kTick, 20),
                Qt::AlignRight, QString::fromStdString(tick.label));
  }
}

void PaintAcrossLabels(QPainter& painter, const PlotPage& page) {
  if (page.layout.panes.empty()) return;
  const PaneLayout& pane = page.layout.panes.back();
  const double height = std::ceil(QFontMetricsF(page.fonts.small).height());
  const bool hasLanesBelow = page.layout.panes.size() == 1 && !page.layout.lanes.empty();
  const double bottom = hasLanesBelow ? page.layout.lanes.back().bottom() : pane.canvas.bottom();
  const double top = bottom + 2 * kTick;
  painter.setPen(page.look.muted);
  for (const AxisTick& tick : page.layout.acrossTicks) {
    DrawTabular(painter, page.fonts.small,
                QRectF(pane.across.ToPixel(tick.value) - 40, top, 80, height), Qt::AlignHCenter,
                QString::fromStdString(tick.label));
  }
  DrawTabular(painter, page.fonts.small,
              QRectF(pane.canvas.left(), top + height + 2, pane.canvas.width(), height),
              Qt::AlignRight, page.scene.across.title);
}

void PaintRecordLine(QPainter& painter, const PlotPage& page) {
  const QRectF& place = page.layout.recordLine;
  if (place.isEmpty()) return;
  painter.setPen(page.look.text);
  DrawTabular(painter, page.fonts.bold, place, Qt::AlignLeft, page.scene.head);
  const double head = TabularWidth(page.fonts.bold, page.scene.head);
  const QRectF rest = place.adjusted(head + 12, 0, 0, 0);
  painter.setPen(page.look.muted);
  DrawTabular(
      painter, page.fonts.plain, rest, Qt::AlignLeft,
      QFontMetricsF(page.fonts.plain)
          .elidedText(QString::fromStdString(page.scene.line), Qt::ElideRight, rest.width()));
}

// Where values hold offset, and where there is nothing at all.
void PaintEmptyParts(QPainter& painter, const PlotPage& page, const PaneLayout& pane) {
  const double from = page.scene.across.validFrom;
  if (std::isfinite(from)) {
    PaintHatch(painter, page.look, SpanOf(pane, page.scene.across.whole.low, from));
  }
  for (const PlotGap& gap : page.scene.gaps) {
    const QRectF place = SpanOf(pane, gap.from, gap.to);
    PaintHatch(painter, page.look, place);
    painter.setPen(page.look.text);
    const QRectF line(place.left() + 6, place.top() + 4, place.width() - 12, 20);
    if (TabularWidth(page.fonts.small, gap.reason) <= line.width()) {
      DrawWithHalo(painter, page.fonts.small, line, Qt::AlignHCenter, gap.reason,
                   page.look.hatchGround);
    }
  }
}

void PaintHint(QPainter& painter, const PlotPage& page) {
  const bool isEmpty = std::all_of(page.scene.panes.begin(), page.scene.panes.end(),
                                   [](auto& pane) { return pane.traces.empty() && !pane.crowd; });
  if (!isEmpty || page.scene.hint.empty()) return;
  const QRectF place =
      page.scene.panes.empty() ? QRectF(QPointF(), page.layout.size) : page.layout.Canvases();
  painter.setPen(page.look.muted);
  painter.setFont(page.fonts.plain);
  painter.drawText(place.adjusted(24, 0, -24, 0), Qt::AlignCenter | Qt::TextWordWrap,
                   QString::fromStdString(page.scene.hint));
}

void PaintPane(QPainter& painter, const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  painter.fillRect(pane.canvas, page.look.canvas);
  PaintEmptyParts(painter, page, pane);
  PaintBandGrounds(painter, page, index);
  PaintGrid(painter, page, pane);
  PaintBandLines(painter, page, index);
  PaintLimits(painter, page, index);
  PaintAxes(painter, page, pane);
}

}  // namespace

void FillColumn(QPainter& painter, double ratio, double x, double top, double bottom,
                const QColor& colour) {
  painter.fillRect(QRectF(Device(x, ratio), Device(top, ratio), 1 / ratio,
                          Device(bottom, ratio) - Device(top, ratio)),
                   colour);
}

void FillRow(QPainter& painter, double ratio, double y, double left, double right,
             const QColor& colour) {
  painter.fillRect(QRectF(Device(left, ratio), Device(y, ratio),
                          Device(right, ratio) - Device(left, ratio), 1 / ratio),
                   colour);
}

void PaintHatch(QPainter& painter, const Look& look, const QRectF& place) {
  if (place.isEmpty()) return;
  painter.save();
  painter.setClipRect(place, Qt::IntersectClip);
  painter.fillRect(place, look.hatchGround);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look.hatch, 1));
  // Along lines that all hatches share, so that neighbours fit.
  const double step = kHatchApart * std::sqrt(2.0);
  const double first = std::floor((place.left() + place.top()) / step) * step;
  for (double sum = first; sum < place.right() + place.bottom(); sum += step) {
    painter.drawLine(QPointF(sum - place.top(), place.top()),
                     QPointF(sum - place.bottom(), place.bottom()));
  }
  painter.restore();
}

QRectF SpanOf(const PaneLayout& pane, double from, double to) {
  const double left =
      std::clamp(pane.across.ToPixel(from), pane.canvas.left(), pane.canvas.right());
  const double right = std::clamp(pane.across.ToPixel(to), pane.canvas.left(), pane.canvas.right());
  return {left, pane.canvas.top(), std::max(0.0, right - left), pane.canvas.height()};
}

void PaintGround(QPainter& painter, const PlotPage& page) {
  // The canvases are painted later, to their last pixel.
  QRegion around(QRectF(QPointF(), page.layout.size).toAlignedRect());
  for (const PaneLayout& pane : page.layout.panes) {
    around -= pane.canvas.toAlignedRect().adjusted(2, 2, -2, -2);
  }
  for (const QRect& part : around) painter.fillRect(part, page.look.panel);
  PaintRecordLine(painter, page);
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) PaintPane(painter, page, i);
  PaintLanes(painter, page);
  PaintAcrossLabels(painter, page);
  PaintLegend(painter, page);
  PaintHint(painter, page);
  if (!page.layout.source.isEmpty()) {
    painter.setPen(page.look.muted);
    DrawTabular(painter, page.fonts.small, page.layout.source, Qt::AlignLeft, page.scene.source);
  }
}

}  // namespace kestrel
