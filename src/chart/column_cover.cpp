// The area below an evenly sloping edge in each row of a pixel column, in closed form.
// SPDX-License-Identifier: MIT
#include "chart/column_cover.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "chart/pixel_runs.h"

namespace kestrel {
namespace {

constexpr double kOne = 1 << kCoverOneBits;

// Of so many rows, two below the last, as many as are summed up together.
std::size_t Padded(int rows) {
  return (static_cast<std::size_t>(rows) + 2 + kRowsAtOnce - 1) / kRowsAtOnce * kRowsAtOnce;
}

}  // namespace

ColumnCover::ColumnCover(int height)
    : height_(height),
      first_(height),
      steps_(Padded(height) + kRowsAtOnce),
      bends_(steps_.size()),
      cover_(steps_.size()) {}

void ColumnCover::Add(double upperLeft, double upperRight, double lowerLeft, double lowerRight,
                      double width) {
  const double top = std::min(upperLeft, upperRight);
  const double bottom = std::max(lowerLeft, lowerRight);
  if (!(bottom > 0) || !(top < height_)) return;
  Reach(top, bottom);
  AddEdge(upperLeft, upperRight, width);
  AddEdge(lowerLeft, lowerRight, -width);
}

void ColumnCover::Set(double upperLeft, double upperRight, double thickness) {
  const double top = std::min(upperLeft, upperRight);
  const double rise = std::abs(upperRight - upperLeft);
  if (rise < kSteepRise || thickness > kMostThickness * rise) {
    Add(upperLeft, upperRight, upperLeft + thickness, upperRight + thickness, 1);
    return;
  }
  const double bottom = top + rise + thickness;
  if (!(bottom > 0) || !(top < height_)) return;
  Reach(top, bottom);
  CoverSteep(std::span(cover_).first(Padded(end_ - first_)), top - first_, thickness, rise);
  isSet_ = true;
}

void ColumnCover::Reach(double top, double bottom) {
  first_ = std::min(first_, std::max(0, static_cast<int>(top)));
  end_ = std::max(end_, std::min(height_, static_cast<int>(bottom) + 1));
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
    bends_[static_cast<std::size_t>(first + 2)] += step;
    bends_[static_cast<std::size_t>(last)] -= step;
    Step(last, inLast - each * (last - 0.5 - from));
  }
  Step(last + 1, weight - inLast);
}

void ColumnCover::Step(int row, double height) {
  steps_[static_cast<std::size_t>(row)] += static_cast<std::int32_t>(height * kOne);
}

std::span<const std::int16_t> ColumnCover::Take() {
  if (end_ <= first_) return {};
  const auto count = static_cast<std::size_t>(end_ - first_);
  if (!isSet_) {
    const auto first = static_cast<std::size_t>(first_);
    const std::size_t rows = Padded(end_ - first_);
    SumUp(std::span(steps_).subspan(first, rows), std::span(bends_).subspan(first, rows),
          std::span(cover_).first(rows));
  }
  first_ = height_;
  end_ = 0;
  isSet_ = false;
  return std::span(cover_).first(count);
}

}  // namespace kestrel
