// Bands between values and the table.
// SPDX-License-Identifier: MIT
#include "baseline/bands.h"

#include <algorithm>
#include <cmath>

#include "analysis/windows.h"

namespace kestrel::baseline {

bool Band::IsUsed() const {
  return *this != Band{} && analysis::HoldsBins(Of(Axis::X), analysis::kSpectrumBins);
}

Bands BandsOf(const BandTable& table, int option) {
  Bands bands;
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    bands[i].lowBin = table(kFLowField, number, option);
    bands[i].highBin = table(kFHighField, number, option);
    for (const Axis axis : kAxes) {
      bands[i].warning[Index(axis)] = table(Alarm1Field(axis), number, option);
      bands[i].fault[Index(axis)] = table(Alarm2Field(axis), number, option);
    }
  }
  return bands;
}

BandTable WithBands(BandTable table, int option, const Bands& bands) {
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    table(kFLowField, number, option) = bands[i].lowBin;
    table(kFHighField, number, option) = bands[i].highBin;
    for (const Axis axis : kAxes) {
      table(Alarm1Field(axis), number, option) = bands[i].warning[Index(axis)];
      table(Alarm2Field(axis), number, option) = bands[i].fault[Index(axis)];
    }
  }
  return table;
}

Bands UsualBands(int window) {
  const auto first =
      static_cast<double>(analysis::FirstVibrationBin(analysis::WindowOfCode(window)));
  const double step = std::pow(double{analysis::kSpectrumBins} / first, 1.0 / kAlarmBands);
  Bands bands;
  int low = static_cast<int>(first);
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const int end =
        static_cast<int>(std::lround(first * std::pow(step, static_cast<double>(i + 1))));
    bands[i].lowBin = low;
    bands[i].highBin = std::max(end - 1, low);
    low = bands[i].highBin + 1;
  }
  return bands;
}

}  // namespace kestrel::baseline
