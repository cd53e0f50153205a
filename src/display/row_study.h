// A row of the waterfall as a study of its own, and the map of colours that it belongs to.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "analysis/quantity.h"
#include "chart/axis_map.h"
#include "chart/plot_scene.h"
#include "study/study.h"

namespace kestrel::study {

using TimePoint = std::chrono::system_clock::time_point;

// The newest row of that very time; none where none is kept (any more).
[[nodiscard]] std::optional<std::size_t> RowAt(const analysis::Waterfall& rows, TimePoint time);

// The row alone, in the whole study's choice: its focus axis, cursor, alarm bands, markers. The
// row has to be there.
[[nodiscard]] Study StudyOfRow(const Study& whole, std::size_t row);
// What such a study is to show of that choice.
[[nodiscard]] StudyChoice ChoiceForRow(const StudyChoice& whole);

// The values of a row in the chosen quantity of the focus axis.
[[nodiscard]] analysis::Told<analysis::QuantityCurve> CurveOfRow(const Study& whole,
                                                                 std::size_t row);

// Whether rows of the same option have the same values and the same axis in both maps.
[[nodiscard]] bool MapsAlike(const StudyChoice& a, const StudyChoice& b);

// How the colours are spaced.
[[nodiscard]] AxisKind ColourKind(const StudyChoice& choice);
// Colours from `largest` down to a thousandth of it, 60 dB below it, or 0.
[[nodiscard]] PlotRange ColourRange(double largest, AxisKind kind);

// The alarm thresholds at a place along the axis, as the scene shows them; kNoValue for none.
struct ThresholdsAt {
  double warning = kNoValue;
  double fault = kNoValue;
};
[[nodiscard]] ThresholdsAt ThresholdsOf(const PlotScene& scene, double hz);

// "No records 18:09:10 to 18:13:30: sensor unplugged".
[[nodiscard]] std::string GapText(const Study& study, TimePoint from, TimePoint to,
                                  const std::string& reason);

}  // namespace kestrel::study
