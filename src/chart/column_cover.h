// How far each pixel of one column is covered, to the area.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kestrel {

// One column of pixels. Areas between two edges are added, then read as coverages from top to
// bottom.
class ColumnCover {
 public:
  explicit ColumnCover(int height);

  // The area between an upper and a lower edge, each straight from its height at the left end of a
  // strip to that at the right end; the strip takes `width` (0 to 1) of the column. Heights in
  // pixels from the top, upper less than lower.
  void Add(double upperLeft, double upperRight, double lowerLeft, double lowerRight, double width);

  // The area between two parallel edges through the whole column, which nothing is added to.
  void Set(double upperLeft, double upperRight, double thickness);

  // The rows that may be covered: [First(), End()).
  [[nodiscard]] int First() const { return first_; }
  [[nodiscard]] int End() const { return end_; }

  // Their coverages, 0 to kFullCover; the column is empty again afterwards.
  [[nodiscard]] std::span<const std::int16_t> Take();

 private:
  void Reach(double top, double bottom);
  void AddEdge(double from, double to, double weight);
  void AddSteps(double from, double to, double weight);
  void Step(int row, double height);

  int height_;
  int first_;
  int end_ = 0;
  bool isSet_ = false;
  std::vector<std::int32_t> steps_;  // from each row to the next, as SumUp takes them
  std::vector<std::int32_t> bends_;
  std::vector<std::int16_t> cover_;
};

}  // namespace kestrel
