// A record in small, as lists show it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QPainter>
#include <QRectF>

#include "record/record.h"

namespace kestrel {

inline constexpr int kSketchWidth = 56;  // pixels

// Heights 0 to 1 of a record in small: of a spectrum the largest of the axes, logarithmically; of
// samples the axis X about the middle.
[[nodiscard]] QList<double> SketchOf(const Record& record);

// Heights 0 to 1 as a line.
void PaintSketch(QPainter& painter, const QRectF& place, const QList<double>& heights,
                 const QColor& ink);

}  // namespace kestrel
