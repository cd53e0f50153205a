// Many records at once: what they reach in every pixel column, and their median.
// SPDX-License-Identifier: MIT
#include "plot/crowd.h"

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

double ValueAt(const std::vector<double>& record, const Reading& reading, const AxisMap& up) {
  if (reading.last >= record.size()) return std::nan("");
  if (reading.part >= 0) {
    const double a = up.ToPixel(record[reading.first]);
    return a + (up.ToPixel(record[reading.last]) - a) * std::min(reading.part, 1.0);
  }
  double largest = std::nan("");
  for (std::size_t i = reading.first; i <= reading.last; ++i) {
    largest = std::fmax(largest, record[i]);
  }
  return up.ToPixel(largest);
}

}  // namespace

CrowdColumns CrowdInColumns(std::span<const double> x, std::span<const std::vector<double>> records,
                            const AxisMap& across, const AxisMap& up, int columns) {
  CrowdColumns crowd;
  if (x.empty() || records.empty()) return crowd;
  const std::vector<double> places = Places(x, across);
  std::vector<double> heights;
  for (int column = 0; column < columns; ++column) {
    if (column + 1 <= places.front() || column > places.back()) continue;
    const Reading reading = ReadingOf(places, column);
    heights.clear();
    for (const auto& record : records) {
      const double height = ValueAt(record, reading, up);
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
