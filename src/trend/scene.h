// A trend as a picture: levels of the axes over time, thresholds, gaps, alarms, cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/band_levels.h"
#include "chart/plot_scene.h"
#include "trend/choice.h"
#include "trend/parts.h"

namespace kestrel::trend {

// What was read of an archive, and what is worked out of it once.
struct Data {
  archive::Levels levels = {};
  archive::Levels temperature = {};  // of all records that fit; one series, or none
  std::size_t series = 0;            // the one that is shown
  std::vector<Gap> gaps = {};        // of it
  std::vector<Gap> temperatureGaps = {};
  std::vector<AlarmEvent> events = {};
  double start = 0;  // seconds since 1970 where the picture's axis is 0

  // Of the series that is shown; none where there is none.
  [[nodiscard]] Points Shown() const;
  [[nodiscard]] double Across(const archive::LevelPoint& point) const {
    return SecondsOf(point.time) - start;
  }
  // Shows another series and works out its gaps and events.
  void Choose(std::size_t which);
  // The point nearest to a place along the picture's axis.
  [[nodiscard]] std::optional<std::size_t> Nearest(double x) const;
  [[nodiscard]] std::optional<std::size_t> Find(std::int64_t id) const;
};

// Thresholds that apply to the level: the user's own, else those of the sensor's band for the focus
// axis, scaled by the range of the newest point. `bands` are those of the level's option and the
// focus axis, where they are known.
[[nodiscard]] Limits LimitsOf(const Data& data, const Choice& choice,
                              const std::array<analysis::SensorBand, 6>* bands);

// `clocks` are those of the place where the picture is looked at.
[[nodiscard]] PlotScene SceneOf(const Data& data, const Choice& choice, const Limits& limits,
                                const ClockOffset& clocks);

// "band 3 peak, 12 Oct 2026 to 21 Nov 2026, 5,610 records, option 0, Hanning": what lies within a
// part of the axis.
[[nodiscard]] std::string LineOf(const Data& data, const Choice& choice, const PlotRange& across,
                                 const ClockOffset& clocks);

// The cursor at a point of the series, with its values beside it.
[[nodiscard]] SceneCursor CursorAt(const Data& data, const Choice& choice, const Limits& limits,
                                   std::size_t point, const ClockOffset& clocks);
// What stands beside the pointer.
[[nodiscard]] PlotReadOut ReadOutAt(const Data& data, const Choice& choice, const Limits& limits,
                                    double x, const ClockOffset& clocks);

// The focus axis over the whole archive, for a small picture: x in s along the axis, gaps as what
// is not a number.
[[nodiscard]] SceneTrace OverviewOf(const Data& data, const Choice& choice);

// "0.948 g", "24.8 °C", "−12.3 dB" of a value of the level.
[[nodiscard]] std::string ValueText(double value, const Level& level, AxisKind up);

// What is shown as a table: a head with units, then a line a record: time (ISO 8601, UTC), number,
// the levels of the axes that are shown, whether an alarm was on. Numbers are exact.
[[nodiscard]] std::string CsvOf(const Data& data, const Choice& choice, const PlotRange& across);

}  // namespace kestrel::trend
