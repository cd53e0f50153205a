// Trying the places around a peak until one is free.
// SPDX-License-Identifier: MIT
#include "chart/label_places.h"

#include <algorithm>
#include <array>

namespace kestrel {
namespace {

constexpr double kAbove = 6;  // pixels between a point and its label
constexpr double kBeside = 8;
constexpr double kTip = 3;    // of a peak, that stays free
constexpr double kApart = 4;  // between two labels

LabelBox Tip(const LabelWish& wish) {
  return {wish.x - kTip, wish.y - kTip, 2 * kTip, 2 * kTip};
}

LabelBox Grown(const LabelBox& box, double by) {
  return {box.left - by, box.top, box.width + 2 * by, box.height};
}

bool IsInside(const LabelBox& box, const LabelBox& bounds) {
  return box.left >= bounds.left && box.Right() <= bounds.Right() && box.top >= bounds.top &&
         box.Bottom() <= bounds.Bottom();
}

std::array<LabelBox, 5> Candidates(const LabelWish& wish, int lines) {
  const double width = lines == 2 ? wish.width : wish.firstWidth;
  const double height = lines * wish.lineHeight;
  const double above = wish.y - kAbove - height;
  const double level = wish.y - height / 2;
  return {{{wish.x - width / 2, above, width, height},
           {wish.x - width + kBeside, above, width, height},
           {wish.x - kBeside, above, width, height},
           {wish.x + kBeside, level, width, height},
           {wish.x - kBeside - width, level, width, height}}};
}

}  // namespace

std::vector<std::optional<LabelPlace>> PlaceLabels(std::span<const LabelWish> wishes,
                                                   const LabelBox& bounds,
                                                   std::span<const LabelBox> obstacles) {
  std::vector<LabelBox> taken(obstacles.begin(), obstacles.end());
  const auto isFree = [&](const LabelBox& box) {
    return IsInside(box, bounds) &&
           std::none_of(taken.begin(), taken.end(),
                        [&](const LabelBox& other) { return box.Overlaps(other); }) &&
           std::none_of(wishes.begin(), wishes.end(),
                        [&](const LabelWish& other) { return box.Overlaps(Tip(other)); });
  };
  const auto placeFor = [&](const LabelWish& wish) -> std::optional<LabelPlace> {
    for (const int lines : {2, 1}) {
      for (const LabelBox& box : Candidates(wish, lines)) {
        if (isFree(box)) return LabelPlace{box, lines};
      }
    }
    return std::nullopt;
  };
  std::vector<std::optional<LabelPlace>> places;
  for (const LabelWish& wish : wishes) {
    places.push_back(placeFor(wish));
    if (places.back()) taken.push_back(Grown(places.back()->box, kApart));
  }
  return places;
}

}  // namespace kestrel
