// A level over time, from the records of the archive.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
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
  Supply,       // V
  PeakNear      // the largest peak near a frequency, between bins, g
};

struct TrendChoice {
  TrendOf of = TrendOf::Rms;
  Axis axis = Axis::X;
  double fromHz = 0;  // of a band
  double toHz = 0;
  double nearHz = 0;  // of a peak
  double withinHz = 0;
  bool operator==(const TrendChoice&) const = default;
};

// Whether each axis has a level of its own: not so the conditions of the sensor.
[[nodiscard]] bool IsOfAxis(TrendOf of);
// Whether it is worked out from the points of a record; the others are read.
[[nodiscard]] bool IsWorkedOut(TrendOf of);
// "g RMS", "g peak", "°C", "V".
[[nodiscard]] std::string UnitOf(TrendOf of);

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

// Asked now and then with the number of records done and of all; false ends it.
using GoOn = std::function<bool(std::int64_t done, std::int64_t all)>;

// Levels of bands and near frequencies are worked out from the points, the others are read. Throws
// DatabaseError.
[[nodiscard]] Trend TrendFor(
    Archive& archive, const Filter& filter, const TrendChoice& choice,
    const GoOn& goOn = [](auto, auto) { return true; });

// A record's levels of all axes at once.
struct LevelPoint {
  std::int64_t id = 0;
  std::chrono::system_clock::time_point time;
  // X, Y, Z; not a number where the record cannot carry it. A condition is the first.
  std::array<double, 3> value{};
  std::array<std::int32_t, 3> alarms{};  // words of ALM_x_STAT, as the sensor had them
  int range = 0;                         // code: 0 to 3 for 1, 5, 20, 70 g
};

struct LevelSeries {
  RecordKind kind = RecordKind::Spectrum;
  int option = 0;
  int window = 0;                    // 0 for time records
  std::vector<LevelPoint> points{};  // the oldest first
};

// As Trend; a record is refused where no axis carries the level.
struct Levels {
  std::vector<LevelSeries> series{};
  std::string unit{};
  std::vector<std::int64_t> refused{};  // ids
  std::string refusal{};
  bool whole = true;
};

// The same of all axes; the choice's own axis does not matter. Throws DatabaseError.
[[nodiscard]] Levels LevelsOver(
    Archive& archive, const Filter& filter, const TrendChoice& choice,
    const GoOn& goOn = [](auto, auto) { return true; });

}  // namespace kestrel::archive
