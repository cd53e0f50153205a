// Levels and series in words.
// SPDX-License-Identifier: MIT
#include "trend/choice.h"

#include <cmath>

#include "analysis/windows.h"
#include "numeric/number_format.h"
#include "numeric/number_texts.h"

namespace kestrel::trend {
namespace {

using archive::TrendOf;

std::string Hertz(double hz) {
  return analysis::NumberText(hz, hz == std::floor(hz) ? 0 : 1);
}

bool IsPeak(TrendOf of) {
  return of == TrendOf::Peak || of == TrendOf::BandPeak || of == TrendOf::PeakNear;
}

std::string CountText(std::size_t count) {
  return GroupedWholeNumber(static_cast<double>(count));
}

}  // namespace

archive::TrendChoice AskedOf(const Level& level) {
  return {.of = level.of,
          .fromHz = level.fromHz,
          .toHz = level.toHz,
          .nearHz = level.nearHz,
          .withinHz = level.withinHz};
}

std::string TitleOf(const Level& level) {
  const std::string what = IsPeak(level.of) ? "peak" : "RMS";
  switch (level.of) {
    case TrendOf::Rms:
      return "RMS";
    case TrendOf::Peak:
      return "Peak";
    case TrendOf::Temperature:
      return "Temperature";
    case TrendOf::Supply:
      return "Supply";
    case TrendOf::PeakNear:
      return level.name.empty()
                 ? "Peak near " + Hertz(level.nearHz) + " Hz ±" + Hertz(level.withinHz) + " Hz"
                 : level.name + " peak";
    default:
      if (!level.name.empty()) return level.name + ' ' + what;
      return (IsPeak(level.of) ? "Peak, " : "RMS, ") + Hertz(level.fromHz) + " to " +
             Hertz(level.toHz) + " Hz";
  }
}

std::string UnitOf(const Level& level, AxisKind up) {
  if (!archive::IsOfAxis(level.of)) return archive::UnitOf(level.of);
  return up == AxisKind::Decibel ? "dB" : "g";
}

std::string AxisTitleOf(const Level& level, AxisKind up) {
  const std::string unit = archive::UnitOf(level.of);
  if (!archive::IsOfAxis(level.of)) return TitleOf(level) + ", " + unit;
  if (up == AxisKind::Decibel) return TitleOf(level) + ", dB re 1 " + unit;
  return TitleOf(level) + ", " + unit;
}

double OnAxis(double value, AxisKind up) {
  if (up != AxisKind::Decibel) return value;
  return value > 0 ? 20 * std::log10(value) : std::nan("");
}

std::string NameOf(const archive::LevelSeries& series, const Level& level) {
  if (!archive::IsOfAxis(level.of)) return {};
  const std::string option = "option " + std::to_string(series.option);
  if (series.kind == RecordKind::Time) return "time records, " + option;
  return option + ", " + std::string(analysis::WindowOfCode(series.window).name);
}

std::string Apart(const archive::Levels& levels, std::size_t chosen, const Level& level) {
  if (levels.series.size() < 2 || chosen >= levels.series.size()) return {};
  const archive::LevelSeries& shown = levels.series[chosen];
  std::string text = CountText(shown.points.size()) + " of " + NameOf(shown, level);
  std::string others;
  std::size_t count = 0;
  std::size_t last = 0;
  for (std::size_t i = 0; i < levels.series.size(); ++i) {
    if (i == chosen) continue;
    last = levels.series[i].points.size();
    if (!others.empty()) others += "; ";
    others += CountText(last) + " of " + NameOf(levels.series[i], level);
    ++count;
  }
  const bool isOne = count == 1 && last == 1;
  return text + "; " + others +
         (count > 1 ? " are trends of their own"
          : isOne   ? " is a trend of its own"
                    : " are a trend of their own");
}

std::string WhyNone(const archive::Levels& levels, const Level& level, bool isFiltered) {
  if (!levels.series.empty()) return {};
  if (!levels.refused.empty()) {
    return "No record carries \"" + TitleOf(level) + "\": " + levels.refusal +
           ". Choose another level.";
  }
  if (isFiltered) return "No record fits the filters. \"Show all\" takes them away.";
  return "The level of every kept record will stand here over time. Each capture is kept (F5).";
}

}  // namespace kestrel::trend
