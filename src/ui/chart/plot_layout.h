// Where the parts of an analyser's plot lie.
// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QSizeF>
#include <vector>

#include "chart/axis_map.h"
#include "chart/axis_ticks.h"
#include "chart/plot_scene.h"
#include "ui/chart/look.h"

namespace kestrel {

// Between two stacked canvases, in pixels; holds a line of the legend.
inline constexpr double kPaneGap = 22;

// What part of the data is shown.
struct PlotRanges {
  PlotRange across;
  std::vector<PlotRange> up;  // of each pane
};

struct PaneLayout {
  QRectF canvas;  // its edges lie on device pixels
  AxisMap across;
  AxisMap up;
  std::vector<AxisTick> upTicks;
};

// In unscaled pixels.
struct PlotLayout {
  QSizeF size;
  double ratio = 1;   // device pixels for each unscaled one
  QRectF recordLine;  // empty without one
  QRectF titleLine;   // axis title and legend
  QRectF flags;       // the lane of the cursor's flags
  std::vector<PaneLayout> panes;
  std::vector<QRectF> lanes;          // below the first canvas
  std::vector<AxisTick> acrossTicks;  // values in the unit of the data
  QRectF acrossAxis;                  // below the last canvas
  QRectF source;                      // line at the bottom of pictures that leave the program

  // From the first canvas to the last.
  [[nodiscard]] QRectF Canvases() const;
  // The pane whose canvas, or whose axis at its left, holds the point; -1 if none does.
  [[nodiscard]] int PaneAt(QPointF point) const;
  [[nodiscard]] bool IsOnUpAxis(QPointF point) const;
};

// Automatic ranges: the whole of the horizontal axis; vertically what fits the valid values of the
// pane, unless it names a range itself.
[[nodiscard]] PlotRanges FittingRanges(const PlotScene& scene);
[[nodiscard]] PlotRange FittingRange(const PlotScene& scene, const PlotPane& pane);

[[nodiscard]] PlotLayout LaidOut(const PlotScene& scene, const PlotRanges& ranges,
                                 const LookFonts& fonts, QSizeF size, double ratio,
                                 bool hasSource = false);

}  // namespace kestrel
