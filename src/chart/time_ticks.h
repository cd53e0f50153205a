// Ticks of an axis of time: where days, hours and months begin on the clocks of a place.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "chart/axis_map.h"
#include "chart/axis_ticks.h"

namespace kestrel {

// How far the clocks of a place are ahead of UTC at a moment, in seconds; the moment in seconds
// since 1970. Other in summer than in winter.
using ClockOffset = std::function<std::int64_t(std::int64_t utc)>;

// What an axis in seconds counts from, and by whose clocks its ticks are.
struct PlotCalendar {
  double start = 0;  // seconds since 1970 where the axis is 0
  ClockOffset offset = [](std::int64_t) { return std::int64_t{0}; };
};

// At least `apart` pixels from each other on an axis of so many pixels: years, months, days, hours,
// minutes or seconds, whole ones of the clocks. "2026", "Mar", "12 Oct", "18:30", "18:30:15"; where
// a new day begins among hours its date, where a new year begins among months or days the year.
// Hours that the clocks skip have no tick, hours that they show twice have one.
[[nodiscard]] std::vector<AxisTick> TimeTicks(const PlotRange& range, const PlotCalendar& calendar,
                                              double pixels, double apart);

// What the clocks show at a moment, so far as `span` seconds tell it apart: "12 Oct 2026",
// "12 Oct 2026, 18:30", "12 Oct 2026, 18:30:15", "12 Oct 2026, 18:30:15.250".
[[nodiscard]] std::string ClockText(double utc, const ClockOffset& offset, double span);

// The day of it: "12 Oct 2026".
[[nodiscard]] std::string DayText(double utc, const ClockOffset& offset);

}  // namespace kestrel
