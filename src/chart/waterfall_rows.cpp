// Filling the ring of rows, and finding the row nearest to a time.
// SPDX-License-Identifier: MIT
#include "chart/waterfall_rows.h"

#include <algorithm>
#include <cmath>

namespace kestrel {

WaterfallRows::WaterfallRows(std::size_t values, std::size_t most)
    : values_(values), most_(std::max<std::size_t>(most, 1)) {}

bool WaterfallRows::Add(double time, std::span<const double> values) {
  if (values.size() != values_ || !std::isfinite(time)) return false;
  if (Count() > 0 && time <= Time(Count() - 1)) return false;
  if (times_.size() < most_) {
    times_.push_back(time);
    cells_.resize(cells_.size() + values_);
  } else {
    times_[oldest_] = time;
    oldest_ = (oldest_ + 1) % most_;
  }
  auto cell = cells_.begin() + static_cast<std::ptrdiff_t>(Place(Count() - 1) * values_);
  for (const double value : values) *cell++ = static_cast<float>(value);
  return true;
}

void WaterfallRows::Clear() {
  times_.clear();
  cells_.clear();
  oldest_ = 0;
}

std::span<const float> WaterfallRows::Row(std::size_t index) const {
  return std::span(cells_).subspan(Place(index) * values_, values_);
}

std::size_t WaterfallRows::Nearest(double time) const {
  std::size_t low = 0;
  std::size_t high = Count() - 1;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (Time(middle) < time) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low > 0 && time - Time(low - 1) < Time(low) - time ? low - 1 : low;
}

std::size_t WaterfallRows::Bytes() const {
  return times_.capacity() * sizeof(double) + cells_.capacity() * sizeof(float);
}

}  // namespace kestrel
