// Points found, and more of them merged in.
// SPDX-License-Identifier: MIT
#include "trend/data.h"

#include <algorithm>
#include <set>

namespace kestrel::trend {
namespace {

using archive::LevelPoint;
using archive::Levels;
using archive::LevelSeries;

bool IsSame(const LevelSeries& a, const LevelSeries& b) {
  return a.kind == b.kind && a.option == b.option && a.window == b.window;
}

void Merge(Levels& all, Levels more) {
  std::set<std::int64_t> known;
  for (const LevelSeries& series : more.series) {
    for (const LevelPoint& point : series.points) known.insert(point.id);
  }
  known.insert(more.refused.begin(), more.refused.end());
  for (LevelSeries& series : all.series) {
    std::erase_if(series.points, [&](const LevelPoint& point) { return known.contains(point.id); });
  }
  std::erase_if(all.refused, [&](std::int64_t id) { return known.contains(id); });
  for (LevelSeries& series : more.series) {
    auto into =
        std::ranges::find_if(all.series, [&](const auto& other) { return IsSame(other, series); });
    if (into == all.series.end()) {
      all.series.push_back(std::move(series));
      continue;
    }
    into->points.insert(into->points.end(), series.points.begin(), series.points.end());
    std::ranges::stable_sort(into->points, {}, &LevelPoint::time);
  }
  if (all.refused.empty()) all.refusal = more.refusal;
  all.refused.insert(all.refused.end(), more.refused.begin(), more.refused.end());
  if (all.unit.empty()) all.unit = more.unit;
}

}  // namespace

void Data::Add(Levels more, Levels moreTemperature) {
  Merge(levels, std::move(more));
  Merge(temperature, std::move(moreTemperature));
  Choose(series);
}

std::int64_t Data::Count() const {
  auto count = static_cast<std::int64_t>(levels.refused.size());
  for (const LevelSeries& each : levels.series) {
    count += static_cast<std::int64_t>(each.points.size());
  }
  return count;
}

std::chrono::system_clock::time_point Data::Newest() const {
  std::chrono::system_clock::time_point newest{};
  for (const LevelSeries& each : levels.series) {
    if (!each.points.empty()) newest = std::max(newest, each.points.back().time);
  }
  return newest;
}

Points Data::Shown() const {
  return series < levels.series.size() ? Points(levels.series[series].points) : Points();
}

void Data::Choose(std::size_t which) {
  series = which;
  gaps = GapsIn(Shown());
  events = EventsIn(Shown(), gaps);
  temperatureGaps =
      temperature.series.empty() ? std::vector<Gap>() : GapsIn(temperature.series.front().points);
}

std::optional<std::size_t> Data::Nearest(double x) const {
  const Points points = Shown();
  if (points.empty()) return std::nullopt;
  const auto after = std::ranges::lower_bound(
      points, x, {}, [this](const LevelPoint& point) { return Across(point); });
  const auto index = static_cast<std::size_t>(after - points.begin());
  if (index == 0) return 0;
  if (index == points.size()) return index - 1;
  return x - Across(points[index - 1]) < Across(points[index]) - x ? index - 1 : index;
}

std::optional<std::size_t> Data::Find(std::int64_t id) const {
  const Points points = Shown();
  const auto found = std::ranges::find(points, id, &LevelPoint::id);
  if (found == points.end()) return std::nullopt;
  return static_cast<std::size_t>(found - points.begin());
}

}  // namespace kestrel::trend
