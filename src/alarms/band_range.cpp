// Thresholds carried from the code of one range to that of another.
// SPDX-License-Identifier: MIT
#include "alarms/band_range.h"

#include <algorithm>
#include <cmath>

#include "alarms/band_cells.h"
#include "device/rec_ctrl.h"

namespace kestrel {

std::int32_t CurrentRange() {
  const bool known = gRecCtrl && gRecCtrl->gLsb() > 0;
  return known ? gRecCtrl->RangeFS() + 1 : kRangeNotKnown;
}

std::string RangeName(std::int32_t range) {
  const SignalRange* known = FindSignalRange(range - 1);
  return known == nullptr ? "" : known->text;
}

double ThresholdLsb(std::int32_t range) {
  const SignalRange* known = FindSignalRange(range - 1);
  return known == nullptr ? 0 : known->milliG / 1000;
}

std::vector<BandPlace> ThresholdPlaces() {
  std::vector<BandPlace> places;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) {
        if (field > kFHighField) places.push_back({field, band, option});
      }
    }
  }
  return places;
}

std::vector<BandPlace> StrangeThresholds(const BandTable& table, const ThresholdRanges& ranges,
                                         std::int32_t now) {
  std::vector<BandPlace> strange;
  if (now == kRangeNotKnown) return strange;
  for (const BandPlace& place : ThresholdPlaces()) {
    const std::int32_t given = ValueAt(ranges, place);
    if (ValueAt(table, place) != 0 && given != kRangeNotKnown && given != now) {
      strange.push_back(place);
    }
  }
  return strange;
}

std::string ThresholdText(std::int32_t code, std::int32_t range) {
  const double gLsb = ThresholdLsb(range);
  return CellText(ThresholdColumn(1, Axis::X), code, {.gLsb = gLsb, .gMax = gLsb * kLargestCode}) +
         " g";
}

RangeStep InRange(std::int32_t code, std::int32_t from, std::int32_t to) {
  const double wished = code * ThresholdLsb(from) / ThresholdLsb(to);
  const double nearest = std::nearbyint(std::clamp<double>(wished, 0, kLargestCode));
  return {.code = static_cast<std::int32_t>(nearest),
          .above = wished > kLargestCode + 0.5,
          .below = nearest == 0 && wished > 0};
}

std::string RangeNoticeText(const BandTable& table, const ThresholdRanges& ranges,
                            std::int32_t now) {
  const std::vector<BandPlace> strange = StrangeThresholds(table, ranges, now);
  if (strange.empty()) return "";
  const BandPlace& first = strange.front();
  const std::int32_t from = ValueAt(ranges, first);
  const bool same = std::ranges::all_of(
      strange, [&](const BandPlace& place) { return ValueAt(ranges, place) == from; });
  const bool one = strange.size() == 1;
  return "The range is " + RangeName(now) + " now. " + std::to_string(strange.size()) +
         (one ? " threshold was" : " thresholds were") + " given for " +
         (same ? RangeName(from) : "other ranges") + "; as " + (one ? "a code" : "codes") +
         " of the range " + (one ? "it means" : "they mean") +
         " something else now: " + PlaceText(first) + " was " +
         ThresholdText(ValueAt(table, first), from) + " and is now " +
         ThresholdText(ValueAt(table, first), now) + ".";
}

}  // namespace kestrel
