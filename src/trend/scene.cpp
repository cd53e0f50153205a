// How levels become traces, thresholds lines, and alarms a lane.
// SPDX-License-Identifier: MIT
#include "trend/scene.h"

#include <algorithm>
#include <cmath>

#include "analysis/windows.h"
#include "numeric/number_format.h"
#include "record/frequency.h"

namespace kestrel::trend {
namespace {

using archive::LevelPoint;

constexpr double kEdge = 0.02;      // free at either end of the axis
constexpr double kLeastSpan = 120;  // s, of a single record
constexpr double kTemperatureShare = 0.3;
constexpr double kFarLimit = 4;  // times the largest value: beyond, the scale leaves it out

PlotInk InkOf(Axis axis) {
  return static_cast<PlotInk>(Index(axis));
}

std::vector<Axis> AxesOf(const Choice& choice) {
  if (!archive::IsOfAxis(choice.level.of)) return {Axis::X};
  std::vector<Axis> axes;
  for (const Axis axis : kAxes) {
    if (choice.Shows(axis)) axes.push_back(axis);
  }
  return axes;
}

// Points with what is not a number at every gap.
SceneTrace TraceOf(const Data& data, Points points, std::span<const Gap> gaps, Axis axis,
                   AxisKind up) {
  SceneTrace trace{.isSpread = true};
  trace.x.reserve(points.size() + gaps.size());
  trace.y.reserve(points.size() + gaps.size());
  auto gap = gaps.begin();
  for (std::size_t i = 0; i < points.size(); ++i) {
    trace.x.push_back(data.Across(points[i]));
    trace.y.push_back(OnAxis(points[i].value[Index(axis)], up));
    if (gap == gaps.end() || gap->before != i) continue;
    trace.x.push_back((gap->from + gap->to) / 2 - data.start);
    trace.y.push_back(kNoValue);
    ++gap;
  }
  return trace;
}

PlotRange WholeOf(Points points, const Data& data) {
  if (points.empty()) return {0, kLeastSpan};
  double first = data.Across(points.front());
  double last = data.Across(points.back());
  const double edge = std::max((last - first) * kEdge, kLeastSpan / 2);
  return {first - edge, last + edge};
}

// Thresholds not too far from the values are part of the scale.
std::optional<PlotRange> RangeWith(const PlotPane& pane) {
  double least = std::numeric_limits<double>::infinity();
  double largest = -least;
  for (const SceneTrace& trace : pane.traces) {
    for (const double value : trace.y) {
      if (!std::isfinite(value) || (pane.up == AxisKind::Logarithmic && value <= 0)) continue;
      least = std::min(least, value);
      largest = std::max(largest, value);
    }
  }
  if (!(least <= largest)) return std::nullopt;
  const double room = pane.up == AxisKind::Decibel ? 20 * std::log10(kFarLimit) : 0;
  for (const PlotLimit& limit : pane.limits) {
    const double most = pane.up == AxisKind::Decibel ? largest + room : largest * kFarLimit;
    if (limit.value <= most) largest = std::max(largest, limit.value);
  }
  return RangeFor(least, largest, pane.up);
}

void AddLimits(PlotPane& pane, const Choice& choice, const Limits& limits) {
  const auto add = [&](const std::optional<double>& limit, bool isFault) {
    if (!limit || !choice.hasLimits) return;
    const double value = OnAxis(*limit, choice.up);
    if (!std::isfinite(value)) return;
    pane.limits.push_back(
        {value, (isFault ? "fault " : "warning ") + ValueText(*limit, choice.level, choice.up),
         isFault});
  };
  add(limits.warning, false);
  add(limits.fault, true);
}

PlotPane LevelPane(const Data& data, const Choice& choice, const Limits& limits) {
  PlotPane pane{.title = AxisTitleOf(choice.level, choice.up),
                .unit = UnitOf(choice.level, choice.up),
                .up = choice.up};
  const bool isOfAxis = archive::IsOfAxis(choice.level.of);
  if (data.Shown().empty()) return pane;
  for (const Axis axis : AxesOf(choice)) {
    SceneTrace trace = TraceOf(data, data.Shown(), data.gaps, axis, choice.up);
    trace.ink = isOfAxis ? InkOf(axis) : PlotInk::Other;
    trace.name = isOfAxis ? std::string(1, Letter(axis)) : TitleOf(choice.level);
    trace.isFocus = isOfAxis && axis == choice.focus;
    pane.traces.push_back(std::move(trace));
  }
  AddLimits(pane, choice, limits);
  pane.range = RangeWith(pane);
  if (!isOfAxis && pane.range) {
    PlotPane even = pane;
    even.up = AxisKind::Decibel;  // evenly spaced, and not from zero
    pane.range = RangeWith(even);
  }
  return pane;
}

Points TemperaturePoints(const Data& data) {
  if (data.temperature.series.empty()) return {};
  return data.temperature.series.front().points;
}

PlotPane TemperaturePane(const Data& data) {
  const Level level{.of = archive::TrendOf::Temperature};
  PlotPane pane{.title = AxisTitleOf(level, AxisKind::Linear),
                .unit = UnitOf(level, AxisKind::Linear),
                .up = AxisKind::Decibel,
                .share = kTemperatureShare};
  if (TemperaturePoints(data).empty()) return pane;
  SceneTrace trace =
      TraceOf(data, TemperaturePoints(data), data.temperatureGaps, Axis::X, AxisKind::Linear);
  trace.ink = PlotInk::Other;
  pane.traces.push_back(std::move(trace));
  pane.range = RangeWith(pane);
  pane.up = AxisKind::Linear;
  return pane;
}

PlotLane AlarmLane(const Data& data) {
  PlotLane lane{.name = "Alarms"};
  // Faults over warnings.
  for (const bool isFault : {false, true}) {
    for (const AlarmEvent& event : data.events) {
      if (event.isFault != isFault) continue;
      lane.spans.push_back({event.begin - data.start, event.to - data.start,
                            isFault ? BandState::Fault : BandState::Warning});
    }
  }
  return lane;
}

}  // namespace

Limits LimitsOf(const Data& data, const Choice& choice,
                const std::array<analysis::SensorBand, 6>* bands) {
  Limits limits = choice.limits;
  const Points points = data.Shown();
  const bool isOfBand = choice.level.of == archive::TrendOf::BandPeak && choice.level.band > 0;
  if (bands == nullptr || !isOfBand || points.empty()) return limits;
  const auto& series = data.levels.series[data.series];
  if (series.option != choice.level.option || series.kind != RecordKind::Spectrum) return limits;
  const auto& band = bands->at(static_cast<std::size_t>(choice.level.band - 1));
  const double gPerStep =
      LsbWeightOf(static_cast<std::int16_t>(points.back().range), RecordKind::Spectrum);
  if (!limits.warning && band.warning > 0) limits.warning = band.warning * gPerStep;
  if (!limits.fault && band.fault > 0) limits.fault = band.fault * gPerStep;
  return limits;
}

PlotScene SceneOf(const Data& data, const Choice& choice, const Limits& limits,
                  const ClockOffset& clocks) {
  PlotScene scene{.head = "Trend"};
  scene.across = {.title = "Local time", .unit = "s", .whole = WholeOf(data.Shown(), data)};
  scene.across.calendar = PlotCalendar{data.start, clocks};
  scene.panes.push_back(LevelPane(data, choice, limits));
  for (const Gap& gap : data.gaps) {
    scene.gaps.push_back({gap.from - data.start, gap.to - data.start,
                          "no records, " + DurationText(gap.to - gap.from)});
  }
  if (data.Shown().empty()) return scene;
  scene.lanes.push_back(AlarmLane(data));
  if (choice.hasTemperature) scene.panes.push_back(TemperaturePane(data));
  return scene;
}

SceneTrace OverviewOf(const Data& data, const Choice& choice) {
  const Axis axis = archive::IsOfAxis(choice.level.of) ? choice.focus : Axis::X;
  SceneTrace trace = TraceOf(data, data.Shown(), data.gaps, axis, choice.up);
  trace.ink = archive::IsOfAxis(choice.level.of) ? InkOf(axis) : PlotInk::Other;
  return trace;
}

}  // namespace kestrel::trend
