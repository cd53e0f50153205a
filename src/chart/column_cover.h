// How far a line that goes from left to right covers each pixel of one column, to the area.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "chart/trace_points.h"

namespace kestrel {

// One column of pixels. Areas between two edges are added, then read as coverages from top to
// bottom.
class ColumnCover {
 public:
  static constexpr int kFull = 128;  // a pixel that is covered whole

  explicit ColumnCover(int height);

  // The area between an upper and a lower edge, each straight from its height at the left end of a
  // strip to that at the right end; the strip takes `width` (0 to 1) of the column. Heights in
  // pixels from the top, upper less than lower.
  void Add(double upperLeft, double upperRight, double lowerLeft, double lowerRight, double width);

  // The rows that may be covered: [First(), End()).
  [[nodiscard]] int First() const { return first_; }
  [[nodiscard]] int End() const { return end_; }

  // Their coverages, 0 to kFull; the column is empty again afterwards.
  [[nodiscard]] std::span<const std::int16_t> Take();

 private:
  void AddEdge(double from, double to, double weight);
  void AddSteps(double from, double to, double weight);
  void Step(int row, double height);

  int height_;
  int first_;
  int end_ = 0;
  std::vector<std::int32_t> steps_;  // from each row to the next, in 1 / kOne
  std::vector<std::int16_t> cover_;
};

// The stroke that a round pen of some width leaves along a line, column by column from the left.
// In every column it is exact where the line is straight, within a hundredth of a pixel at corners.
class ColumnStroke {
 public:
  // The points live longer; x does not decrease.
  ColumnStroke(std::span<const PlotPoint> points, double width);

  // Into the cover of the column [column, column + 1). Columns are asked for from left to right.
  void Cover(int column, ColumnCover& cover);

  // The line's height in the middle of the column last asked for, where it goes through there.
  [[nodiscard]] bool HasHeight() const { return hasHeight_; }
  [[nodiscard]] double Height() const { return height_; }

 private:
  struct Segment {
    double x0, y0, x1, slope;
    double reach;  // along x, from a point on the line to where the pen touches highest or lowest
    double rise;   // of that touching point over the line's own height
  };
  struct Heights {
    double upper, lower;
  };

  void Load(std::size_t index);
  [[nodiscard]] Heights At(double x) const;
  void Widen(const Segment& segment, double x, Heights& heights) const;
  void CoverStraight(double left, ColumnCover& cover) const;
  void CoverCorners(double left, ColumnCover& cover) const;

  std::span<const PlotPoint> points_;
  double radius_;
  std::size_t next_ = 0;           // the first segment not loaded yet
  std::vector<Segment> segments_;  // within reach of the column
  bool hasHeight_ = false;
  double height_ = 0;
};

}  // namespace kestrel
