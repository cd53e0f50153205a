// The alarm bands of a plot: shaded, numbered, with their thresholds; and the known frequencies.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "ui/chart/ground_painter.h"

namespace kestrel {

// Height of the lane of band numbers at the top of a canvas; 0 without bands.
[[nodiscard]] double BandLane(const PlotPage& page, std::size_t pane);

// At the edge that a threshold lies beyond.
void PaintTriangle(QPainter& painter, QPointF tip, bool isUp, const QColor& colour);

// Below the grid.
void PaintBandGrounds(QPainter& painter, const PlotPage& page, std::size_t pane);
// Above it.
void PaintBandLines(QPainter& painter, const PlotPage& page, std::size_t pane);

}  // namespace kestrel
