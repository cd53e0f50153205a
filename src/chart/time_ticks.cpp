// Calendar steps, and the way between clocks and UTC.
// SPDX-License-Identifier: MIT
#include "chart/time_ticks.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <optional>

namespace kestrel {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t kDay = 86'400;
constexpr double kMonth = 30.44 * kDay;
constexpr double kYear = 365.25 * kDay;
constexpr int kMostTicks = 1000;

enum class Unit { Second, Day, Month, Year };

struct Step {
  Unit unit = Unit::Second;
  int count = 1;
  double seconds = 1;  // about
};

constexpr std::array kSteps{
    Step{Unit::Second, 1, 1},           Step{Unit::Second, 2, 2},
    Step{Unit::Second, 5, 5},           Step{Unit::Second, 10, 10},
    Step{Unit::Second, 30, 30},         Step{Unit::Second, 60, 60},
    Step{Unit::Second, 120, 120},       Step{Unit::Second, 300, 300},
    Step{Unit::Second, 600, 600},       Step{Unit::Second, 1800, 1800},
    Step{Unit::Second, 3600, 3600},     Step{Unit::Second, 7200, 7200},
    Step{Unit::Second, 10800, 10800},   Step{Unit::Second, 21600, 21600},
    Step{Unit::Second, 43200, 43200},   Step{Unit::Day, 1, kDay},
    Step{Unit::Day, 2, 2 * kDay},       Step{Unit::Day, 7, 7 * kDay},
    Step{Unit::Day, 14, 14 * kDay},     Step{Unit::Month, 1, kMonth},
    Step{Unit::Month, 2, 2 * kMonth},   Step{Unit::Month, 3, 3 * kMonth},
    Step{Unit::Month, 6, 6 * kMonth},   Step{Unit::Year, 1, kYear},
    Step{Unit::Year, 2, 2 * kYear},     Step{Unit::Year, 5, 5 * kYear},
    Step{Unit::Year, 10, 10 * kYear},   Step{Unit::Year, 20, 20 * kYear},
    Step{Unit::Year, 50, 50 * kYear},   Step{Unit::Year, 100, 100 * kYear},
    Step{Unit::Year, 200, 200 * kYear}, Step{Unit::Year, 1000, 1000 * kYear}};

constexpr std::array<const char*, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::int64_t FloorDiv(std::int64_t value, std::int64_t by) {
  const std::int64_t quotient = value / by;
  return value % by < 0 ? quotient - 1 : quotient;
}

// What the clocks show, as seconds of a calendar without offsets.
std::int64_t ShownAt(std::int64_t utc, const ClockOffset& offset) {
  return utc + offset(utc);
}

// The first moment at which the clocks show it; none where they skip it.
std::optional<std::int64_t> MomentOf(std::int64_t shown, const ClockOffset& offset) {
  constexpr std::int64_t kWidest = 2 * kDay;
  // A change of the clocks lies between two of these, if at all.
  const std::array offsets{offset(shown - kWidest), offset(shown + kWidest)};
  std::optional<std::int64_t> first;
  for (const std::int64_t ahead : {offsets[0], offsets[1]}) {
    const std::int64_t utc = shown - ahead;
    if (ShownAt(utc, offset) == shown && (!first || utc < *first)) first = utc;
  }
  return first;
}

// Where the clocks skip midnight, the day begins when they have done so.
std::int64_t DayBegin(std::int64_t shown, const ClockOffset& offset) {
  if (const auto moment = MomentOf(shown, offset)) return *moment;
  return shown - offset(shown - 2 * kDay);
}

year_month_day DateOf(std::int64_t shown) {
  return year_month_day(sys_days(days(FloorDiv(shown, kDay))));
}

std::int64_t ShownOf(const year_month_day& date) {
  return std::int64_t{sys_days(date).time_since_epoch().count()} * kDay;
}

int YearOf(std::int64_t shown) {
  return static_cast<int>(DateOf(shown).year());
}

std::string Digits(const char* format, auto... numbers) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, static_cast<int>(numbers)...);
  return text.data();
}

std::string DateText(std::int64_t shown) {
  const year_month_day date = DateOf(shown);
  return std::to_string(static_cast<unsigned>(date.day())) + ' ' +
         kMonths.at(static_cast<unsigned>(date.month()) - 1);
}

std::string HoursText(std::int64_t shown, bool hasSeconds) {
  const std::int64_t second = shown - FloorDiv(shown, kDay) * kDay;
  const std::string minutes = Digits("%02d:%02d", second / 3600, second / 60 % 60);
  return hasSeconds ? minutes + Digits(":%02d", second % 60) : minutes;
}

// Among months and days the first of January is the year.
std::string LabelOf(std::int64_t shown, const Step& step) {
  const year_month_day date = DateOf(shown);
  const unsigned month = static_cast<unsigned>(date.month());
  const bool isNewYear = month == 1 && static_cast<unsigned>(date.day()) == 1;
  const std::string year = std::to_string(YearOf(shown));
  switch (step.unit) {
    case Unit::Year:
      return year;
    case Unit::Month:
      return isNewYear ? year : kMonths.at(month - 1);
    case Unit::Day:
      return isNewYear ? year : DateText(shown);
    default:
      return shown % kDay == 0 ? DateText(shown) : HoursText(shown, step.count % 60 != 0);
  }
}

// The first at or before what the clocks show.
std::int64_t FirstOf(const Step& step, std::int64_t shown) {
  const year_month_day date = DateOf(shown);
  using std::chrono::month;
  using std::chrono::year;
  const auto begin = [](int of, int at) {
    return ShownOf(year(of) / month(static_cast<unsigned>(at)) / 1);
  };
  switch (step.unit) {
    case Unit::Year: {
      const auto whole = FloorDiv(YearOf(shown), step.count) * step.count;
      return begin(static_cast<int>(whole), 1);
    }
    case Unit::Month: {
      const int index = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
      return begin(YearOf(shown), index / step.count * step.count + 1);
    }
    case Unit::Day: {
      // Weeks begin on Mondays; 1970 began on a Thursday.
      const std::int64_t day = FloorDiv(shown, kDay);
      const std::int64_t from = step.count % 7 == 0 ? -3 : 0;
      return (FloorDiv(day - from, step.count) * step.count + from) * kDay;
    }
    default:
      return FloorDiv(shown, step.count) * step.count;
  }
}

std::int64_t NextOf(const Step& step, std::int64_t shown) {
  const year_month_day date = DateOf(shown);
  switch (step.unit) {
    case Unit::Year:
      return ShownOf(date + std::chrono::years(step.count));
    case Unit::Month:
      return ShownOf(date + std::chrono::months(step.count));
    case Unit::Day:
      return shown + step.count * kDay;
    default:
      return shown + step.count;
  }
}

bool IsOfClock(const PlotRange& range, const PlotCalendar& calendar) {
  constexpr double kMost = 1e11;  // some thousand years
  return IsShowable(range, AxisKind::Linear) && std::abs(calendar.start + range.low) < kMost &&
         std::abs(calendar.start + range.high) < kMost;
}

// Parts of a second, which no calendar has.
std::vector<AxisTick> PartsOfSeconds(const PlotRange& range, const PlotCalendar& calendar,
                                     double pixels, double apart) {
  const double whole = std::floor(calendar.start + range.low);
  const double from = whole - calendar.start;
  auto ticks = AxisTicks({range.low - from, range.high - from}, AxisKind::Linear, pixels, apart);
  for (AxisTick& tick : ticks) {
    const double utc = whole + tick.value;
    const auto second = static_cast<std::int64_t>(std::floor(utc + 1e-9));
    const double part = std::max(0.0, utc - static_cast<double>(second));
    tick.label = HoursText(ShownAt(second, calendar.offset), true) +
                 Digits(".%03d", std::lround(part * 1000));
    tick.value += from;
  }
  return ticks;
}

}  // namespace

std::vector<AxisTick> TimeTicks(const PlotRange& range, const PlotCalendar& calendar, double pixels,
                                double apart) {
  if (!IsOfClock(range, calendar) || !(pixels > 0) || !(apart > 0)) return {};
  const double least = range.Span() * apart / pixels;
  if (least <= 0.5) return PartsOfSeconds(range, calendar, pixels, apart);
  const auto* step =
      std::ranges::find_if(kSteps, [&](const Step& s) { return s.seconds >= least; });
  if (step == kSteps.end()) return {};
  const double from = calendar.start + range.low;
  const double to = calendar.start + range.high;
  std::int64_t shown =
      FirstOf(*step, ShownAt(static_cast<std::int64_t>(std::floor(from)), calendar.offset));
  const bool isOfDays = step->unit != Unit::Second;
  std::vector<AxisTick> ticks;
  for (; ticks.size() < kMostTicks; shown = NextOf(*step, shown)) {
    const auto moment = isOfDays || shown % kDay == 0
                            ? std::optional(DayBegin(shown, calendar.offset))
                            : MomentOf(shown, calendar.offset);
    if (!moment) continue;
    const auto utc = static_cast<double>(*moment);
    if (utc > to) break;
    if (utc >= from) ticks.push_back({utc - calendar.start, LabelOf(shown, *step)});
  }
  return ticks;
}

std::string DayText(double utc, const ClockOffset& offset) {
  const std::int64_t shown = ShownAt(static_cast<std::int64_t>(std::floor(utc)), offset);
  return DateText(shown) + ' ' + std::to_string(YearOf(shown));
}

std::string ClockText(double utc, const ClockOffset& offset, double span) {
  const auto second = static_cast<std::int64_t>(std::floor(utc));
  const std::int64_t shown = ShownAt(second, offset);
  const std::string day = DayText(utc, offset);
  if (span >= 400.0 * kDay) return day;
  if (span >= 2 * kDay) return day + ", " + HoursText(shown, false);
  const std::string text = day + ", " + HoursText(shown, true);
  if (span >= 60) return text;
  return text + Digits(".%03d", std::floor((utc - static_cast<double>(second)) * 1000));
}

}  // namespace kestrel
