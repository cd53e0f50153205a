// Spans of time and thinning as a reader sees them.
// SPDX-License-Identifier: MIT
#include <array>

#include "baseline/sets.h"
#include "numeric/number_format.h"
#include "record/utc_time.h"

namespace kestrel::baseline {
namespace {

constexpr std::array<const char*, 12> kMonths{"January",   "February", "March",    "April",
                                              "May",       "June",     "July",     "August",
                                              "September", "October",  "November", "December"};

struct Day {
  int year = 0;
  int month = 1;
  int day = 1;
  std::string time;  // "08:26"
  bool operator==(const Day&) const = default;
};

Day DayOf(Moment moment) {
  const std::string text = UtcText(moment);
  return {.year = std::stoi(text.substr(0, 4)),
          .month = std::stoi(text.substr(5, 2)),
          .day = std::stoi(text.substr(8, 2)),
          .time = text.substr(11, 5)};
}

std::string MonthOf(const Day& day) {
  return kMonths[static_cast<std::size_t>(day.month - 1)];
}

std::string EveryText(std::chrono::seconds every) {
  constexpr std::array<std::pair<int, const char*>, 4> kUnits{
      {{86400, " d"}, {3600, " h"}, {60, " min"}, {1, " s"}}};
  for (const auto& [seconds, unit] : kUnits) {
    if (every.count() % seconds == 0) return std::to_string(every.count() / seconds) + unit;
  }
  return {};
}

}  // namespace

std::string SpanText(Moment first, Moment last) {
  const Day from = DayOf(first);
  const Day to = DayOf(last);
  const std::string end =
      std::to_string(to.day) + " " + MonthOf(to) + " " + std::to_string(to.year);
  if (from.year != to.year) {
    return std::to_string(from.day) + " " + MonthOf(from) + " " + std::to_string(from.year) +
           " to " + end;
  }
  if (from.month != to.month) {
    return std::to_string(from.day) + " " + MonthOf(from) + " to " + end;
  }
  if (from.day != to.day) return std::to_string(from.day) + " to " + end;
  return end + ", " + (from.time == to.time ? from.time : from.time + " to " + to.time);
}

std::string ThinningText(const PartTaken& part) {
  const std::string found = GroupedWholeNumber(static_cast<double>(part.found));
  if (part.every.count() <= 0) return "all " + found;
  return "one every " + EveryText(part.every) + " of " + found;
}

}  // namespace kestrel::baseline
