// Where a round pen touches highest and lowest as it follows a line.
// SPDX-License-Identifier: MIT
#include "chart/column_stroke.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace kestrel {
namespace {

constexpr int kCornerStrips = 6;  // a column with a corner in it is cut into so many

}  // namespace

ColumnStroke::ColumnStroke(std::span<const PlotPoint> points, double width)
    : points_(points), radius_(width / 2) {}

double ColumnStroke::UpperAt(const Segment& line, double x) {
  return line.y0 + (x - line.x0) * line.slope - line.half;
}

void ColumnStroke::CoverBetween(const Heights& before, const Heights& after, double width,
                                ColumnCover& cover) {
  const bool isBefore = before.upper <= before.lower;
  const bool isAfter = after.upper <= after.lower;
  if (isBefore && isAfter) {
    cover.Add(before.upper, after.upper, before.lower, after.lower, width);
  } else if (isBefore || isAfter) {  // the line's round end
    const Heights& end = isBefore ? before : after;
    cover.Add(end.upper, end.upper, end.lower, end.lower, width / 2);
  }
}

void ColumnStroke::Load(std::size_t index) {
  const PlotPoint& a = points_[index];
  const PlotPoint& b = points_[std::min(index + 1, points_.size() - 1)];
  const double dx = b.x - a.x;
  if (dx < 1e-6) {  // upright, or a lone point: its two ends say all
    segments_.push_back({a.x, a.y, a.x, 0, 0, 0, 0});
    segments_.push_back({b.x, b.y, b.x, 0, 0, 0, 0});
    return;
  }
  const double slope = (b.y - a.y) / dx;
  const double stretch = std::sqrt(1 + slope * slope);
  segments_.push_back(
      {a.x, a.y, b.x, slope, radius_ * slope / stretch, radius_ / stretch, radius_ * stretch});
}

// The pen touches lowest (largest y) where it stands `reach` further along a falling line.
void ColumnStroke::Widen(const Segment& segment, double x, Heights& heights) const {
  const double from = segment.x0 - x;
  const double to = segment.x1 - x;
  if (from > radius_ || to < -radius_) return;
  const auto touch = [&](double wished, double side) {
    const double along = std::clamp(wished, std::max(from, -radius_), std::min(to, radius_));
    const double rise = along == wished && segment.x1 > segment.x0
                            ? segment.rise
                            : std::sqrt(std::max(0.0, radius_ * radius_ - along * along));
    return segment.y0 + (along - from) * segment.slope + side * rise;
  };
  heights.lower = std::max(heights.lower, touch(segment.reach, 1));
  heights.upper = std::min(heights.upper, touch(-segment.reach, -1));
}

ColumnStroke::Heights ColumnStroke::At(double x) const {
  Heights heights{1e9, -1e9};
  for (const Segment& segment : segments_) Widen(segment, x, heights);
  return heights;
}

// Where no other segment and no end of the line is within the pen's reach.
const ColumnStroke::Segment* ColumnStroke::StraightOver(double from, double to) const {
  for (const Segment& segment : segments_) {
    if (segment.x0 <= from - radius_ && segment.x1 >= to + radius_) return &segment;
  }
  return nullptr;
}

void ColumnStroke::CoverCorners(double column, ColumnCover& cover) const {
  constexpr double kWidth = 1.0 / kCornerStrips;
  const auto place = [&](int strip) { return column + strip * kWidth; };
  std::optional<Heights> before;
  for (int strip = 0; strip < kCornerStrips;) {
    int next = strip + 1;
    if (const Segment* line = StraightOver(place(strip), place(next))) {
      while (next < kCornerStrips && line->x1 >= place(next + 1) + radius_) ++next;
      const double left = UpperAt(*line, place(strip));
      const double right = UpperAt(*line, place(next));
      cover.Add(left, right, left + 2 * line->half, right + 2 * line->half,
                (next - strip) * kWidth);
      before.reset();
    } else {
      if (!before) before = At(place(strip));
      const Heights after = At(place(next));
      CoverBetween(*before, after, kWidth, cover);
      before = after;
    }
    strip = next;
  }
}

void ColumnStroke::KeepHeight(const Segment& segment, double x) {
  if (segment.x0 > x || segment.x1 < x) return;
  hasHeight_ = true;
  height_ = segment.y0 + (x - segment.x0) * segment.slope;
}

void ColumnStroke::Cover(int column, ColumnCover& cover) {
  const double left = column;
  hasHeight_ = false;
  if (const Segment* line = StraightOver(left, left + 1)) {
    cover.Set(UpperAt(*line, left), UpperAt(*line, left + 1), 2 * line->half);
    KeepHeight(*line, left + 0.5);
    return;
  }
  std::erase_if(segments_, [&](const Segment& s) { return s.x1 < left - radius_; });
  const std::size_t last = points_.size() < 2 ? points_.size() : points_.size() - 1;
  while (next_ < last && points_[next_].x <= left + 1 + radius_) {
    const std::size_t end = std::min(next_ + 1, points_.size() - 1);
    if (points_[end].x >= left - radius_) Load(next_);
    ++next_;
  }
  if (segments_.empty()) return;
  CoverCorners(left, cover);
  for (const Segment& segment : segments_) KeepHeight(segment, left + 0.5);
}

}  // namespace kestrel
