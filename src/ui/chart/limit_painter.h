// Thresholds through a whole pane, and the lanes below it that say when what was the case.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "ui/chart/ground_painter.h"

namespace kestrel {

// Lines of warnings dashed, of faults solid, each with its name above it at the left.
void PaintLimits(QPainter& painter, const PlotPage& page, std::size_t pane);

// What is short is drawn wide enough to be seen.
void PaintLanes(QPainter& painter, const PlotPage& page);

}  // namespace kestrel
