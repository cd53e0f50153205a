// A trend in words and numbers: its line, the cursor's values, the exported table.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "numeric/number_format.h"
#include "numeric/number_texts.h"
#include "record/utc_time.h"
#include "trend/scene.h"

namespace kestrel::trend {
namespace {

using archive::LevelPoint;

constexpr double kToSeconds = 3600;  // moments of records are told to the second

std::string Lowered(std::string text) {
  // "RMS" stays.
  if (text.size() > 1 && text[1] >= 'a' && text[1] <= 'z') {
    text[0] = static_cast<char>(text[0] - 'A' + 'a');
  }
  return text;
}

std::string Exact(double value) {
  if (std::isnan(value)) return {};
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), end.ptr};
}

std::string MomentText(const LevelPoint& point, const ClockOffset& clocks) {
  return ClockText(SecondsOf(point.time), clocks, kToSeconds);
}

// How far the focus axis is above or below a threshold.
void AddOver(PlotReadOut& readOut, const Choice& choice, const Limits& limits, double value) {
  if (!choice.hasLimits || !archive::IsOfAxis(choice.level.of) || !(value > 0)) return;
  const bool isFault = limits.fault && (value > *limits.fault || !limits.warning);
  const std::optional<double>& limit = isFault ? limits.fault : limits.warning;
  if (!limit || !(*limit > 0)) return;
  const double over = 20 * std::log10(value / *limit);
  readOut.rows.push_back({.ink = {},
                          .name = std::string(1, Letter(choice.focus)) +
                                  (over >= 0 ? " over " : " below ") +
                                  (isFault ? "fault" : "warning"),
                          .value = analysis::NumberText(std::abs(over), 1) + " dB"});
}

PlotReadOut ReadOutOf(const Choice& choice, const Limits& limits, const LevelPoint& point,
                      const ClockOffset& clocks) {
  PlotReadOut readOut{.title = MomentText(point, clocks)};
  if (!archive::IsOfAxis(choice.level.of)) {
    readOut.rows.push_back({.ink = PlotInk::Other,
                            .name = TitleOf(choice.level),
                            .value = ValueText(point.value[0], choice.level, choice.up)});
    return readOut;
  }
  for (const Axis axis : kAxes) {
    if (!choice.Shows(axis)) continue;
    readOut.rows.push_back({.ink = static_cast<PlotInk>(Index(axis)),
                            .name = std::string(1, Letter(axis)),
                            .value = ValueText(point.value[Index(axis)], choice.level, choice.up)});
  }
  AddOver(readOut, choice, limits, point.value[Index(choice.focus)]);
  return readOut;
}

std::string Spoken(const PlotReadOut& readOut) {
  std::string text = readOut.title;
  for (const auto& row : readOut.rows) text += "; " + row.name + ' ' + row.value;
  return text;
}

}  // namespace

std::string ValueText(double value, const Level& level, AxisKind up) {
  if (std::isnan(value)) return "none";
  const std::string unit = ' ' + UnitOf(level, up);
  if (level.of == archive::TrendOf::Temperature) return analysis::NumberText(value, 1) + unit;
  if (level.of == archive::TrendOf::Supply) return analysis::NumberText(value, 3) + unit;
  if (up == AxisKind::Decibel) return analysis::NumberText(OnAxis(value, up), 1) + unit;
  return analysis::SignificantText(value, 4) + unit;
}

std::string LineOf(const Data& data, const Choice& choice, const PlotRange& across,
                   const ClockOffset& clocks) {
  const Points points = data.Shown();
  if (points.empty()) return {};
  const auto count = std::ranges::count_if(
      points, [&](const LevelPoint& point) { return across.Holds(data.Across(point)); });
  const double from = std::max(across.low + data.start, SecondsOf(points.front().time));
  const double to = std::min(across.high + data.start, SecondsOf(points.back().time));
  const auto text = [&](double moment) {
    return to - from >= 20 * 86'400 ? DayText(moment, clocks)
                                    : ClockText(moment, clocks, std::max(to - from, 60.0));
  };
  std::string line = Lowered(TitleOf(choice.level)) + ", " + text(from);
  if (text(to) != text(from)) line += " to " + text(to);
  line +=
      ", " + GroupedWholeNumber(static_cast<double>(count)) + (count == 1 ? " record" : " records");
  const std::string series = NameOf(data.levels.series[data.series], choice.level);
  return series.empty() ? line : line + ", " + series;
}

SceneCursor CursorAt(const Data& data, const Choice& choice, const Limits& limits,
                     std::size_t index, const ClockOffset& clocks) {
  const LevelPoint& point = data.Shown()[index];
  const bool isOfAxis = archive::IsOfAxis(choice.level.of);
  const double value = point.value[isOfAxis ? Index(choice.focus) : 0];
  SceneCursor cursor;
  cursor.members.push_back({.x = data.Across(point), .y = OnAxis(value, choice.up)});
  cursor.readOut = ReadOutOf(choice, limits, point, clocks);
  cursor.spoken = Spoken(cursor.readOut);
  return cursor;
}

PlotReadOut ReadOutAt(const Data& data, const Choice& choice, const Limits& limits, double x,
                      const ClockOffset& clocks) {
  const auto nearest = data.Nearest(x);
  if (!nearest) return {};
  return ReadOutOf(choice, limits, data.Shown()[*nearest], clocks);
}

std::string CsvOf(const Data& data, const Choice& choice, const PlotRange& across) {
  const bool isOfAxis = archive::IsOfAxis(choice.level.of);
  const std::string unit = " (" + data.levels.unit + ')';
  std::string text = "time (UTC),record";
  for (const Axis axis : kAxes) {
    if (isOfAxis && choice.Shows(axis)) {
      text += ",\"" + TitleOf(choice.level) + ' ' + Letter(axis) + unit + '"';
    }
  }
  if (!isOfAxis) text += ",\"" + TitleOf(choice.level) + unit + '"';
  text += ",alarm\r\n";
  for (const LevelPoint& point : data.Shown()) {
    if (!across.Holds(data.Across(point))) continue;
    text += UtcText(point.time) + ',' + std::to_string(point.id);
    for (const Axis axis : kAxes) {
      if (isOfAxis && choice.Shows(axis)) text += ',' + Exact(point.value[Index(axis)]);
    }
    if (!isOfAxis) text += ',' + Exact(point.value[0]);
    const bool alarm = std::ranges::any_of(point.alarms, [](int word) { return word != 0; });
    text += alarm ? ",yes\r\n" : ",no\r\n";
  }
  return text;
}

}  // namespace kestrel::trend
