// How the alarm bands stand against what the sensor holds.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "alarms/band_table.h"

namespace kestrel {

// What the sensor is known to hold; nothing where it is not known.
using SensorValues = std::function<std::optional<std::int32_t>(int field, int band, int option)>;

// A value of the table.
struct BandPlace {
  int field = 0;
  int band = 0;
  int option = 0;
  bool operator==(const BandPlace&) const = default;
};
[[nodiscard]] inline std::int32_t ValueAt(const BandTable& table, const BandPlace& place) {
  return table(place.field, place.band, place.option);
}

// Values that would be lost if the table were read from the sensor: other than the sensor's, or
// anything but 0 where the sensor's is not known.
[[nodiscard]] std::vector<BandPlace> EditedValues(const BandTable& table,
                                                  const SensorValues& inSensor);

// Where two tables differ.
[[nodiscard]] std::vector<BandPlace> ChangedPlaces(const BandTable& before, const BandTable& after);

// One line: how many values the sensor does not hold yet, then what cannot be meant in the bands of
// this option.
[[nodiscard]] std::string StateText(const BandTable& table, const SensorValues& inSensor,
                                    int option);

}  // namespace kestrel
