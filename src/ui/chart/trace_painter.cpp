// Painting live, held and reference traces with their fill.
// SPDX-License-Identifier: MIT
#include "ui/chart/trace_painter.h"

#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <span>

#include "chart/crowd.h"
#include "chart/spread.h"
#include "chart/trace_points.h"

namespace kestrel {
namespace {

constexpr double kEvenFill = 0.12;
constexpr double kFadingFill = 0.22;
constexpr double kCrowdShade = 0.30;
constexpr std::array<double, 2> kReferenceDash{3, 2};
constexpr double kDot = 4;  // across

double WidthOf(TraceStyle style) {
  return style == TraceStyle::Live ? 1.5 : style == TraceStyle::Held ? 1 : 1.25;
}

std::uint32_t ColourOf(const QColor& colour) {
  return colour.rgb() & 0xFFFFFFU;
}

// The axes of a pane in device pixels from the canvas's corner.
struct CanvasMaps {
  CanvasMaps(const PlotPage& page, std::size_t index) {
    const PaneLayout& pane = page.layout.panes[index];
    width = pane.canvas.width() * page.layout.ratio;
    height = pane.canvas.height() * page.layout.ratio;
    across = AxisMap(pane.across.Range(), pane.across.Kind(), 0, width);
    up = AxisMap(pane.up.Range(), pane.up.Kind(), height, 0);
  }
  double width = 0;
  double height = 0;
  AxisMap across;
  AxisMap up;
};

StrokeFill FillOf(const CanvasMaps& maps) {
  if (maps.up.Kind() != AxisKind::Linear) {
    return {maps.height, 0, maps.height, kFadingFill, 0};
  }
  return {maps.up.ToPixel(0), 0, maps.height, kEvenFill, kEvenFill};
}

std::vector<PlotLine> Dashed(const std::vector<PlotLine>& lines, std::span<const double> lengths,
                             double width, double ratio, double height) {
  std::vector<double> pattern;
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    // The pen's round ends make each dash longer by its width.
    const double longer = i % 2 == 0 ? -width : width;
    pattern.push_back(std::max(0.1, lengths[i] * ratio + longer));
  }
  std::vector<PlotLine> dashes;
  for (const PlotLine& line : lines) {
    for (PlotLine& dash : Dashes(line, pattern, {-width, height + width})) {
      dashes.push_back(std::move(dash));
    }
  }
  return dashes;
}

// Between two gaps: a dot, or nobody would see them.
std::vector<PlotLine> LonePoints(const std::vector<PlotLine>& lines) {
  std::vector<PlotLine> lone;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(lone),
               [](const PlotLine& line) { return line.size() == 1; });
  return lone;
}

void AddTrace(const PlotPage& page, const CanvasMaps& maps, const SceneTrace& trace,
              std::vector<Stroke>& strokes) {
  const std::span<const double> x(trace.x);
  const std::span<const double> y(trace.y);
  const auto valid = static_cast<std::size_t>(
      std::lower_bound(x.begin(), x.end(), page.scene.across.validFrom) - x.begin());
  Stroke stroke{.width = WidthOf(trace.style) * page.layout.ratio};
  if (valid > 0) {  // up to the first valid point
    const std::size_t count = std::min(valid + 1, std::min(x.size(), y.size()));
    stroke.lines = LinesInView(x.first(count), y.first(count), maps.across, maps.up);
    stroke.colour = ColourOf(page.look.axis);
    strokes.push_back(stroke);
  }
  const std::size_t from = std::min(valid, std::min(x.size(), y.size()));
  stroke.lines = trace.isSpread
                     ? SpreadInColumns(x, y, maps.across, maps.up).lines
                     : LinesInView(x.subspan(from), y.subspan(from), maps.across, maps.up);
  stroke.colour = ColourOf(page.look.Ink(trace.ink));
  if (const auto pattern = PatternOf(trace); !pattern.empty()) {
    stroke.lines = Dashed(stroke.lines, pattern, stroke.width, page.layout.ratio, maps.height);
  }
  stroke.isFilled = trace.isFilled;
  if (trace.isFilled) stroke.fill = FillOf(maps);
  strokes.push_back(stroke);
  stroke.lines = LonePoints(stroke.lines);
  stroke.width = kDot * page.layout.ratio;
  stroke.isFilled = false;
  if (!stroke.lines.empty()) strokes.push_back(std::move(stroke));
}

CrowdColumns CrowdOf(const PlotCrowd& crowd, const CanvasMaps& maps) {
  return CrowdInColumns(crowd.x, crowd.y, maps.across, maps.up,
                        static_cast<int>(std::ceil(maps.width)));
}

QPolygonF PolygonOf(const PlotLine& line) {
  QPolygonF polygon;
  for (const PlotPoint& point : line) polygon << QPointF(point.x, point.y);
  return polygon;
}

void PaintFill(QPainter& painter, const Stroke& stroke, const PlotLine& line) {
  const auto shade = [&](double opacity) {
    QColor colour = QColor::fromRgb(stroke.colour);
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
  };
  QLinearGradient gradient(0, stroke.fill.top, 0, stroke.fill.bottom);
  gradient.setColorAt(0, shade(stroke.fill.atTop));
  gradient.setColorAt(1, shade(stroke.fill.atBottom));
  QPolygonF area = PolygonOf(line);
  area << QPointF(line.back().x, stroke.fill.base) << QPointF(line.front().x, stroke.fill.base);
  painter.setPen(Qt::NoPen);
  painter.setBrush(gradient);
  painter.drawPolygon(area);
  painter.setBrush(Qt::NoBrush);
}

void PaintStroke(QPainter& painter, const Stroke& stroke) {
  for (const PlotLine& line : stroke.lines) {
    if (line.empty()) continue;
    if (stroke.isFilled) PaintFill(painter, stroke, line);
    painter.setPen(QPen(QColor::fromRgb(stroke.colour), stroke.width, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    if (line.size() == 1) {
      painter.drawPoint(QPointF(line[0].x, line[0].y));
    } else {
      painter.drawPolyline(PolygonOf(line));
    }
  }
}

void PaintArea(QPainter& painter, const std::vector<ColumnArea>& columns, QColor shade) {
  shade.setAlphaF(static_cast<float>(kCrowdShade));
  for (const ColumnArea& area : columns) {
    painter.fillRect(QRectF(area.x, area.upper, 1, area.lower - area.upper), shade);
  }
}

void PaintCrowd(QPainter& painter, const PlotPage& page, const PlotCrowd& crowd,
                const CanvasMaps& maps) {
  const CrowdColumns columns = CrowdOf(crowd, maps);
  PaintArea(painter, columns.area, page.look.Ink(crowd.ink));
  PaintStroke(painter, {.lines = {columns.median}, .colour = ColourOf(page.look.Ink(crowd.ink))});
}

void DrawCrowd(const PixelRows& canvas, const PlotPage& page, const PlotCrowd& crowd,
               const CanvasMaps& maps) {
  const CrowdColumns columns = CrowdOf(crowd, maps);
  const std::uint32_t colour = ColourOf(page.look.Ink(crowd.ink));
  DrawArea(canvas, columns.area, colour, kCrowdShade);
  DrawStrokes(canvas,
              {{.lines = {columns.median}, .colour = colour, .width = 1.5 * page.layout.ratio}});
}

// What the points of spread traces reach; under all lines.
void PaintSpreads(const PlotPage& page, std::size_t index, const CanvasMaps& maps,
                  const std::function<void(const std::vector<ColumnArea>&, const QColor&)>& paint) {
  for (const SceneTrace& trace : page.scene.panes[index].traces) {
    if (!trace.isSpread) continue;
    paint(SpreadInColumns(trace.x, trace.y, maps.across, maps.up).area, page.look.Ink(trace.ink));
  }
}

// The canvas of a pane in device pixels, within the picture.
QRect CanvasOf(const QImage& picture, const PaneLayout& pane, double ratio) {
  const QRectF& canvas = pane.canvas;
  const QRect whole(
      QPoint(qRound(canvas.left() * ratio), qRound(canvas.top() * ratio)),
      QPoint(qRound(canvas.right() * ratio) - 1, qRound(canvas.bottom() * ratio) - 1));
  return whole.intersected(picture.rect());
}

}  // namespace

std::span<const double> PatternOf(const SceneTrace& trace) {
  if (trace.style == TraceStyle::Reference) return kReferenceDash;
  return DashPattern(trace.dash);
}

std::vector<Stroke> StrokesOf(const PlotPage& page, std::size_t index) {
  const CanvasMaps maps(page, index);
  const auto& traces = page.scene.panes[index].traces;
  std::vector<Stroke> strokes;
  for (const SceneTrace& trace : traces) {
    if (!trace.isFocus) AddTrace(page, maps, trace, strokes);
  }
  for (const SceneTrace& trace : traces) {
    if (trace.isFocus) AddTrace(page, maps, trace, strokes);
  }
  return strokes;
}

void DrawTraces(QImage& picture, const PlotPage& page) {
  auto* pixels = reinterpret_cast<std::uint32_t*>(picture.bits());
  const std::ptrdiff_t stride = picture.bytesPerLine() / 4;
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) {
    const QRect canvas = CanvasOf(picture, page.layout.panes[i], page.layout.ratio);
    if (canvas.isEmpty()) continue;
    const PixelRows rows{pixels + canvas.top() * stride + canvas.left(), canvas.width(),
                         canvas.height(), stride};
    const auto& crowd = page.scene.panes[i].crowd;
    if (crowd) DrawCrowd(rows, page, *crowd, CanvasMaps(page, i));
    PaintSpreads(page, i, CanvasMaps(page, i), [&](const auto& area, const QColor& ink) {
      DrawArea(rows, area, ColourOf(ink), kCrowdShade);
    });
    DrawStrokes(rows, StrokesOf(page, i));
  }
}

void PaintTraces(QPainter& painter, const PlotPage& page) {
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) {
    const QRectF& canvas = page.layout.panes[i].canvas;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(canvas, Qt::IntersectClip);
    painter.translate(canvas.topLeft());
    painter.scale(1 / page.layout.ratio, 1 / page.layout.ratio);
    const auto& crowd = page.scene.panes[i].crowd;
    if (crowd) PaintCrowd(painter, page, *crowd, CanvasMaps(page, i));
    PaintSpreads(page, i, CanvasMaps(page, i),
                 [&](const auto& area, const QColor& ink) { PaintArea(painter, area, ink); });
    for (const Stroke& stroke : StrokesOf(page, i)) PaintStroke(painter, stroke);
    painter.restore();
  }
}

}  // namespace kestrel
