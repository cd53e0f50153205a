// Filling one pixel row of the ring, and moving the ring on.
// SPDX-License-Identifier: MIT
#include "ui/waterfall/waterfall_image.h"

#include <algorithm>
#include <cmath>

namespace kestrel {

void WaterfallImage::Reset(QSize size, const AxisMap& across, const std::vector<double>& x,
                           const WaterfallScale& scale, const ColourMap& map, QRgb nothing,
                           double secondsPerPixel) {
  if (ring_.size() != size) ring_ = QImage(size, QImage::Format_RGB32);
  ring_.fill(nothing);
  heights_ = AxisMap(scale.range, scale.kind, 0, 255);
  map_ = map;
  nothing_ = nothing;
  secondsPerPixel_ = secondsPerPixel;
  isEmpty_ = true;
  const auto columns = static_cast<std::size_t>(size.width());
  first_.assign(columns, 0);
  end_.assign(columns, 0);
  line_.assign(columns, nothing);
  std::vector<double> places;
  for (const double value : x) places.push_back(across.ToPixel(value));
  for (std::size_t column = 0; column < columns && !places.empty(); ++column) {
    const auto left = static_cast<double>(column);
    const auto from = std::lower_bound(places.begin(), places.end(), left);
    const auto to = std::lower_bound(from, places.end(), left + 1);
    if (to > from) {  // the largest of them
      first_[column] = static_cast<int>(from - places.begin());
      end_[column] = static_cast<int>(to - places.begin());
    } else if (from != places.begin() && from != places.end()) {  // the nearer neighbour
      const bool isLeft = left + 0.5 - *(from - 1) < *from - left - 0.5;
      first_[column] = static_cast<int>(from - places.begin()) - (isLeft ? 1 : 0);
      end_[column] = first_[column] + 1;
    }
  }
}

qint64 WaterfallImage::RowOf(double time) const {
  return static_cast<qint64>(std::floor(time / secondsPerPixel_));
}

QRgb WaterfallImage::ColourOf(double value) const {
  if (!std::isfinite(value)) return nothing_;
  const double step = std::clamp(heights_.ToPixel(value), 0.0, 255.0);
  return map_[static_cast<std::size_t>(step + 0.5)];
}

void WaterfallImage::Line(std::span<const float> values) {
  std::vector<QRgb> colours(values.size());
  std::transform(values.begin(), values.end(), colours.begin(),
                 [this](float value) { return ColourOf(static_cast<double>(value)); });
  for (std::size_t column = 0; column < line_.size(); ++column) {
    const auto first = static_cast<std::size_t>(first_[column]);
    const auto end = std::min(static_cast<std::size_t>(end_[column]), values.size());
    if (first >= end) {
      line_[column] = nothing_;
      continue;
    }
    const auto largest = std::max_element(values.begin() + static_cast<std::ptrdiff_t>(first),
                                          values.begin() + static_cast<std::ptrdiff_t>(end));
    line_[column] = colours[static_cast<std::size_t>(largest - values.begin())];
  }
}

void WaterfallImage::Add(double since, double until, std::span<const float> values) {
  if (ring_.isNull()) return;
  const qint64 height = ring_.height();
  const qint64 last = RowOf(until);
  const qint64 first = std::min(RowOf(since) + 1, last);
  const qint64 known = isEmpty_ ? last - height : newest_;
  const auto put = [&](qint64 row, bool isNothing) {
    auto* pixels = reinterpret_cast<QRgb*>(
        ring_.scanLine(static_cast<int>(height - 1 - (row % height + height) % height)));
    if (isNothing) {
      std::fill_n(pixels, ring_.width(), nothing_);
    } else {
      std::copy(line_.begin(), line_.end(), pixels);
    }
  };
  for (qint64 row = std::max(known + 1, last - height + 1); row < first; ++row) put(row, true);
  Line(values);
  for (qint64 row = std::max(first, last - height + 1); row <= last; ++row) put(row, false);
  newest_ = last;
  isEmpty_ = false;
}

void WaterfallImage::Paint(QPainter& painter, QPointF corner, double ratio, double top) const {
  if (ring_.isNull()) return;
  painter.save();
  painter.translate(corner);
  painter.scale(1 / ratio, 1 / ratio);
  const int height = ring_.height();
  const int first = static_cast<int>(height - 1 - (RowOf(top) % height + height) % height);
  painter.drawImage(QPoint(0, 0), ring_, QRect(0, first, ring_.width(), height - first));
  painter.drawImage(QPoint(0, height - first), ring_, QRect(0, 0, ring_.width(), first));
  painter.restore();
}

}  // namespace kestrel
