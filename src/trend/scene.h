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
#include "trend/data.h"

namespace kestrel::trend {

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
