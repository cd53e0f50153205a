// Columns gathered from left to right.
// SPDX-License-Identifier: MIT
#include "chart/spread.h"

#include <algorithm>
#include <cmath>

namespace kestrel {
namespace {

constexpr std::size_t kFew = 2;  // points that are drawn as they are

class Gatherer {
 public:
  void Add(const PlotPoint& point) {
    const double column = std::floor(point.x);
    if (!column_.empty() && column != at_) Flush();
    at_ = column;
    column_.push_back(point);
  }
  void Break() {
    Flush();
    if (!line_.empty()) spread_.lines.push_back(std::move(line_));
    line_.clear();
  }
  Spread Take() {
    Break();
    return std::move(spread_);
  }

 private:
  void Flush() {
    if (column_.empty()) return;
    if (column_.size() <= kFew) {
      line_.insert(line_.end(), column_.begin(), column_.end());
    } else {
      AddFull();
    }
    column_.clear();
  }
  void AddFull() {
    std::ranges::sort(column_, {}, &PlotPoint::y);
    const std::size_t middle = column_.size() / 2;
    const double median = column_.size() % 2 == 1 ? column_[middle].y
                                                  : (column_[middle - 1].y + column_[middle].y) / 2;
    line_.push_back({at_ + 0.5, median});
    spread_.area.push_back({at_, column_.front().y, column_.back().y});
  }

  Spread spread_;
  PlotLine line_;
  std::vector<PlotPoint> column_;
  double at_ = 0;
};

}  // namespace

Spread SpreadInColumns(std::span<const double> x, std::span<const double> y, const AxisMap& across,
                       const AxisMap& up) {
  const std::size_t count = std::min(x.size(), y.size());
  const auto places = x.first(count);
  auto from = std::ranges::lower_bound(places, across.Range().low);
  auto to = std::ranges::upper_bound(places, across.Range().high);
  if (from != places.begin()) --from;
  if (to != places.end()) ++to;
  Gatherer gatherer;
  for (auto place = from; place < to; ++place) {
    const double value = y[static_cast<std::size_t>(place - places.begin())];
    if (std::isfinite(value)) {
      gatherer.Add({across.ToPixel(*place), up.ToPixel(value)});
    } else {
      gatherer.Break();
    }
  }
  return gatherer.Take();
}

}  // namespace kestrel
