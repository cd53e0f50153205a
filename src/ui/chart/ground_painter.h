// What lies under the traces of a plot: grid, axes, bands, hatches, titles and legend.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "chart/plot_scene.h"
#include "ui/chart/look.h"
#include "ui/chart/plot_layout.h"

namespace kestrel {

// All that a painter of a plot needs to know.
struct PlotPage {
  const PlotScene& scene;
  const PlotLayout& layout;
  const Look& look;
  const LookFonts& fonts;
};

void PaintGround(QPainter& painter, const PlotPage& page);

// One device pixel wide, on the pixel that holds the place.
void FillColumn(QPainter& painter, double ratio, double x, double top, double bottom,
                const QColor& colour);
void FillRow(QPainter& painter, double ratio, double y, double left, double right,
             const QColor& colour);

// 45 degrees, 6 pixels apart.
void PaintHatch(QPainter& painter, const Look& look, const QRectF& place);

// Where x is in a pane, within its canvas.
[[nodiscard]] QRectF SpanOf(const PaneLayout& pane, double from, double to);

}  // namespace kestrel
