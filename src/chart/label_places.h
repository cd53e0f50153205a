// Places for labels at peaks: none covers another, another's peak or what must stay free.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <vector>

namespace kestrel {

// In pixels, y downwards.
struct LabelBox {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] double Right() const { return left + width; }
  [[nodiscard]] double Bottom() const { return top + height; }
  [[nodiscard]] bool Overlaps(const LabelBox& other) const {
    return left < other.Right() && other.left < Right() && top < other.Bottom() &&
           other.top < Bottom();
  }
};

// A label for the point (x, y): of two lines, or of the first alone.
struct LabelWish {
  double x = 0;
  double y = 0;
  double width = 0;  // of both lines
  double firstWidth = 0;
  double lineHeight = 0;
};

struct LabelPlace {
  LabelBox box;
  int lines = 2;
};

// In the order of their importance: above the point, then beside it, first with two lines, then
// with one; who finds no place within the bounds has none. Obstacles stay free.
[[nodiscard]] std::vector<std::optional<LabelPlace>> PlaceLabels(
    std::span<const LabelWish> wishes, const LabelBox& bounds, std::span<const LabelBox> obstacles);

}  // namespace kestrel
