// Texts of settings, and which are asked for.
// SPDX-License-Identifier: MIT
#include "baseline/settings.h"

#include <algorithm>
#include <numbers>

#include "analysis/windows.h"
#include "numeric/number_format.h"

namespace kestrel::baseline {

Settings SettingsOf(const RecordSettings& settings) {
  return {.option = settings.option,
          .window = settings.window,
          .range = settings.range,
          .averages = std::max<int>(settings.averages, 1)};
}

bool Wanted::Allows(const Settings& settings) const {
  return option.value_or(settings.option) == settings.option &&
         window.value_or(settings.window) == settings.window &&
         range.value_or(settings.range) == settings.range &&
         averages.value_or(settings.averages) == settings.averages;
}

Settings Wanted::Over(Settings settings) const {
  return {.option = option.value_or(settings.option),
          .window = window.value_or(settings.window),
          .range = range.value_or(settings.range),
          .averages = averages.value_or(settings.averages)};
}

std::string RangeText(int range) {
  return "0 to " + GeneralNumber(FullScaleOf(static_cast<std::int16_t>(range))) + " g";
}

std::string WindowText(int window) {
  return std::string(analysis::WindowOfCode(window).name);
}

std::string AveragesText(int averages) {
  return std::to_string(averages) + (averages == 1 ? " average" : " averages");
}

std::string TextOf(const Settings& settings) {
  return "option " + std::to_string(settings.option) + ", " + WindowText(settings.window) + ", " +
         RangeText(settings.range) + ", " + AveragesText(settings.averages);
}

double StepG(const Settings& settings, analysis::MagnitudeMeaning meaning) {
  const double step = LsbWeightOf(static_cast<std::int16_t>(settings.range), RecordKind::Spectrum);
  return meaning == analysis::MagnitudeMeaning::Rms ? step * std::numbers::sqrt2 : step;
}

}  // namespace kestrel::baseline
