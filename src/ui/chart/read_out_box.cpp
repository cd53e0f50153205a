// Laying out and painting the card's lines.
// SPDX-License-Identifier: MIT
#include "ui/chart/read_out_box.h"

#include <algorithm>
#include <cmath>

#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kInside = 8;
constexpr double kBeside = 10;  // from the anchor
constexpr double kSwatch = 10;

double RowHeight(const PlotPage& page) {
  return std::ceil(QFontMetricsF(page.fonts.plain).height()) + 3;
}

double NameLeft(const PlotReadOut& readOut) {
  const bool hasSwatch = std::any_of(readOut.rows.begin(), readOut.rows.end(),
                                     [](const auto& row) { return row.ink.has_value(); });
  return kInside + (hasSwatch ? kSwatch + 6 : 0);
}

QSizeF SizeOf(const PlotPage& page, const PlotReadOut& readOut) {
  double width = TabularWidth(page.fonts.bold, readOut.title) + 2 * kInside;
  for (const auto& row : readOut.rows) {
    width = std::max(width, NameLeft(readOut) + TabularWidth(page.fonts.plain, row.name) + 16 +
                                TabularWidth(page.fonts.plain, row.value) + kInside);
  }
  const auto rows = static_cast<double>(readOut.rows.size() + 1);
  return {std::ceil(width), rows * RowHeight(page) + 2 * kInside - 4};
}

// How many labelled peaks a card would hide.
int Hidden(const PlotPage& page, const QRectF& card) {
  int hidden = 0;
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) {
    const PaneLayout& pane = page.layout.panes[i];
    for (const PlotPeak& peak : page.scene.panes[i].peaks) {
      hidden += card.contains(pane.across.ToPixel(peak.x), pane.up.ToPixel(peak.y)) ? 1 : 0;
    }
  }
  return hidden;
}

// How much of the focus traces a card would hide: places along it, some pixels apart.
int Covered(const PlotPage& page, const QRectF& card) {
  constexpr double kApart = 6;
  int covered = 0;
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) {
    const PaneLayout& pane = page.layout.panes[i];
    for (const SceneTrace& trace : page.scene.panes[i].traces) {
      for (double x = card.left(); trace.isFocus && x <= card.right(); x += kApart) {
        const auto place = std::ranges::lower_bound(trace.x, pane.across.FromPixel(x));
        if (place == trace.x.end()) break;
        const double y =
            pane.up.ToPixel(trace.y[static_cast<std::size_t>(place - trace.x.begin())]);
        covered += y >= card.top() && y <= card.bottom() ? 1 : 0;
      }
    }
  }
  return covered;
}

// Along an axis of time, where the line is all there is to see: where the card hides least of it.
QRectF ClearOfTraces(const PlotPage& page, QRectF card, const QRectF& bounds) {
  if (!page.scene.across.calendar) return card;
  const auto moved = [&](double top) {
    return QRectF(QPointF(card.left(), std::round(top)), card.size());
  };
  for (const QRectF& other :
       {moved(bounds.bottom() - card.height() - 4), moved(bounds.top() + 4)}) {
    if (Covered(page, other) < Covered(page, card)) card = other;
  }
  return card;
}

}  // namespace

QRectF ReadOutPlace(const PlotPage& page, const PlotReadOut& readOut, QPointF anchor,
                    const QRectF& taken) {
  const QRectF bounds = page.layout.Canvases();
  const QSizeF size = SizeOf(page, readOut);
  const double top = std::clamp(anchor.y() - size.height() / 3, bounds.top() + 4,
                                std::max(bounds.top() + 4, bounds.bottom() - size.height() - 4));
  const QRectF right(QPointF(std::round(anchor.x() + kBeside), std::round(top)), size);
  const QRectF left(QPointF(std::round(anchor.x() - kBeside - size.width()), std::round(top)),
                    size);
  const auto cost = [&](const QRectF& card) {
    const bool isOutside = card.left() < bounds.left() || card.right() > bounds.right();
    return (isOutside ? 1000 : 0) + (card.intersects(taken) ? 100 : 0) + Hidden(page, card);
  };
  const QRectF first = page.layout.panes.empty() ? bounds : page.layout.panes.front().canvas;
  QRectF place = ClearOfTraces(page, cost(right) <= cost(left) ? right : left, first);
  if (place.intersects(taken)) {
    place.moveTop(taken.bottom() + 6 + size.height() < bounds.bottom()
                      ? taken.bottom() + 6
                      : taken.top() - 6 - size.height());
  }
  place.moveLeft(
      std::clamp(place.left(), 0.0, std::max(0.0, page.layout.size.width() - size.width())));
  return place;
}

void PaintReadOut(QPainter& painter, const PlotPage& page, const PlotReadOut& readOut,
                  const QRectF& place) {
  const QRectF card = place.adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, page.look.isDark ? 90 : 28));
  painter.drawRoundedRect(card.translated(0, 1), 4, 4);
  painter.setPen(QPen(page.look.edge, 1));
  painter.setBrush(page.look.panel);
  painter.drawRoundedRect(card, 4, 4);
  const double height = RowHeight(page);
  QRectF row(place.left(), place.top() + kInside - 2, place.width(), height);
  painter.setPen(page.look.text);
  DrawTabular(painter, page.fonts.bold, row.adjusted(kInside, 0, -kInside, 0), Qt::AlignLeft,
              readOut.title);
  const double left = NameLeft(readOut);
  for (const auto& entry : readOut.rows) {
    row.translate(0, height);
    if (entry.ink) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(page.look.Ink(*entry.ink));
      painter.drawRoundedRect(
          QRectF(row.left() + kInside, row.center().y() - kSwatch / 2, kSwatch, kSwatch), 2, 2);
    }
    painter.setPen(entry.ink ? page.look.text : page.look.muted);
    DrawTabular(painter, page.fonts.plain, row.adjusted(left, 0, -kInside, 0), Qt::AlignLeft,
                entry.name);
    painter.setPen(page.look.text);
    DrawTabular(painter, page.fonts.plain, row.adjusted(left, 0, -kInside, 0), Qt::AlignRight,
                entry.value);
  }
}

}  // namespace kestrel
