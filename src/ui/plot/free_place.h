// Whether there is room for a label.
// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <algorithm>
#include <vector>

namespace kestrel {

// Whether a place touches none that is taken.
[[nodiscard]] inline bool IsFree(const QRect& place, const std::vector<QRect>& taken) {
  return std::none_of(taken.begin(), taken.end(),
                      [&](const QRect& other) { return other.intersects(place); });
}

}  // namespace kestrel
