// A line that goes from left to right as the area that its stroke covers, column by column.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "chart/column_cover.h"
#include "chart/trace_points.h"

namespace kestrel {

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
    double half;   // of the stroke's height
  };
  struct Heights {
    double upper, lower;
  };

  [[nodiscard]] static double UpperAt(const Segment& line, double x);
  static void CoverBetween(const Heights& before, const Heights& after, double width,
                           ColumnCover& cover);
  void Load(std::size_t index);
  [[nodiscard]] const Segment* StraightOver(double from, double to) const;
  [[nodiscard]] Heights At(double x) const;
  void Widen(const Segment& segment, double x, Heights& heights) const;
  void CoverCorners(double column, ColumnCover& cover) const;
  void KeepHeight(const Segment& segment, double x);

  std::span<const PlotPoint> points_;
  double radius_;
  std::size_t next_ = 0;           // the first segment not loaded yet
  std::vector<Segment> segments_;  // within reach of the column
  bool hasHeight_ = false;
  double height_ = 0;
};

}  // namespace kestrel
