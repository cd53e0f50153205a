// The curve of an axis as it is shown, for cursors and read-outs, and how its values are written.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "analysis/cursors.h"
#include "study/study.h"

namespace kestrel::study {

struct Track {
  std::vector<double> values = {};  // what cannot be told is not a number
  std::vector<double> floor = {};   // smallest value that can be told; empty where all can
  double step = 0;                  // Hz or s
  std::size_t firstVibration = 0;   // points below hold offset
  std::size_t firstValid = 0;       // points below hold nothing of the quantity
  bool decibel = false;
  bool power = false;  // a density: its decibels are 10 lg of a ratio
  bool isTime = false;
  std::string unit = {};       // "g peak"
  std::string shortUnit = {};  // "g"

  [[nodiscard]] bool Empty() const { return step <= 0 || firstValid >= values.size(); }
  // Of values that outlive it; a track that is not empty.
  [[nodiscard]] analysis::TraceView View() const;
  [[nodiscard]] double First() const { return step * static_cast<double>(firstValid); }
  [[nodiscard]] double Last() const { return step * static_cast<double>(values.size() - 1); }
  // None outside, and where it cannot be told.
  [[nodiscard]] std::optional<double> ToldAt(double x) const;
};

// Empty where there is nothing to read: no record, a refused quantity, no reference for a
// difference.
[[nodiscard]] Track TrackOf(const Study& study, Axis axis);
// Of a spectrum kept beside the one shown, in the chosen quantity.
[[nodiscard]] Track TrackOf(const Study& study, const Measured& measured, Axis axis);
// Trace over reference in dB; where either is below one step there is no value.
[[nodiscard]] Track DifferenceOf(const Study& study, Axis axis);

// "0.454", "−23.4" of a level; without unit.
[[nodiscard]] std::string NumberIn(const Track& track, double value);
// "0.454 g", "below 0.012 g", "offset, no vibration", "too low to integrate".
[[nodiscard]] std::string TextAt(const Track& track, double x);
// The same without the unit, for a table that names it in its head.
[[nodiscard]] std::string CellAt(const Track& track, double x);

// An amplitude in the chosen quantity: "0.454", "−23.4" of a level.
[[nodiscard]] std::string AmplitudeText(const analysis::QuantityChoice& choice, double value);

// "22,698.2 Hz", "12.35 ×", "5.120 ms": as many digits as tell a tenth of a bin, or samples, apart.
[[nodiscard]] std::string PlaceText(const Study& study, double x);
[[nodiscard]] std::string TimePlaceText(double seconds, double stepS);
[[nodiscard]] std::string FrequencyPlaceText(const analysis::Horizontal& across, double hz);

}  // namespace kestrel::study
