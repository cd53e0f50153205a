// The small card beside cursor or pointer that tells the values there.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "ui/chart/ground_painter.h"

namespace kestrel {

// Beside the anchor, on the side where it hides less, within the canvases and clear of `taken`.
[[nodiscard]] QRectF ReadOutPlace(const PlotPage& page, const PlotReadOut& readOut, QPointF anchor,
                                  const QRectF& taken);

void PaintReadOut(QPainter& painter, const PlotPage& page, const PlotReadOut& readOut,
                  const QRectF& place);

}  // namespace kestrel
