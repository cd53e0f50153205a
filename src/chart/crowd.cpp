// Least, largest and median of many records, column by column.
// SPDX-License-Identifier: MIT
#include "chart/crowd.h"

#include <algorithm>
#include <cmath>

namespace kestrel {
namespace {

// Where a column reads the records: between two points, or at all points from first to last.
struct Reading {
  std::size_t first = 0;
  std::size_t last = 0;
  double part = -1;  // of the way from first to last; below 0 for all of them
};

std::vector<double> Places(std::span<const double> x, const AxisMap& across) {
  std::vector<double> places;
  places.reserve(x.size());
  for (const double value : x) places.push_back(across.ToPixel(value));
  return places;
}

Reading ReadingOf(const std::vector<double>& places, int column) {
  const auto from = std::lower_bound(places.begin(), places.end(), column);
  const auto to = std::lower_bound(from, places.end(), column + 1);
  const auto first = static_cast<std::size_t>(from - places.begin());
  const auto end = static_cast<std::size_t>(to - places.begin());
  if (end > first) return {first, end - 1, -1};
  const double gap = places[first] - places[first - 1];
  return {first - 1, first, (column + 0.5 - places[first - 1]) / gap};
}

// Of every record at every x, in pixels.
std::vector<std::vector<double>> HeightsOf(std::span<const std::vector<double>> records,
                                           std::size_t count, const AxisMap& up) {
  std::vector<std::vector<double>> heights;
  for (const auto& record : records) {
    heights.emplace_back(count, std::nan(""));
    for (std::size_t i = 0; i < std::min(count, record.size()); ++i) {
      heights.back()[i] = up.ToPixel(record[i]);
    }
  }
  return heights;
}

// The largest value is the highest pixel.
double HeightAt(const std::vector<double>& heights, const Reading& reading) {
  const double first = heights[reading.first];
  if (reading.part >= 0) {
    return first + (heights[reading.last] - first) * std::min(reading.part, 1.0);
  }
  double highest = first;
  for (std::size_t i = reading.first + 1; i <= reading.last; ++i) {
    highest = std::fmin(highest, heights[i]);
  }
  return highest;
}

}  // namespace

CrowdColumns CrowdInColumns(std::span<const double> x, std::span<const std::vector<double>> records,
                            const AxisMap& across, const AxisMap& up, int columns) {
  CrowdColumns crowd;
  if (x.empty() || records.empty()) return crowd;
  const std::vector<double> places = Places(x, across);
  const auto all = HeightsOf(records, x.size(), up);
  std::vector<double> heights;
  for (int column = 0; column < columns; ++column) {
    if (column + 1 <= places.front() || column > places.back()) continue;
    const Reading reading = ReadingOf(places, column);
    heights.clear();
    for (const auto& record : all) {
      const double height = HeightAt(record, reading);
      if (std::isfinite(height)) heights.push_back(height);
    }
    if (heights.empty()) continue;
    const auto [upper, lower] = std::minmax_element(heights.begin(), heights.end());
    crowd.area.push_back({static_cast<double>(column), *upper, *lower});
    const auto middle = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2);
    std::nth_element(heights.begin(), middle, heights.end());
    crowd.median.push_back({column + 0.5, *middle});
  }
  return crowd;
}

}  // namespace kestrel
