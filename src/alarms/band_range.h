// What thresholds mean in g when the range changes: they are codes of a range.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "alarms/band_state.h"
#include "alarms/band_table.h"

namespace kestrel {

// For each threshold of a band table the range it was given for: the range's code (0..3) plus 1, or
// 0 where that is not known. Bins have none.
using ThresholdRanges = BandTable;
inline constexpr std::int32_t kRangeNotKnown = 0;

inline constexpr std::int32_t kLargestCode = 65535;  // full scale

// The range that the sensor was last found to have; kRangeNotKnown before that. The same in every
// record mode, since alarms are judged on spectra.
[[nodiscard]] std::int32_t CurrentRange();

// "0 - 70g"; and g per LSB of a spectrum, 0 for kRangeNotKnown.
[[nodiscard]] std::string RangeName(std::int32_t range);
[[nodiscard]] double ThresholdLsb(std::int32_t range);

// All thresholds, option by option and band by band.
[[nodiscard]] std::vector<BandPlace> ThresholdPlaces();

// Thresholds other than 0 that were given for another range than `now`.
[[nodiscard]] std::vector<BandPlace> StrangeThresholds(const BandTable& table,
                                                       const ThresholdRanges& ranges,
                                                       std::int32_t now);

// A threshold in g, of spectra: "0.143 g".
[[nodiscard]] std::string ThresholdText(std::int32_t code, std::int32_t range);

// What a threshold's g value becomes as a code of another range.
struct RangeStep {
  std::int32_t code = 0;
  bool above = false;  // beyond the full scale, which is taken instead
  bool below = false;  // nearer to 0 than to the smallest code
};
[[nodiscard]] RangeStep InRange(std::int32_t code, std::int32_t from, std::int32_t to);

// What the user has to know of such thresholds; "" when there are none.
[[nodiscard]] std::string RangeNoticeText(const BandTable& table, const ThresholdRanges& ranges,
                                          std::int32_t now);

}  // namespace kestrel
