// Comparing values with those known to be in the sensor, and saying how many differ.
// SPDX-License-Identifier: MIT
#include "alarms/band_state.h"

#include <algorithm>
#include <cstddef>

#include "alarms/band_cells.h"

namespace kestrel {
namespace {

constexpr int kAllBands = kAlarmBands * kSampleRateOptions;

std::vector<BandPlace> AllPlaces() {
  std::vector<BandPlace> places;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) places.push_back({field, band, option});
    }
  }
  return places;
}

struct Comparison {
  int differing = 0;
  int elsewhere = 0;  // of these, at other options than the one shown
  int unknownBands = 0;
};

Comparison Compare(const BandTable& table, const SensorValues& inSensor, int option) {
  Comparison found;
  for (const BandPlace& place : AllPlaces()) {
    const auto held = inSensor(place.field, place.band, place.option);
    if (!held && place.field == kFLowField) ++found.unknownBands;
    if (!held || *held == ValueAt(table, place)) continue;
    ++found.differing;
    if (place.option != option) ++found.elsewhere;
  }
  return found;
}

std::string SensorText(const Comparison& found) {
  if (found.unknownBands == kAllBands) return "What the sensor holds is not known.";
  std::string text;
  if (found.differing > 0) {
    text = "Not yet written to the sensor: " + std::to_string(found.differing) +
           (found.differing == 1 ? " value" : " values");
    if (found.elsewhere > 0) {
      text += ", " + std::to_string(found.elsewhere) + " at other sample-rate options";
    }
    text += ".";
  }
  if (found.unknownBands > 0) {
    text += (text.empty() ? "" : " ") +
            std::string("Bands of which it is not known what the sensor holds: ") +
            std::to_string(found.unknownBands) + ".";
  }
  return text.empty() ? "The sensor holds these bands." : text;
}

}  // namespace

std::vector<BandPlace> EditedValues(const BandTable& table, const SensorValues& inSensor) {
  std::vector<BandPlace> edited;
  for (const BandPlace& place : AllPlaces()) {
    const std::int32_t held = inSensor(place.field, place.band, place.option).value_or(0);
    if (held != ValueAt(table, place)) edited.push_back(place);
  }
  return edited;
}

std::string PlaceText(const BandPlace& place) {
  const auto at = std::ranges::find(kBandFields, place.field) - kBandFields.begin();
  return "option " + std::to_string(place.option) + ", band " + std::to_string(place.band) + ", " +
         ColumnName(static_cast<int>(at) + 1);
}

std::string MisfitText(const BandTable& table) {
  constexpr std::int32_t kLargestWord = 0xFFFF;
  for (const BandPlace& place : AllPlaces()) {
    const std::int32_t value = ValueAt(table, place);
    if (value >= 0 && value <= kLargestWord) continue;
    return PlaceText(place) + " = " + std::to_string(value) + " is not from 0 to " +
           std::to_string(kLargestWord);
  }
  return "";
}

std::vector<BandPlace> ChangedPlaces(const BandTable& before, const BandTable& after) {
  std::vector<BandPlace> changed;
  for (const BandPlace& place : AllPlaces()) {
    if (ValueAt(before, place) != ValueAt(after, place)) changed.push_back(place);
  }
  return changed;
}

std::string StateText(const BandTable& table, const SensorValues& inSensor, int option) {
  constexpr std::size_t kShown = 2;
  std::string text = SensorText(Compare(table, inSensor, option));
  const std::vector<std::string> problems = ProblemsOf(table, option);
  for (std::size_t i = 0; i < std::min(problems.size(), kShown); ++i) text += " " + problems[i];
  if (problems.size() > kShown) {
    text += " And " + std::to_string(problems.size() - kShown) + " more.";
  }
  return text;
}

}  // namespace kestrel
