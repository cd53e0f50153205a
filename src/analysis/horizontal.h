// Horizontal axes: bin, Hz, CPM and orders of the shaft's speed.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "analysis/refusal.h"

namespace kestrel::analysis {

enum class HorizontalUnit { Bin, Hertz, Cpm, Order };

// Data are kept in Hz alone; this is how they are shown.
struct Horizontal {
  HorizontalUnit unit = HorizontalUnit::Hertz;
  double binWidthHz = 0;        // for bins
  std::optional<double> rpm{};  // for orders; the speed belongs to the capture
  bool operator==(const Horizontal&) const = default;
};

inline constexpr double kFastestRpm = 1e7;

// Revolutions a minute that a shaft may turn at: finite, above 0, at most `kFastestRpm`.
[[nodiscard]] bool IsSpeed(double rpm);

// Why this axis cannot be drawn: orders without a speed, bins without a width; nothing where it
// can.
[[nodiscard]] std::optional<Refusal> WhyNot(const Horizontal& axis);

// Of an axis that can be drawn; Hz pass unchanged through any other.
[[nodiscard]] double FromHertz(const Horizontal& axis, double hz);
[[nodiscard]] double ToHertz(const Horizontal& axis, double value);

// "Frequency, Hz", "Frequency, CPM", "Order of 59,214 rpm", "Bin".
[[nodiscard]] std::string TitleOf(const Horizontal& axis);
// "Hz", "CPM", "×", "bin".
[[nodiscard]] std::string UnitOf(const Horizontal& axis);

}  // namespace kestrel::analysis
