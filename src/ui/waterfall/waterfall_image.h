// The map of a waterfall in screen pixels: a ring of pixel rows that grows upwards with time.
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <vector>

#include "chart/axis_map.h"
#include "chart/colour_map.h"
#include "chart/waterfall_rows.h"

namespace kestrel {

struct WaterfallScale {
  PlotRange range{0.001, 1};  // what the colours span
  AxisKind kind = AxisKind::Logarithmic;
  bool operator==(const WaterfallScale&) const = default;
};

// A new row costs the pixel rows it covers; what is there stays where it is in the ring.
class WaterfallImage {
 public:
  // Everything anew: the map's size in device pixels, the axis along x from 0 to its width, x of
  // the values, the colours, and how many seconds lie on a pixel.
  void Reset(QSize size, const AxisMap& across, const std::vector<double>& x,
             const WaterfallScale& scale, const ColourMap& map, QRgb nothing,
             double secondsPerPixel);

  // The row covers the time from `since` (exclusive) to `until`, later than what is there.
  void Add(double since, double until, std::span<const float> values);

  // The newest time, `top`, goes to the upper edge.
  void Paint(QPainter& painter, QPointF corner, double ratio, double top) const;

  // Pixels from the upper edge, when `top` is there.
  [[nodiscard]] double PixelOf(double time, double top) const {
    return (top - time) / secondsPerPixel_;
  }
  [[nodiscard]] QRgb ColourOf(double value) const;

 private:
  [[nodiscard]] qint64 RowOf(double time) const;
  void Line(std::span<const float> values);

  QImage ring_;
  std::vector<int> first_;  // by column: the values it shows, first and end
  std::vector<int> end_;
  AxisMap heights_;
  ColourMap map_{};
  QRgb nothing_ = 0;
  double secondsPerPixel_ = 1;
  std::vector<QRgb> line_;
  qint64 newest_ = 0;
  bool isEmpty_ = true;
};

}  // namespace kestrel
