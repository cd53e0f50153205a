// The letters along the traces of a plot that has to be read without colours.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "ui/chart/ground_painter.h"

namespace kestrel {

// Each trace that has a letter gets it a few times, no two of a pane at the same place along x.
void PaintTraceLetters(QPainter& painter, const PlotPage& page);

}  // namespace kestrel
