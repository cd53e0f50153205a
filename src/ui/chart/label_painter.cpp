// Measuring peak labels, placing them and painting them with their halo.
// SPDX-License-Identifier: MIT
#include "ui/chart/label_painter.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "ui/chart/band_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kHalo = 2;
constexpr int kTimes = 3;     // a letter stands along its trace
constexpr double kApart = 5;  // pixels between traces that a letter can tell apart
constexpr double kBesideLetter = 2;

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

using Lettered = std::vector<const SceneTrace*>;

// In pixels at the sample nearest to x; none outside, and where there is a gap.
std::optional<double> HeightAt(const SceneTrace& trace, const PaneLayout& pane, double x) {
  if (trace.x.empty() || x < trace.x.front() || x > trace.x.back()) return std::nullopt;
  const auto after = std::lower_bound(trace.x.begin(), trace.x.end(), x);
  auto at = static_cast<std::size_t>(after - trace.x.begin());
  if (at > 0 && x - trace.x[at - 1] < trace.x[at] - x) --at;
  if (at >= trace.y.size() || !std::isfinite(trace.y[at])) return std::nullopt;
  return pane.up.ToPixel(trace.y[at]);
}

// How far the other traces are from this one at its sample, in pixels.
double Parted(const Lettered& traces, const SceneTrace& trace, const PaneLayout& pane,
              std::size_t sample) {
  const double own = pane.up.ToPixel(trace.y[sample]);
  double least = pane.canvas.height();
  for (const SceneTrace* other : traces) {
    if (other == &trace) continue;
    const auto height = HeightAt(*other, pane, trace.x[sample]);
    if (height) least = std::min(least, std::abs(*height - own));
  }
  return least;
}

// The box of a letter that ends at a sample of its trace, just above it or beside it.
QRectF LetterBox(const PlotPage& page, const PaneLayout& pane, const SceneTrace& trace,
                 std::size_t sample) {
  const QFont& font = page.fonts.smallBold;
  const double height = std::ceil(QFontMetricsF(font).height());
  const double width = TabularWidth(font, trace.letter) + 2;
  const double left = pane.across.ToPixel(trace.x[sample]) + kBesideLetter;
  const double top = std::clamp(pane.up.ToPixel(trace.y[sample]) - height / 2,
                                pane.canvas.top() + 1, pane.canvas.bottom() - height - 1);
  return {std::min(left, pane.canvas.right() - width), top, width, height};
}

// The place within a part of the canvas where the trace is furthest from all others and no letter
// stands yet.
std::optional<QRectF> BestPlace(const PlotPage& page, const Lettered& traces,
                                const SceneTrace& trace, const PaneLayout& pane,
                                const PlotRange& part, const std::vector<QRectF>& taken) {
  std::optional<QRectF> best;
  double furthest = kApart;
  const std::size_t count = std::min(trace.x.size(), trace.y.size());
  for (std::size_t i = 0; i < count; ++i) {
    const double x = pane.across.ToPixel(trace.x[i]);
    if (!part.Holds(x) || !std::isfinite(trace.y[i])) continue;
    const double apart = Parted(traces, trace, pane, i);
    if (apart <= furthest) continue;
    const QRectF box = LetterBox(page, pane, trace, i);
    const bool isFree =
        std::ranges::none_of(taken, [&box](const QRectF& other) { return other.intersects(box); });
    if (!isFree) continue;
    best = box;
    furthest = apart;
  }
  return best;
}

void PaintLettersOf(QPainter& painter, const PlotPage& page, std::size_t index) {
  const PaneLayout& pane = page.layout.panes[index];
  Lettered traces;
  for (const SceneTrace& trace : page.scene.panes[index].traces) {
    if (!trace.letter.empty()) traces.push_back(&trace);
  }
  if (traces.size() < 2) return;  // the legend says which one it is
  const double first =
      pane.across.ToPixel(std::max(pane.across.Range().low, page.scene.across.validFrom));
  const double width = (pane.canvas.right() - first) / kTimes;
  std::vector<QRectF> taken;
  for (int time = 0; time < kTimes; ++time) {
    const PlotRange part{first + time * width, first + (time + 1) * width};
    for (const SceneTrace* trace : traces) {
      const auto place = BestPlace(page, traces, *trace, pane, part, taken);
      if (!place) continue;
      taken.push_back(*place);
      painter.setPen(page.look.text);
      DrawWithHalo(painter, page.fonts.smallBold, *place, Qt::AlignHCenter, trace->letter,
                   page.look.canvas);
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
