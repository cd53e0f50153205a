// How a record is drawn in small.
// SPDX-License-Identifier: MIT
#include "ui/study/sketch.h"

#include <QPen>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace kestrel {
namespace {

constexpr double kDecades = 3.5;

}  // namespace

QList<double> SketchOf(const Record& record) {
  constexpr std::size_t kColumns = 64;
  QList<double> heights;
  const std::size_t points = record.Points();
  double largest = 1e-12;
  for (const Axis axis : kAxes) {
    for (const double value : record.Values(axis)) largest = std::max(largest, std::abs(value));
  }
  for (std::size_t column = 0; column < kColumns; ++column) {
    double most = 0;
    double sample = 0;
    for (std::size_t i = column * points / kColumns; i < (column + 1) * points / kColumns; ++i) {
      for (const Axis axis : kAxes) most = std::max(most, std::abs(record.Values(axis)[i]));
      sample = record.Values(Axis::X)[i];
    }
    const double log = 1 + std::log10(std::max(most / largest, 1e-9)) / kDecades;
    heights << (record.kind == RecordKind::Time ? 0.5 + 0.5 * sample / largest
                                                : std::clamp(log, 0.0, 1.0));
  }
  return heights;
}

void PaintSketch(QPainter& painter, const QRectF& place, const QList<double>& heights,
                 const QColor& ink) {
  if (heights.isEmpty()) return;
  QPolygonF line;
  const double step = place.width() / static_cast<double>(heights.size());
  for (qsizetype i = 0; i < heights.size(); ++i) {
    line << QPointF(place.left() + static_cast<double>(i) * step,
                    place.bottom() - heights[i] * place.height());
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 1));
  painter.drawPolyline(line);
  painter.restore();
}

}  // namespace kestrel
