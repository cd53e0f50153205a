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

// "option 2, band 3, alarm 1 Y".
[[nodiscard]] std::string PlaceText(const BandPlace& place);

// The first value that a register does not take as it is: "option 2, band 3, alarm 1 Y = 70000 is
// not from 0 to 65535"; "" when there is none.
[[nodiscard]] std::string MisfitText(const BandTable& table);

// Where two tables differ.
[[nodiscard]] std::vector<BandPlace> ChangedPlaces(const BandTable& before, const BandTable& after);

// One line: how many values the sensor does not hold yet, then what cannot be meant in the bands of
// this option.
[[nodiscard]] std::string StateText(const BandTable& table, const SensorValues& inSensor,
                                    int option);

}  // namespace kestrel
