// Painting the top layer, which alone follows the pointer.
// SPDX-License-Identifier: MIT
#include "ui/chart/overlay_painter.h"

#include <algorithm>
#include <cmath>

#include "ui/chart/label_painter.h"
#include "ui/chart/read_out_box.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kFlagEdge = 5;
constexpr double kLeastFlag = 22;
constexpr double kRing = 4;
constexpr double kSpanShade = 0.07;

double PlaceOf(const PlotPage& page, double x) {
  return page.layout.panes.front().across.ToPixel(x);
}

bool IsSeen(const PlotPage& page, double x) {
  return !page.layout.panes.empty() && page.layout.panes.front().across.Range().Holds(x);
}

QPen LinePen(const PlotPage& page, MemberKind kind) {
  if (kind == MemberKind::Main) return {page.look.accent, 1.5};
  QPen pen(page.look.accent, 1, Qt::CustomDashLine, Qt::FlatCap);
  pen.setDashPattern(kind == MemberKind::Found ? QList<qreal>{4, 3} : QList<qreal>{1, 4});
  return pen;
}

// Where a line through all panes crosses no peak's label.
QRegion BesideLabels(const PlotPage& page) {
  const QRectF canvases = page.layout.Canvases();
  QRectF all = canvases;
  all.setTop(page.layout.flags.top());
  QRegion region(all.toAlignedRect());
  for (std::size_t pane = 0; pane < page.layout.panes.size(); ++pane) {
    for (const auto& place : PeakLabelPlaces(page, pane)) {
      if (!place) continue;
      const LabelBox& box = place->box;
      region -= QRectF(box.left, box.top, box.width, box.height).toAlignedRect();
    }
  }
  return region;
}

// Through all panes, from the flag down.
void PaintLine(QPainter& painter, const PlotPage& page, const PlotMember& member) {
  const double x = std::floor(PlaceOf(page, member.x)) + 0.5;
  const QRectF canvases = page.layout.Canvases();
  painter.setPen(LinePen(page, member.kind));
  painter.drawLine(QPointF(x, page.layout.flags.bottom()), QPointF(x, canvases.bottom()));
}

void PaintFlag(QPainter& painter, const PlotPage& page, const PlotMember& member,
               const QRectF& place) {
  if (place.isEmpty()) return;
  const bool isMain = member.kind == MemberKind::Main;
  const bool isMissing = member.kind == MemberKind::Missing;
  QPen pen(isMissing ? page.look.muted : page.look.accent, 1);
  if (isMissing) pen.setDashPattern({2, 2});
  painter.setPen(pen);
  painter.setBrush(isMain ? page.look.accent : page.look.panel);
  painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  painter.setPen(isMain ? page.look.onAccent : isMissing ? page.look.muted : page.look.accent);
  DrawTabular(painter, page.fonts.smallBold, place, Qt::AlignHCenter, member.flag);
}

void PaintRing(QPainter& painter, const PlotPage& page, const PlotMember& member) {
  const auto index = static_cast<std::size_t>(std::max(member.pane, 0));
  if (!std::isfinite(member.y) || index >= page.layout.panes.size()) return;
  const PaneLayout& pane = page.layout.panes[index];
  const double y = pane.up.ToPixel(member.y);
  if (y < pane.canvas.top() || y > pane.canvas.bottom()) return;
  painter.setPen(QPen(page.look.accent, 1.5));
  painter.setBrush(page.look.canvas);
  painter.drawEllipse(QPointF(PlaceOf(page, member.x), y), kRing, kRing);
}

void PaintSpan(QPainter& painter, const PlotPage& page, const SceneCursor& cursor,
               const std::vector<QRectF>& flags) {
  if (!cursor.isSpan || cursor.members.size() < 2) return;
  QColor shade = page.look.accent;
  shade.setAlphaF(static_cast<float>(kSpanShade));
  const auto [from, to] = std::minmax(cursor.members[0].x, cursor.members[1].x);
  for (const PaneLayout& pane : page.layout.panes) {
    painter.fillRect(SpanOf(pane, from, to), shade);
  }
  if (flags[0].isEmpty() || flags[1].isEmpty()) return;
  const auto& left = flags[0].left() < flags[1].left() ? flags[0] : flags[1];
  const auto& right = flags[0].left() < flags[1].left() ? flags[1] : flags[0];
  const QRectF between(left.right(), left.top(), right.left() - left.right(), left.height());
  const double width = TabularWidth(page.fonts.smallBold, cursor.spanText) + 12;
  if (width + 16 > between.width()) return;
  const double y = std::floor(between.center().y()) + 0.5;
  painter.setPen(QPen(page.look.accent, 1));
  painter.drawLine(QPointF(between.left(), y), QPointF(between.center().x() - width / 2, y));
  painter.drawLine(QPointF(between.center().x() + width / 2, y), QPointF(between.right(), y));
  DrawTabular(painter, page.fonts.smallBold, between, Qt::AlignHCenter, cursor.spanText);
}

void PaintCursor(QPainter& painter, const PlotPage& page, const SceneCursor& cursor) {
  if (cursor.members.empty()) return;
  const auto flags = FlagPlaces(page, cursor);
  PaintSpan(painter, page, cursor, flags);
  painter.save();
  painter.setClipRegion(BesideLabels(page), Qt::IntersectClip);
  for (const PlotMember& member : cursor.members) {
    if (IsSeen(page, member.x)) PaintLine(painter, page, member);
  }
  painter.restore();
  for (std::size_t i = 0; i < cursor.members.size(); ++i) {
    if (!IsSeen(page, cursor.members[i].x)) continue;
    PaintRing(painter, page, cursor.members[i]);
    PaintFlag(painter, page, cursor.members[i], flags[i]);
  }
}

void PaintPointer(QPainter& painter, const PlotPage& page, const PlotOverlay& overlay) {
  if (!overlay.pointer || !IsSeen(page, *overlay.pointer)) return;
  const double x = std::floor(PlaceOf(page, *overlay.pointer)) + 0.5;
  QPen pen(page.look.text, 1, Qt::CustomDashLine, Qt::FlatCap);
  pen.setDashPattern({1, 3});
  painter.setPen(pen);
  for (const PaneLayout& pane : page.layout.panes) {
    painter.drawLine(QPointF(x, pane.canvas.top()), QPointF(x, pane.canvas.bottom()));
  }
}

void PaintFocus(QPainter& painter, const PlotPage& page) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(page.look.accent, 2));
  for (const PaneLayout& pane : page.layout.panes) {
    painter.drawRect(pane.canvas.adjusted(3, 3, -3, -3));
  }
}

void PaintBand(QPainter& painter, const PlotPage& page, const QRectF& band) {
  QColor shade = page.look.accent;
  shade.setAlphaF(static_cast<float>(kSpanShade));
  painter.setPen(QPen(page.look.accent, 1));
  painter.setBrush(shade);
  painter.drawRect(band.adjusted(0.5, 0.5, -0.5, -0.5));
}

QPointF CursorAnchor(const PlotPage& page, const PlotMember& member) {
  const auto index =
      std::min(static_cast<std::size_t>(std::max(member.pane, 0)), page.layout.panes.size() - 1);
  const PaneLayout& pane = page.layout.panes[index];
  const double y = std::isfinite(member.y) ? pane.up.ToPixel(member.y) : pane.canvas.center().y();
  return {PlaceOf(page, member.x), std::clamp(y, pane.canvas.top(), pane.canvas.bottom())};
}

// The cursor's first, then the pointer's beside it.
std::vector<std::pair<PlotReadOut, QRectF>> ReadOuts(const PlotPage& page,
                                                     const PlotOverlay& overlay) {
  std::vector<std::pair<PlotReadOut, QRectF>> boxes;
  const auto& cursor = overlay.cursor;
  if (page.layout.panes.empty()) return boxes;
  if (!cursor.members.empty() && !cursor.readOut.title.empty() &&
      IsSeen(page, cursor.members[0].x)) {
    const QPointF anchor = CursorAnchor(page, cursor.members[0]);
    boxes.emplace_back(cursor.readOut, ReadOutPlace(page, cursor.readOut, anchor, {}));
  }
  if (overlay.pointer && !overlay.pointerReadOut.title.empty()) {
    const QRectF taken = boxes.empty() ? QRectF() : boxes[0].second;
    boxes.emplace_back(overlay.pointerReadOut,
                       ReadOutPlace(page, overlay.pointerReadOut, overlay.pointerPlace, taken));
  }
  return boxes;
}

QRect Around(const QRectF& place) {
  return place.adjusted(-4, -4, 4, 4).toAlignedRect();
}

}  // namespace

std::vector<QRectF> FlagPlaces(const PlotPage& page, const SceneCursor& cursor) {
  std::vector<QRectF> places(cursor.members.size());
  std::vector<QRectF> taken;
  const auto place = [&](std::size_t i) {
    const PlotMember& member = cursor.members[i];
    if (member.flag.empty() || !IsSeen(page, member.x)) return;
    const double width =
        std::max(kLeastFlag, TabularWidth(page.fonts.smallBold, member.flag) + 2 * kFlagEdge);
    const QRectF flag(std::round(PlaceOf(page, member.x) - width / 2), page.layout.flags.top(),
                      std::ceil(width), page.layout.flags.height());
    const bool isFree = std::none_of(taken.begin(), taken.end(), [&](const QRectF& other) {
      return other.adjusted(-2, 0, 2, 0).intersects(flag);
    });
    if (!isFree) return;
    places[i] = flag;
    taken.push_back(flag);
  };
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (cursor.members[i].kind == MemberKind::Main) place(i);
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (cursor.members[i].kind != MemberKind::Main) place(i);
  }
  return places;
}

QRegion OverlayRegion(const PlotPage& page, const PlotOverlay& overlay) {
  QRegion region;
  if (page.layout.panes.empty()) return region;
  const QRectF canvases = page.layout.Canvases();
  const auto column = [&](double x) {
    const double top = page.layout.flags.top();
    return Around(QRectF(PlaceOf(page, x) - kRing, top, 2 * kRing, canvases.bottom() - top));
  };
  for (const PlotMember& member : overlay.cursor.members) {
    if (IsSeen(page, member.x)) region += column(member.x);
  }
  for (const QRectF& flag : FlagPlaces(page, overlay.cursor)) region += Around(flag);
  if (overlay.cursor.isSpan && overlay.cursor.members.size() > 1) {
    const QRectF span = SpanOf(page.layout.panes.front(),
                               std::min(overlay.cursor.members[0].x, overlay.cursor.members[1].x),
                               std::max(overlay.cursor.members[0].x, overlay.cursor.members[1].x));
    region += Around(QRectF(span.left(), page.layout.flags.top(), span.width(),
                            canvases.bottom() - page.layout.flags.top()));
  }
  if (overlay.pointer && IsSeen(page, *overlay.pointer)) region += column(*overlay.pointer);
  for (const auto& box : ReadOuts(page, overlay)) region += Around(box.second);
  if (overlay.band) region += Around(*overlay.band);
  return region;
}

void PaintOverlay(QPainter& painter, const PlotPage& page, const PlotOverlay& overlay) {
  if (page.layout.panes.empty()) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (overlay.hasFocus) PaintFocus(painter, page);
  PaintPointer(painter, page, overlay);
  PaintCursor(painter, page, overlay.cursor);
  for (const auto& [readOut, place] : ReadOuts(page, overlay)) {
    PaintReadOut(painter, page, readOut, place);
  }
  if (overlay.band) PaintBand(painter, page, *overlay.band);
  painter.restore();
}

}  // namespace kestrel
