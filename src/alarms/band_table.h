// The table of the spectral alarm bands of all sample-rate options.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "record/alarm_bits.h"
#include "record/axis.h"

namespace kestrel {

inline constexpr int kSampleRateOptions = 4;  // numbered 0 to 3

// Fields of a band. Bins are 0 to 255; a threshold is a magnitude code, g divided by the g per LSB
// of the range in use. Fields 2 and 6 are not used.
inline constexpr int kFLowField = 0;
inline constexpr int kFHighField = 1;
[[nodiscard]] inline constexpr int Alarm1Field(Axis axis) {
  return 3 + static_cast<int>(Index(axis));
}
[[nodiscard]] inline constexpr int Alarm2Field(Axis axis) {
  return 7 + static_cast<int>(Index(axis));
}

// The fields that are kept in the sensor, in files and in the editor's columns 1 to 8, in the order
// of the registers ALM_F_LOW to ALM_Z_MAG2.
inline constexpr std::array<int, 8> kBandFields{0, 1, 3, 4, 5, 7, 8, 9};

// What messages call them, in the same order.
inline constexpr std::array<const char*, kBandFields.size()> kBandFieldNames{
    "F-low",     "F-high",    "alarm 1 X", "alarm 1 Y",
    "alarm 1 Z", "alarm 2 X", "alarm 2 Y", "alarm 2 Z"};

// The spectral alarm bands of all sample-rate options. Field 0..9, band 0..7 and option 0..4 exist,
// bands 1 to 6 of options 0 to 3 are used; anything beyond throws RuntimeError "Subscript out of
// range".
class BandTable {
 public:
  std::int32_t& operator()(int field, int band, int option) {
    return values_[Checked(field, band, option)];
  }
  std::int32_t operator()(int field, int band, int option) const {
    return values_[Checked(field, band, option)];
  }
  bool operator==(const BandTable&) const = default;

 private:
  static constexpr int kFields = 10;
  static constexpr int kBandSlots = 8;
  static constexpr int kOptionSlots = 5;

  [[nodiscard]] static std::size_t Checked(int field, int band, int option);

  std::array<std::int32_t, std::size_t{kFields} * kBandSlots * kOptionSlots> values_{};
};

// The host's copy of all bands (0): read from the sensor and from files, edited, drawn on the plot.
// Codes, no units; for reading.
extern const BandTable& AlarmBandTable;

// The same table, for what changes it whole or in steps: edits, transfers, files.
[[nodiscard]] BandTable& ChangeableBands();

// Back to the start value in brackets.
void ResetAlarmBandTable();

}  // namespace kestrel
