// Placing and painting the letters of traces.
// SPDX-License-Identifier: MIT
#include "ui/chart/letter_painter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr int kTimes = 3;     // a letter stands along its trace
constexpr double kReach = 4;  // pixels beside a letter that its trace is looked at
constexpr double kAbove = 2;  // between trace and letter
constexpr double kEdgeFree = 1;

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

void PaintTraceLetters(QPainter& painter, const PlotPage& page) {
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) PaintLettersOf(painter, page, i);
}

}  // namespace kestrel
