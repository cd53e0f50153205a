// Shading, numbering and threshold lines of the bands, painted.
// SPDX-License-Identifier: MIT
#include "ui/chart/band_painter.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kShade = 0.045;
constexpr double kLaneShade = 0.08;
constexpr double kOverShade = 0.18;
constexpr double kHeadroomFrom = 64;  // pixels a band must have for it

QColor Faint(QColor colour, double opacity) {
  colour.setAlphaF(static_cast<float>(opacity));
  return colour;
}

void PaintShade(QPainter& painter, const PlotPage& page, const QRectF& place, double lane) {
  painter.fillRect(place, Faint(page.look.text, kShade));
  painter.fillRect(QRectF(place.topLeft(), QSizeF(place.width(), lane)),
                   Faint(page.look.text, kLaneShade));
}

// The part above the threshold that the level is over.
void PaintExcess(QPainter& painter, const PlotPage& page, const PaneLayout& pane,
                 const PlotBand& band, const QRectF& place) {
  if (band.state == BandState::Well) return;
  const bool isFault = band.state == BandState::Fault;
  const double limit = isFault ? band.fault : band.warning;
  if (!std::isfinite(limit)) return;
  const double y = std::clamp(pane.up.ToPixel(limit), place.top(), place.bottom());
  painter.fillRect(QRectF(place.topLeft(), QPointF(place.right(), y)),
                   Faint(isFault ? page.look.fault : page.look.warning, kOverShade));
}

void PaintThreshold(QPainter& painter, const PaneLayout& pane, const QRectF& place, double lane,
                    double value, const QColor& colour, bool isFault) {
  if (!std::isfinite(value)) return;
  const double y = pane.up.ToPixel(value);
  const double side = isFault ? 6 : -6;
  if (y < place.top() || y > place.bottom()) {
    const bool isUp = y < place.top();
    const QPointF tip(place.center().x() + side,
                      isUp ? place.top() + lane + 2 : place.bottom() - 2);
    PaintTriangle(painter, tip, isUp, colour);
    return;
  }
  QPen pen(colour, 2, Qt::SolidLine, Qt::FlatCap);
  if (!isFault) pen.setDashPattern({2.5, 1.5});  // 5 and 3 pixels
  painter.setPen(pen);
  painter.drawLine(QPointF(place.left(), std::round(y)), QPointF(place.right(), std::round(y)));
}

void PaintNumber(QPainter& painter, const PlotPage& page, const PlotBand& band, const QRectF& place,
                 double lane) {
  const QRectF line(place.left(), place.top(), place.width(), lane);
  const double name = TabularWidth(page.fonts.smallBold, band.name);
  if (name > line.width()) return;
  const double headroom = TabularWidth(page.fonts.small, band.headroom);
  const bool hasHeadroom = !band.headroom.empty() && line.width() >= kHeadroomFrom &&
                           name + 6 + headroom <= line.width() - 4;
  const double all = hasHeadroom ? name + 6 + headroom : name;
  const QRectF text(line.center().x() - all / 2, line.top(), all, lane);
  painter.setPen(page.look.text);
  DrawTabular(painter, page.fonts.smallBold, text, Qt::AlignLeft, band.name);
  painter.setPen(page.look.muted);
  if (hasHeadroom) DrawTabular(painter, page.fonts.small, text, Qt::AlignRight, band.headroom);
}

// Beside a band that is not well, on the side with more room.
void PaintState(QPainter& painter, const PlotPage& page, const PlotBand& band, const QRectF& canvas,
                const QRectF& place, double lane) {
  if (band.state == BandState::Well || band.stateText.empty()) return;
  const bool isFault = band.state == BandState::Fault;
  const double width = TabularWidth(page.fonts.smallBold, band.stateText) + 16;
  const bool isRight = place.right() + 8 + width < canvas.right();
  QRectF chip(isRight ? place.right() + 8 : place.left() - 8 - width, place.top() + lane + 4, width,
              lane + 4);
  chip.moveLeft(
      std::clamp(chip.left(), canvas.left(), std::max(canvas.left(), canvas.right() - width)));
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(isFault ? page.look.fault : page.look.noticeEdge);
  painter.setBrush(isFault ? page.look.faultGround : page.look.notice);
  painter.drawRoundedRect(chip, 4, 4);
  painter.setPen(isFault ? page.look.fault : page.look.noticeText);
  DrawTabular(painter, page.fonts.smallBold, chip, Qt::AlignHCenter, band.stateText);
  painter.restore();
}

void PaintMark(QPainter& painter, const PlotPage& page, const PaneLayout& pane,
               const PlotMark& mark) {
  const QRectF place = SpanOf(pane, mark.from, mark.to);
  const double x = pane.across.ToPixel((mark.from + mark.to) / 2);
  if (x < pane.canvas.left() || x > pane.canvas.right()) return;
  painter.fillRect(place, Faint(page.look.muted, 0.10));
  QPen pen(page.look.muted, 1, Qt::CustomDashLine, Qt::FlatCap);
  pen.setDashPattern({1, 3});
  painter.setPen(pen);
  painter.drawLine(QPointF(std::floor(x) + 0.5, place.top()),
                   QPointF(std::floor(x) + 0.5, place.bottom()));
}

}  // namespace

void PaintTriangle(QPainter& painter, QPointF tip, bool isUp, const QColor& colour) {
  const double height = isUp ? 7 : -7;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygonF({tip, tip + QPointF(-4, height), tip + QPointF(4, height)}));
  painter.restore();
}

double BandLane(const PlotPage& page, std::size_t pane) {
  if (page.scene.panes[pane].bands.empty()) return 0;
  return std::ceil(QFontMetricsF(page.fonts.small).height()) + 2;
}

void PaintBandGrounds(QPainter& painter, const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  const double lane = BandLane(page, index);
  for (const PlotBand& band : page.scene.panes[index].bands) {
    const QRectF place = SpanOf(pane, band.from, band.to);
    if (place.isEmpty()) continue;
    PaintShade(painter, page, place, lane);
    PaintExcess(painter, page, pane, band, place);
  }
  for (const PlotMark& mark : page.scene.marks) PaintMark(painter, page, pane, mark);
}

void PaintBandLines(QPainter& painter, const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  const double lane = BandLane(page, index);
  painter.save();
  painter.setClipRect(pane.canvas, Qt::IntersectClip);
  for (const PlotBand& band : page.scene.panes[index].bands) {
    const QRectF place = SpanOf(pane, band.from, band.to);
    if (place.isEmpty()) continue;
    PaintThreshold(painter, pane, place, lane, band.warning, page.look.warning, false);
    PaintThreshold(painter, pane, place, lane, band.fault, page.look.fault, true);
    PaintNumber(painter, page, band, place, lane);
    PaintState(painter, page, band, pane.canvas, place, lane);
  }
  painter.restore();
}

}  // namespace kestrel
