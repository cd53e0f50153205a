// The line above a plot: what the vertical axis shows, and which trace is which.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "ui/chart/ground_painter.h"

namespace kestrel {

// Outside the data: title left, traces right; each of stacked panes has a line of its own above it.
void PaintLegend(QPainter& painter, const PlotPage& page);

}  // namespace kestrel
