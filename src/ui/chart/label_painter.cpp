// Measuring peak labels, placing them and painting them with their halo.
// SPDX-License-Identifier: MIT
#include "ui/chart/label_painter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ui/chart/band_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kHalo = 2;
constexpr int kTimes = 3;     // a letter stands along its trace
constexpr double kReach = 4;  // pixels beside a letter that its trace is looked at
constexpr double kAbove = 2;  // between trace and letter
constexpr double kEdgeFree = 1;

LabelBox BoxOf(const QRectF& rectangle) {
  return {rectangle.left(), rectangle.top(), rectangle.width(), rectangle.height()};
}

LabelWish WishOf(const PlotPage& page, const PaneLayout& pane, const PlotPeak& peak) {
  const double first = TabularWidth(page.fonts.smallBold, peak.title) + 2 * kHalo;
  const double second = TabularWidth(page.fonts.small, peak.detail) + 2 * kHalo;
  return {pane.across.ToPixel(peak.x), std::max(pane.up.ToPixel(peak.y), pane.canvas.top()),
          std::max(first, second), first, std::ceil(QFontMetricsF(page.fonts.small).height())};
}

void PaintLabel(QPainter& painter, const PlotPage& page, const PlotPeak& peak,
                const LabelPlace& place) {
  const LabelBox& box = place.box;
  const double height = box.height / place.lines;
  const QRectF first(box.left, box.top, box.width, height);
  painter.setPen(page.look.text);
  DrawWithHalo(painter, page.fonts.smallBold, first, Qt::AlignHCenter, peak.title,
               page.look.canvas);
  if (place.lines < 2) return;
  painter.setPen(page.look.muted);
  DrawWithHalo(painter, page.fonts.small, first.translated(0, height), Qt::AlignHCenter,
               peak.detail, page.look.canvas);
}

// The highest place of the trace around x, in pixels; none where it has a gap there.
std::optional<double> TopAround(const SceneTrace& trace, const PaneLayout& pane, double x) {
  double top = std::numeric_limits<double>::infinity();
  const double from = pane.across.FromPixel(x - kReach);
  const double to = pane.across.FromPixel(x + kReach);
  const std::size_t count = std::min(trace.x.size(), trace.y.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (trace.x[i] < from || trace.x[i] > to || !std::isfinite(trace.y[i])) continue;
    top = std::min(top, pane.up.ToPixel(trace.y[i]));
  }
  if (!std::isfinite(top)) return std::nullopt;
  return top;
}

void PaintLetter(QPainter& painter, const PlotPage& page, const PaneLayout& pane,
                 const SceneTrace& trace, double x) {
  const auto top = TopAround(trace, pane, x);
  if (!top) return;
  const QFont& font = page.fonts.smallBold;
  const double height = std::ceil(QFontMetricsF(font).height());
  const double width = TabularWidth(font, trace.letter) + 2;
  const double highest = pane.canvas.top() + kEdgeFree;
  const double lowest = pane.canvas.bottom() - height - kEdgeFree;
  const double y = std::clamp(*top - kAbove - height, highest, std::max(highest, lowest));
  painter.setPen(page.look.text);
  DrawWithHalo(painter, font, QRectF(x - width / 2, y, width, height), Qt::AlignHCenter,
               trace.letter, page.look.canvas);
}

void PaintLettersOf(QPainter& painter, const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  std::vector<const SceneTrace*> traces;
  for (const SceneTrace& trace : page.scene.panes[index].traces) {
    if (!trace.letter.empty()) traces.push_back(&trace);
  }
  if (traces.size() < 2) return;  // the legend says which one it is
  const double step = pane.canvas.width() / static_cast<double>(kTimes * traces.size());
  double x = pane.canvas.left() + step / 2;
  for (int time = 0; time < kTimes; ++time) {
    for (const SceneTrace* trace : traces) {
      PaintLetter(painter, page, pane, *trace, x);
      x += step;
    }
  }
}

}  // namespace

std::vector<std::optional<LabelPlace>> PeakLabelPlaces(const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  const auto& peaks = page.scene.panes[index].peaks;
  std::vector<LabelWish> wishes;
  std::vector<std::size_t> seen;
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    if (!pane.across.Range().Holds(peaks[i].x) || !std::isfinite(peaks[i].y)) continue;
    if (pane.up.ToPixel(peaks[i].y) > pane.canvas.bottom()) continue;
    wishes.push_back(WishOf(page, pane, peaks[i]));
    seen.push_back(i);
  }
  LabelBox bounds = BoxOf(pane.canvas.adjusted(2, 0, -2, 0));
  const double lane = BandLane(page, index);
  bounds.top += lane;
  bounds.height -= lane;
  const auto found = PlaceLabels(wishes, bounds, {});
  std::vector<std::optional<LabelPlace>> places(peaks.size());
  for (std::size_t i = 0; i < seen.size(); ++i) places[seen[i]] = found[i];
  return places;
}

void PaintPeakLabels(QPainter& painter, const PlotPage& page) {
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) {
    const auto places = PeakLabelPlaces(page, i);
    for (std::size_t peak = 0; peak < places.size(); ++peak) {
      if (places[peak]) PaintLabel(painter, page, page.scene.panes[i].peaks[peak], *places[peak]);
    }
  }
}

void PaintTraceLetters(QPainter& painter, const PlotPage& page) {
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) PaintLettersOf(painter, page, i);
}

}  // namespace kestrel
