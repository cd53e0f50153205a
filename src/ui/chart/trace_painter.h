// The traces of a plot, on a picture's pixels or as vectors.
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPainter>
#include <span>
#include <vector>

#include "chart/stroke_image.h"
#include "ui/chart/ground_painter.h"

namespace kestrel {

// Over the ground that the picture holds already; of format RGB32, with the layout's ratio.
void DrawTraces(QImage& picture, const PlotPage& page);

// With a painter, for devices that keep lines as lines.
void PaintTraces(QPainter& painter, const PlotPage& page);

// Lengths drawn and not drawn along a trace, in unscaled pixels; empty for a line drawn through.
[[nodiscard]] std::span<const double> PatternOf(const SceneTrace& trace);

// The strokes of one pane in device pixels, relative to the canvas's top left corner.
[[nodiscard]] std::vector<Stroke> StrokesOf(const PlotPage& page, std::size_t pane);

}  // namespace kestrel
