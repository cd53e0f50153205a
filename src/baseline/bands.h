// Six bands of one sample-rate option as values, from the table of all bands and back into it.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

#include "alarms/band_table.h"
#include "analysis/band_levels.h"
#include "record/axis.h"

namespace kestrel::baseline {

// A band with its thresholds as the sensor has them: bins 0 to 255, both ends included; a word that
// is larger than a threshold raises the alarm; threshold 0 is none.
struct Band {
  int lowBin = 0;
  int highBin = 0;
  std::array<int, 3> warning{};  // alarm 1 of X, Y, Z
  std::array<int, 3> fault{};    // alarm 2
  // A band of all zeros stands for none; one whose bins are in the wrong order covers nothing.
  [[nodiscard]] bool IsUsed() const;
  [[nodiscard]] analysis::SensorBand Of(Axis axis) const {
    return {lowBin, highBin, warning[Index(axis)], fault[Index(axis)]};
  }
  bool operator==(const Band&) const = default;
};

using Bands = std::array<Band, std::size_t{kAlarmBands}>;

// Those of an option, 0 to 3, band 1 first.
[[nodiscard]] Bands BandsOf(const BandTable& table, int option);
// `table` with the option's bands replaced.
[[nodiscard]] BandTable WithBands(BandTable table, int option, const Bands& bands);

// Six adjoining bands without thresholds, equally wide in octaves, from the first bin that holds
// vibration with this window's code to the last.
[[nodiscard]] Bands UsualBands(int window);

}  // namespace kestrel::baseline
