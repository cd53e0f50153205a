// What a trend consists of: gaps, alarm events, and the figures of a span.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "archive/trend.h"
#include "chart/axis_map.h"

namespace kestrel::trend {

using Points = std::span<const archive::LevelPoint>;

// Between two records that are much further from each other than records usually are.
struct Gap {
  std::size_t before = 0;  // index of the last point before it
  double from = 0;         // s since 1970, of that point
  double to = 0;           // of the next one
  bool operator==(const Gap&) const = default;
};
// More than eight times the median distance, and more than ten seconds. Fewer than four points have
// none.
[[nodiscard]] std::vector<Gap> GapsIn(Points points);

// One alarm of one band of one axis, from the first record that had it to the first that had it no
// more.
struct AlarmEvent {
  enum class End {
    Over,
    Open,
    Unknown
  };  // unknown: records are missing after the last that had it
  Axis axis = Axis::X;
  int band = 1;  // 1..6
  bool isFault = false;
  double begin = 0;  // s since 1970
  double to = 0;  // of a record that had it no more; of the last that had it where it is not over
  End end = End::Over;
  std::optional<double> largest = {};  // level of the axis while it lasted
  std::int64_t id = 0;                 // of the record that had the largest, or of the first
};
// The latest first.
[[nodiscard]] std::vector<AlarmEvent> EventsIn(Points points, std::span<const Gap> gaps);
// "Fault 3, Z"
[[nodiscard]] std::string NameOf(const AlarmEvent& event);
// "25.7 h", "at least 3 min", "open".
[[nodiscard]] std::string LastedText(const AlarmEvent& event);
// "41 s", "12 min", "25.7 h", "3.2 d".
[[nodiscard]] std::string DurationText(double seconds);

struct Statistics {
  std::size_t count = 0;
  double least = 0;
  double mean = 0;
  double median = 0;
  double largest = 0;
  double deviation = 0;  // standard, of the sample; 0 of one value
};
// Of the values of one axis between two moments, in s since 1970; none where there are none.
[[nodiscard]] std::optional<Statistics> StatisticsOf(Points points, std::size_t axis,
                                                     const PlotRange& seconds);

}  // namespace kestrel::trend
