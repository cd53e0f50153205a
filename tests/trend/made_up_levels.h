// Levels of an archive as it could have told them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <initializer_list>

#include "trend/scene.h"

namespace kestrel::trend {

inline constexpr double kBegin = 1'763'750'000;  // 21 November 2025, 18:33:20 UTC

inline std::chrono::system_clock::time_point MomentAt(double second) {
  return std::chrono::system_clock::time_point(
      std::chrono::microseconds(std::llround((kBegin + second) * 1e6)));
}

// Seconds after the begin, with the level of Z and the sensor's word of Z.
struct MadePoint {
  double second = 0;
  double z = 0;
  int word = 0;
};

inline archive::LevelSeries SeriesOf(std::initializer_list<MadePoint> points) {
  archive::LevelSeries series{.option = 0, .window = 1};
  std::int64_t id = 1;
  for (const MadePoint& made : points) {
    archive::LevelPoint point{.id = id++, .time = MomentAt(made.second), .range = 2};
    point.value = {made.z / 4, made.z / 2, made.z};
    point.alarms[2] = made.word;
    series.points.push_back(point);
  }
  return series;
}

inline Data DataOf(std::initializer_list<archive::LevelSeries> series) {
  Data data;
  data.levels.series = series;
  data.levels.unit = "g RMS";
  data.start = kBegin;
  data.Choose(0);
  return data;
}

inline const ClockOffset kUtc = [](std::int64_t) { return std::int64_t{0}; };

}  // namespace kestrel::trend
