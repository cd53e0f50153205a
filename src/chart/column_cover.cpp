// The area of a sloping band of a line within one pixel column, in closed form.
// SPDX-License-Identifier: MIT
#include "chart/column_cover.h"

#include <algorithm>
#include <cmath>

namespace kestrel {
namespace {

constexpr int kOneBits = 20;
constexpr double kOne = 1 << kOneBits;
constexpr int kFullBits = 7;
constexpr int kCornerStrips = 6;  // a column with a corner in it is cut into so many

}  // namespace

ColumnCover::ColumnCover(int height)
    : height_(height),
      first_(height),
      steps_(static_cast<std::size_t>(height) + 2),
      cover_(static_cast<std::size_t>(height)) {}

void ColumnCover::Add(double upperLeft, double upperRight, double lowerLeft, double lowerRight,
                      double width) {
  const double top = std::min(upperLeft, upperRight);
  const double bottom = std::max(lowerLeft, lowerRight);
  if (!(bottom > 0) || !(top < height_)) return;
  first_ = std::min(first_, std::max(0, static_cast<int>(top)));
  end_ = std::max(end_, std::min(height_, static_cast<int>(bottom) + 1));
  AddEdge(upperLeft, upperRight, width);
  AddEdge(lowerLeft, lowerRight, -width);
}

// What lies below an edge counts with the weight; beyond the column's ends it is cut off.
void ColumnCover::AddEdge(double from, double to, double weight) {
  if (from > to) std::swap(from, to);
  if (to <= 0) {
    Step(0, weight);
    return;
  }
  if (from >= height_) return;
  const double span = to - from;
  const double bottom = std::min(to, static_cast<double>(height_));
  if (from < 0) {
    Step(0, weight * -from / span);
    AddSteps(0, bottom, weight * bottom / span);
  } else {
    AddSteps(from, bottom, span > 0 ? weight * (bottom - from) / span : weight);
  }
}

// The part of each row below an edge that runs evenly from one height to the other.
void ColumnCover::AddSteps(double from, double to, double weight) {
  const int first = static_cast<int>(from);
  const int last = static_cast<int>(to);
  if (first == last) {
    const double below = (first + 1 - (from + to) / 2) * weight;
    Step(first, below);
    Step(first + 1, weight - below);
    return;
  }
  const double each = weight / (to - from);
  const double inFirst = each * (first + 1 - from) * (first + 1 - from) / 2;
  const double inLast = weight - each * (to - last) * (to - last) / 2;
  Step(first, inFirst);
  if (last == first + 1) {
    Step(last, inLast - inFirst);
  } else {
    Step(first + 1, each * (first + 1.5 - from) - inFirst);
    const auto step = static_cast<std::int32_t>(each * kOne);
    for (int row = first + 2; row < last; ++row) steps_[static_cast<std::size_t>(row)] += step;
    Step(last, inLast - each * (last - 0.5 - from));
  }
  Step(last + 1, weight - inLast);
}

void ColumnCover::Step(int row, double height) {
  steps_[static_cast<std::size_t>(row)] += static_cast<std::int32_t>(height * kOne);
}

std::span<const std::int16_t> ColumnCover::Take() {
  if (end_ <= first_) return {};
  const auto first = static_cast<std::size_t>(first_);
  const auto count = static_cast<std::size_t>(end_ - first_);
  constexpr int kShift = kOneBits - kFullBits;
  std::int32_t sum = 1 << (kShift - 1);
  std::int32_t* steps = steps_.data() + first;
  std::int16_t* cover = cover_.data() + first;
  for (std::size_t i = 0; i < count; ++i) {
    sum += steps[i];
    steps[i] = 0;
    cover[i] = static_cast<std::int16_t>(std::clamp(sum >> kShift, 0, kFull));
  }
  steps[count] = 0;
  steps[count + 1] = 0;
  first_ = height_;
  end_ = 0;
  return {cover, count};
}

ColumnStroke::ColumnStroke(std::span<const PlotPoint> points, double width)
    : points_(points), radius_(width / 2) {}

void ColumnStroke::Load(std::size_t index) {
  const PlotPoint& a = points_[index];
  const PlotPoint& b = points_[std::min(index + 1, points_.size() - 1)];
  const double dx = b.x - a.x;
  if (dx < 1e-6) {  // upright, or a lone point: its two ends say all
    segments_.push_back({a.x, a.y, a.x, 0, 0, 0});
    segments_.push_back({b.x, b.y, b.x, 0, 0, 0});
    return;
  }
  const double slope = (b.y - a.y) / dx;
  const double stretch = std::sqrt(1 + slope * slope);
  segments_.push_back({a.x, a.y, b.x, slope, radius_ * slope / stretch, radius_ / stretch});
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

void ColumnStroke::CoverStraight(double left, ColumnCover& cover) const {
  const Segment& line = segments_.front();
  const double height = line.y0 + (left - line.x0) * line.slope;
  const double half = line.rise + std::abs(line.reach * line.slope);
  cover.Add(height - half, height + line.slope - half, height + half, height + line.slope + half,
            1);
}

void ColumnStroke::CoverCorners(double left, ColumnCover& cover) const {
  constexpr double kWidth = 1.0 / kCornerStrips;
  Heights before = At(left);
  for (int strip = 1; strip <= kCornerStrips; ++strip) {
    const Heights after = At(left + strip * kWidth);
    const bool isBefore = before.upper <= before.lower;
    const bool isAfter = after.upper <= after.lower;
    if (isBefore && isAfter) {
      cover.Add(before.upper, after.upper, before.lower, after.lower, kWidth);
    } else if (isBefore || isAfter) {  // the line's round end
      const Heights& end = isBefore ? before : after;
      cover.Add(end.upper, end.upper, end.lower, end.lower, kWidth / 2);
    }
    before = after;
  }
}

void ColumnStroke::Cover(int column, ColumnCover& cover) {
  const double left = column;
  std::erase_if(segments_, [&](const Segment& s) { return s.x1 < left - radius_; });
  const std::size_t last = points_.size() < 2 ? points_.size() : points_.size() - 1;
  while (next_ < last && points_[next_].x <= left + 1 + radius_) {
    const std::size_t end = std::min(next_ + 1, points_.size() - 1);
    if (points_[end].x >= left - radius_) Load(next_);
    ++next_;
  }
  hasHeight_ = false;
  if (segments_.empty()) return;
  const bool isStraight = segments_.size() == 1 && segments_[0].x0 <= left - radius_ &&
                          segments_[0].x1 >= left + 1 + radius_;
  if (isStraight) {
    CoverStraight(left, cover);
  } else {
    CoverCorners(left, cover);
  }
  for (const Segment& s : segments_) {
    if (s.x0 > left + 0.5 || s.x1 < left + 0.5) continue;
    hasHeight_ = true;
    height_ = s.y0 + (left + 0.5 - s.x0) * s.slope;
  }
}

}  // namespace kestrel
