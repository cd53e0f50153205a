// What moves over a plot: cursor with its flags, pointer with its read-out, rubber band.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QRectF>
#include <QRegion>
#include <optional>
#include <vector>

#include "ui/chart/ground_painter.h"

namespace kestrel {

struct PlotOverlay {
  SceneCursor cursor;
  std::optional<double> pointer;  // along x, in the unit of the data
  QPointF pointerPlace;           // in pixels
  PlotReadOut pointerReadOut;
  std::optional<QRectF> band;  // a rubber band
  bool hasFocus = false;
};

// Where a member's flag is; empty for one outside the view, or without room.
[[nodiscard]] std::vector<QRectF> FlagPlaces(const PlotPage& page, const SceneCursor& cursor);

// All that painting the overlay may touch.
[[nodiscard]] QRegion OverlayRegion(const PlotPage& page, const PlotOverlay& overlay);

void PaintOverlay(QPainter& painter, const PlotPage& page, const PlotOverlay& overlay);

}  // namespace kestrel
