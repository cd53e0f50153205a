// What the user of a trend has chosen to see, as values.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>

#include "archive/trend.h"
#include "chart/axis_map.h"
#include "record/axis.h"

namespace kestrel::trend {

// The level that is followed.
struct Level {
  archive::TrendOf of = archive::TrendOf::Rms;
  double fromHz = 0;  // of a band
  double toHz = 0;
  double nearHz = 0;  // of a peak near a frequency
  double withinHz = 0;
  std::string name = {};  // "Band 3", "Outer race"; empty where the frequencies say it
  int band = 0;           // the sensor's, 1..6; 0 for none of them
  int option = 0;         // sample-rate option that this band is of
  bool operator==(const Level&) const = default;
};

// Typed by the user, in the unit of the level: g, °C, V.
struct Limits {
  std::optional<double> warning = {};
  std::optional<double> fault = {};
  bool operator==(const Limits&) const = default;
};

struct Choice {
  Level level = {};
  std::array<bool, 3> shown = {true, true, true};
  Axis focus = Axis::Z;
  AxisKind up = AxisKind::Linear;
  bool hasLimits = true;        // drawn
  bool hasTemperature = false;  // in a plot of its own, below
  Limits limits = {};           // in place of the sensor's
  [[nodiscard]] bool Shows(Axis axis) const { return shown[Index(axis)]; }
  bool operator==(const Choice&) const = default;
};

// As the archive is asked for it.
[[nodiscard]] archive::TrendChoice AskedOf(const Level& level);

// "RMS", "Band 3 peak", "RMS, 100 to 2,000 Hz", "Peak near 1,234 Hz ±5 Hz", "Temperature".
[[nodiscard]] std::string TitleOf(const Level& level);
// "g", "°C", "V"; what a single value is told in.
[[nodiscard]] std::string UnitOf(const Level& level, AxisKind up);
// Of the vertical axis: "Band 3 peak, g", "RMS, dB re 1 g RMS".
[[nodiscard]] std::string AxisTitleOf(const Level& level, AxisKind up);
// A value of the level on the axis: itself, or in dB re 1 g.
[[nodiscard]] double OnAxis(double value, AxisKind up);

// "option 0, Hanning", "time records, option 1"; empty for conditions, which depend on neither.
[[nodiscard]] std::string NameOf(const archive::LevelSeries& series, const Level& level);
// "5,610 records of option 0, Hanning; 12 of option 1, Hanning are a trend of their own". Empty
// where there is one series.
[[nodiscard]] std::string Apart(const archive::Levels& levels, std::size_t series,
                                const Level& level);
// Why there is nothing to be seen, with the cure; empty where there is. `isFiltered`: records were
// asked for by a machine, a point or a text.
[[nodiscard]] std::string WhyNone(const archive::Levels& levels, const Level& level,
                                  bool isFiltered);

}  // namespace kestrel::trend
