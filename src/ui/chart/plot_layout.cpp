// Dividing a plot's area among axes, lanes, titles and data.
// SPDX-License-Identifier: MIT
#include "ui/chart/plot_layout.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kEdge = 12;  // inside a panel, left and right
constexpr double kTick = 4;
constexpr double kTickGap = 4;     // between a tick and its label
constexpr double kRightEdge = 28;  // half of the last label
constexpr double kUpApart = 24;    // least distance of vertical labels
constexpr double kAcrossApart = 60;
constexpr double kTimesApart = 80;
constexpr double kLaneGap = 6;
constexpr double kLeastCanvas = 24;

double Snapped(double value, double ratio) {
  return std::round(value * ratio) / ratio;
}

void Take(double value, AxisKind kind, PlotRange& range) {
  if (!std::isfinite(value) || (kind == AxisKind::Logarithmic && !(value > 0))) return;
  range = {std::fmin(range.low, value), std::fmax(range.high, value)};
}

void TakeAll(const std::vector<double>& x, const std::vector<double>& y, double from, AxisKind kind,
             PlotRange& range) {
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) {
    if (x[i] >= from) Take(y[i], kind, range);
  }
}

// The largest value and above it room for the label of its peak.
double WithRoomAbove(const PlotRange& values, AxisKind kind) {
  constexpr double kPart = 0.15;
  if (kind == AxisKind::Logarithmic) {
    return values.high * std::pow(std::max(values.high / values.low, 10.0), kPart);
  }
  const double low = kind == AxisKind::Linear ? std::min(values.low, 0.0) : values.low;
  return values.high + (values.high - low) * kPart;
}

double WidestLabel(const std::vector<AxisTick>& ticks, const LookFonts& fonts) {
  double widest = 0;
  for (const AxisTick& tick : ticks) {
    widest = std::max(widest, TabularWidth(fonts.small, QString::fromStdString(tick.label)));
  }
  return widest;
}

std::vector<AxisTick> TicksAcross(const PlotAcross& across, const PlotRange& range, double width) {
  if (across.calendar) return TimeTicks(range, *across.calendar, width, kTimesApart);
  const double factor = across.factor > 0 ? across.factor : 1;
  auto ticks =
      AxisTicks({range.low * factor, range.high * factor}, across.kind, width, kAcrossApart);
  for (AxisTick& tick : ticks) tick.value /= factor;
  return ticks;
}

// Where a logarithmic axis begins: at the first value that holds no offset.
double LeastPositive(const PlotScene& scene) {
  if (scene.across.validFrom > 0) return scene.across.validFrom;
  double least = scene.across.whole.high;
  for (const PlotPane& pane : scene.panes) {
    for (const SceneTrace& trace : pane.traces) {
      const auto first = std::upper_bound(trace.x.begin(), trace.x.end(), 0.0);
      if (first != trace.x.end()) least = std::min(least, *first);
    }
  }
  return least;
}

// Heights from the top, before the canvases are known.
struct Stack {
  double top = 0;     // of the first canvas
  double bottom = 0;  // of the last, lanes included where there is one canvas
};

double LaneHeight(const LookFonts& fonts) {
  return std::ceil(QFontMetricsF(fonts.small).height()) + 2 + kLaneGap;
}

double SharesOf(const PlotScene& scene) {
  double shares = 0;
  for (const PlotPane& pane : scene.panes) shares += pane.share;
  return shares > 0 ? shares : 1;
}

Stack LayLines(PlotLayout& layout, const PlotScene& scene, const LookFonts& fonts, bool hasSource) {
  const double line = std::ceil(QFontMetricsF(fonts.plain).height());
  const double small = std::ceil(QFontMetricsF(fonts.small).height());
  const double width = layout.size.width();
  double top = 0;
  if (!scene.head.empty()) {
    layout.recordLine = QRectF(kEdge, 0, width - 2 * kEdge, std::max(32.0, line + 12));
    top = layout.recordLine.bottom();
  }
  layout.titleLine = QRectF(kEdge, top, width - 2 * kEdge, std::max(20.0, line + 5));
  layout.flags = QRectF(0, layout.titleLine.bottom() + 2, width, small + 6);
  double bottom = layout.size.height();
  if (hasSource) {
    layout.source = QRectF(kEdge, bottom - small - 6, width - 2 * kEdge, small);
    bottom = layout.source.top();
  }
  const double below = kTick + kTickGap + 2 * small + 6;
  layout.acrossAxis = QRectF(0, bottom - below, width, below);
  return {layout.flags.bottom() + 4, layout.acrossAxis.top()};
}

}  // namespace

QRectF PlotLayout::Canvases() const {
  if (panes.empty()) return {};
  return panes.front().canvas.united(panes.back().canvas);
}

int PlotLayout::PaneAt(QPointF point) const {
  for (std::size_t i = 0; i < panes.size(); ++i) {
    const QRectF& canvas = panes[i].canvas;
    const bool isBeside = point.x() >= 0 && point.x() <= canvas.right();
    if (isBeside && point.y() >= canvas.top() && point.y() <= canvas.bottom()) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

bool PlotLayout::IsOnUpAxis(QPointF point) const {
  const int pane = PaneAt(point);
  return pane >= 0 && point.x() < panes[static_cast<std::size_t>(pane)].canvas.left();
}

PlotRange FittingRange(const PlotScene& scene, const PlotPane& pane) {
  if (pane.range && IsShowable(*pane.range, pane.up)) return *pane.range;
  PlotRange values{kNoValue, kNoValue};
  const double from = scene.across.validFrom;
  for (const SceneTrace& trace : pane.traces) TakeAll(trace.x, trace.y, from, pane.up, values);
  if (pane.crowd) {
    for (const auto& y : pane.crowd->y) TakeAll(pane.crowd->x, y, from, pane.up, values);
  }
  if (!pane.peaks.empty()) values.high = WithRoomAbove(values, pane.up);
  return RangeFor(values.low, values.high, pane.up);
}

PlotRanges FittingRanges(const PlotScene& scene) {
  PlotRanges ranges{scene.across.whole, {}};
  if (scene.across.kind == AxisKind::Logarithmic && !(ranges.across.low > 0)) {
    ranges.across.low = LeastPositive(scene);
  }
  if (!IsShowable(ranges.across, scene.across.kind))
    ranges.across = RangeFor(0, 1, scene.across.kind);
  for (const PlotPane& pane : scene.panes) ranges.up.push_back(FittingRange(scene, pane));
  return ranges;
}

PlotLayout LaidOut(const PlotScene& scene, const PlotRanges& ranges, const LookFonts& fonts,
                   QSizeF size, double ratio, bool hasSource) {
  PlotLayout layout;
  layout.size = size;
  layout.ratio = ratio;
  const Stack stack = LayLines(layout, scene, fonts, hasSource);
  const double lane = LaneHeight(fonts);
  const double lanes = static_cast<double>(scene.lanes.size()) * lane;
  const auto gaps = static_cast<double>(std::max<std::size_t>(scene.panes.size(), 1) - 1);
  const double room = stack.bottom - stack.top - lanes - gaps * kPaneGap;
  const auto height = [&](const PlotPane& pane) {
    return std::max(kLeastCanvas, room * pane.share / SharesOf(scene));
  };
  double left = 0;
  for (std::size_t i = 0; i < scene.panes.size(); ++i) {
    PaneLayout pane;
    pane.upTicks = AxisTicks(ranges.up[i], scene.panes[i].up, height(scene.panes[i]), kUpApart);
    left = std::max(left, WidestLabel(pane.upTicks, fonts));
    layout.panes.push_back(std::move(pane));
  }
  for (const PlotLane& named : scene.lanes) {
    left = std::max(left, TabularWidth(fonts.small, named.name));
  }
  left = Snapped(std::ceil(left) + kEdge + kTick + kTickGap, ratio);
  const double right = Snapped(std::max(left + kLeastCanvas, size.width() - kRightEdge), ratio);
  double from = stack.top;
  for (std::size_t i = 0; i < scene.panes.size(); ++i) {
    const double top = Snapped(from, ratio);
    from += height(scene.panes[i]);
    const double bottom = Snapped(from, ratio);
    PaneLayout& pane = layout.panes[i];
    pane.canvas = QRectF(QPointF(left, top), QPointF(right, bottom));
    pane.across = AxisMap(ranges.across, scene.across.kind, left, right);
    pane.up = AxisMap(ranges.up[i], scene.panes[i].up, bottom, top);
    for (std::size_t n = 0; i == 0 && n < scene.lanes.size(); ++n, from += lane) {
      layout.lanes.emplace_back(left, from + kLaneGap, right - left, lane - kLaneGap);
    }
    from += kPaneGap;
  }
  layout.acrossTicks = TicksAcross(scene.across, ranges.across, right - left);
  return layout;
}

}  // namespace kestrel
