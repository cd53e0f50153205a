// The labels at the peaks of a plot, and the letters along its traces.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <optional>
#include <vector>

#include "chart/label_places.h"
#include "ui/chart/ground_painter.h"

namespace kestrel {

// By the pane's peaks; what has no room, or is outside the view, has no place.
[[nodiscard]] std::vector<std::optional<LabelPlace>> PeakLabelPlaces(const PlotPage& page,
                                                                     std::size_t pane);
void PaintPeakLabels(QPainter& painter, const PlotPage& page);

// For who sees no colours: each trace that has a letter gets it a few times, where it is furthest
// from the others. Where traces lie on each other, and where one is alone in its pane, there is
// none.
void PaintTraceLetters(QPainter& painter, const PlotPage& page);

}  // namespace kestrel
