// Frequencies in the unit of an axis.
// SPDX-License-Identifier: MIT
#include "analysis/horizontal.h"

#include <cmath>

#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

// Units a Hz; 1 where the axis cannot be drawn.
double Factor(const Horizontal& axis) {
  if (WhyNot(axis)) return 1;
  switch (axis.unit) {
    case HorizontalUnit::Bin:
      return 1 / axis.binWidthHz;
    case HorizontalUnit::Cpm:
      return 60;
    case HorizontalUnit::Order:
      return 60 / *axis.rpm;
    default:
      return 1;
  }
}

}  // namespace

bool IsSpeed(double rpm) {
  return std::isfinite(rpm) && rpm > 0 && rpm <= kFastestRpm;
}

std::optional<Refusal> WhyNot(const Horizontal& axis) {
  if (axis.unit == HorizontalUnit::Order && !(axis.rpm && IsSpeed(*axis.rpm))) {
    return Refusal{.title = "Orders cannot be determined without the shaft's speed",
                   .reason = axis.rpm ? "The speed given is out of range."
                                      : "No speed is kept with this capture.",
                   .cure = "Give the speed in revolutions a minute, or take it from a peak"};
  }
  if (axis.unit == HorizontalUnit::Bin && !(axis.binWidthHz > 0)) {
    return Refusal{.title = "Bins cannot be shown over several sample-rate options",
                   .reason = "They have no common width.",
                   .cure = "Choose Hz"};
  }
  return std::nullopt;
}

double FromHertz(const Horizontal& axis, double hz) {
  return hz * Factor(axis);
}

double ToHertz(const Horizontal& axis, double value) {
  return value / Factor(axis);
}

std::string TitleOf(const Horizontal& axis) {
  switch (axis.unit) {
    case HorizontalUnit::Bin:
      return "Bin";
    case HorizontalUnit::Cpm:
      return "Frequency, CPM";
    case HorizontalUnit::Order:
      return axis.rpm && IsSpeed(*axis.rpm) ? "Order of " + SignificantText(*axis.rpm, 6) + " rpm"
                                            : "Order";
    default:
      return "Frequency, Hz";
  }
}

std::string UnitOf(const Horizontal& axis) {
  switch (axis.unit) {
    case HorizontalUnit::Bin:
      return "bin";
    case HorizontalUnit::Cpm:
      return "CPM";
    case HorizontalUnit::Order:
      return "\u00D7";
    default:
      return "Hz";
  }
}

}  // namespace kestrel::analysis
