// A level over time, from the records of the archive.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "archive/archive.h"

namespace kestrel::archive {

enum class TrendOf {
  Rms,          // of an axis over all bins that hold vibration, or of a time record, g
  Peak,         // its largest bin, or the largest distance from the mean, g
  BandRms,      // of a band of spectra, g
  BandPeak,     // its largest bin, g
  Temperature,  // of the sensor, degrees Celsius
  Supply        // V
};

struct TrendChoice {
  TrendOf of = TrendOf::Rms;
  Axis axis = Axis::X;
  double fromHz = 0;  // of a band
  double toHz = 0;
  bool operator==(const TrendChoice&) const = default;
};

struct TrendPoint {
  std::int64_t id = 0;
  std::chrono::system_clock::time_point time;
  double value = 0;
  bool alarm = false;  // some band's alarm was on
  bool operator==(const TrendPoint&) const = default;
};

// Points that can be compared: of records of one kind, sample-rate option and window.
struct TrendSeries {
  RecordKind kind = RecordKind::Spectrum;
  int option = 0;
  int window = 0;                    // 0 for time records
  std::vector<TrendPoint> points{};  // the oldest first
};

struct Trend {
  std::vector<TrendSeries> series{};  // the one with most points first
  std::string unit{};
  std::int64_t refused = 0;  // records that cannot carry the level
  std::string refusal{};     // why, of the first of them
  bool whole = true;         // false where `goOn` ended it: there are no points then
};

// `goOn` is asked now and then with the number of records done and of all; false ends it. Levels of
// bands are worked out from the points, the others are read. Throws DatabaseError.
[[nodiscard]] Trend TrendFor(
    Archive& archive, const Filter& filter, const TrendChoice& choice,
    const std::function<bool(std::int64_t done, std::int64_t all)>& goOn = [](auto, auto) {
      return true;
    });

}  // namespace kestrel::archive
