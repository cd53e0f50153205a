// The records of a trend, as they were read of an archive and as more of them come.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "record/utc_time.h"
#include "trend/parts.h"

namespace kestrel::trend {

// What was read of an archive, and what is worked out of it once.
struct Data {
  archive::Levels levels = {};
  archive::Levels temperature = {};  // of all records that fit; one series, or none
  std::size_t series = 0;            // the one that is shown
  std::vector<Gap> gaps = {};        // of it
  std::vector<Gap> temperatureGaps = {};
  std::vector<AlarmEvent> events = {};
  double start = 0;  // seconds since 1970 where the picture's axis is 0

  // Of the series that is shown; none where there is none.
  [[nodiscard]] Points Shown() const;
  [[nodiscard]] double Across(const archive::LevelPoint& point) const {
    return SecondsOf(point.time) - start;
  }
  // Records that came later, or are known better now: the same id again takes the place of the
  // first. The series that is shown stays the one that is shown.
  void Add(archive::Levels more, archive::Levels moreTemperature);
  // Records that are known, those without the level included.
  [[nodiscard]] std::int64_t Count() const;
  // The moment of the newest point; the epoch where there is none.
  [[nodiscard]] std::chrono::system_clock::time_point Newest() const;
  // Shows another series and works out its gaps and events.
  void Choose(std::size_t which);
  // The point nearest to a place along the picture's axis.
  [[nodiscard]] std::optional<std::size_t> Nearest(double x) const;
  [[nodiscard]] std::optional<std::size_t> Find(std::int64_t id) const;
};

}  // namespace kestrel::trend
