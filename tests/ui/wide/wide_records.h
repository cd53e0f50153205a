// Captures of a machine at each rate option: lines over a floor, the same at every start.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include "record/frequency.h"
#include "record/record.h"

namespace kestrel {

// Of one machine, whatever the option; `factor` makes this capture louder than the others.
inline Record WideRecord(int option, double factor = 1) {
  struct MachineLine {
    double hz;
    std::array<double, 3> g;
  };
  constexpr std::array<MachineLine, 7> kLines{{{12.1, {0.02, 0.01, 0.03}},
                                               {49.3, {0.05, 0.08, 0.03}},
                                               {98.6, {0.05, 0.04, 0.05}},
                                               {986.9, {0.25, 0.62, 0.10}},
                                               {1974, {0.09, 0.11, 0.24}},
                                               {8221, {0.02, 0.03, 0.58}},
                                               {22698, {0.60, 0.05, 0.17}}}};
  constexpr double kNoiseDensity = 2e-5;  // g² / Hz at 1 Hz, falling
  Record record;
  record.settings = SettingsFromWords(option << 14 | 1 << 12 | 2 << 10 | 32, 0);
  record.scaledRange = record.settings.range;
  record.lsbWeight = LsbWeightOf(record.settings.range, RecordKind::Spectrum);
  record.conditions.recordCount = 10 + option;
  record.sensor.simulated = true;
  record.sensor.interface = "simulated sensor";
  record.time = std::chrono::system_clock::from_time_t(1'763'750'000 + 30 * (3 - option));
  const double width = BinWidth(option);
  for (const Axis axis : kAxes) {
    std::minstd_rand random(static_cast<unsigned>(17 * option + static_cast<int>(axis) + 3));
    for (int bin = 0; bin < 256; ++bin) {
      const double hz = std::max(bin, 1) * width;
      const double density = kNoiseDensity / (1 + hz / 4) + 2e-8;
      const double ripple = 0.85 + 0.3 * static_cast<double>(random()) / 2147483647.0;
      double g = std::sqrt(2 * density * 1.5 * width) * ripple;
      for (const MachineLine& line : kLines) {
        const double away = bin - line.hz / width;
        if (std::abs(away) >= 2) continue;
        const double lobe =
            std::abs(away) < 1e-9
                ? 1
                : std::sin(std::numbers::pi * away) / (std::numbers::pi * away * (1 - away * away));
        const double near = std::abs(std::abs(away) - 1) < 1e-9 ? 0.5 : std::abs(lobe);
        g = std::hypot(g, line.g[Index(axis)] * near);
      }
      const double word = std::round(std::min(65535.0, factor * g / record.lsbWeight));
      record.Of(axis).raw(bin) = word;
      record.Of(axis).data(bin) = word * record.lsbWeight;
    }
  }
  return record;
}

}  // namespace kestrel
