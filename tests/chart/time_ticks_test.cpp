// Ticks of a calendar whose clocks change in spring and autumn.
// SPDX-License-Identifier: MIT
#include "chart/time_ticks.h"

#include <gmock/gmock.h>

#include <chrono>

namespace kestrel {
namespace {

using namespace std::chrono;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

double At(int y, unsigned m, unsigned d, int h = 0, int min = 0, int s = 0) {
  const auto days = sys_days(year(y) / month(m) / day(d)).time_since_epoch();
  return duration<double>(days + hours(h) + minutes(min) + seconds(s)).count();
}

// An hour ahead, two from 29 March to 25 October 2026, 01:00 UTC each.
std::int64_t Changing(std::int64_t utc) {
  const auto moment = static_cast<double>(utc);
  return moment >= At(2026, 3, 29, 1) && moment < At(2026, 10, 25, 1) ? 7200 : 3600;
}

// Skips the midnight before 8 September 2024, as some places do.
std::int64_t SkippingMidnight(std::int64_t utc) {
  return static_cast<double>(utc) >= At(2024, 9, 8, 4) ? -3 * 3600 : -4 * 3600;
}

struct Ticks {
  std::vector<std::string> labels;
  std::vector<double> moments;
};

// Of 800 pixels and ticks at least 80 apart: ten at most.
Ticks Between(double from, double to, const ClockOffset& offset, double start = 0) {
  Ticks told;
  for (const AxisTick& tick :
       TimeTicks({from - start, to - start}, {.start = start, .offset = offset}, 800, 80)) {
    told.labels.push_back(tick.label);
    told.moments.push_back(tick.value + start);
  }
  return told;
}

const ClockOffset kUtc = [](std::int64_t) { return std::int64_t{0}; };

TEST(TimeTicks, AreWholeUnitsFromSecondsToYears) {
  const double noon = At(2026, 11, 21, 12);
  EXPECT_THAT(Between(noon, noon + 8, kUtc).labels,
              ElementsAre("12:00:00", "12:00:01", "12:00:02", "12:00:03", "12:00:04", "12:00:05",
                          "12:00:06", "12:00:07", "12:00:08"));
  EXPECT_THAT(Between(noon + 1, noon + 1200, kUtc).labels,
              ElementsAre("12:02", "12:04", "12:06", "12:08", "12:10", "12:12", "12:14", "12:16",
                          "12:18", "12:20"));
  EXPECT_THAT(
      Between(noon, noon + 86'400, kUtc).labels,
      ElementsAre("12:00", "15:00", "18:00", "21:00", "22 Nov", "03:00", "06:00", "09:00", "12:00"))
      << "a new day is its date";
  EXPECT_THAT(Between(At(2026, 10, 12), At(2026, 11, 21), kUtc).labels,
              ElementsAre("12 Oct", "19 Oct", "26 Oct", "2 Nov", "9 Nov", "16 Nov"))
      << "Mondays";
  EXPECT_THAT(Between(At(2026, 3, 2), At(2026, 11, 30), kUtc).labels,
              ElementsAre("Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov"));
  EXPECT_THAT(Between(At(2025, 9, 2), At(2026, 4, 30), kUtc).labels, Contains("2026"));
  EXPECT_THAT(Between(At(2001, 1, 1), At(2039, 1, 1), kUtc).labels,
              ElementsAre("2005", "2010", "2015", "2020", "2025", "2030", "2035"));
}

TEST(TimeTicks, DaysBeginAtMidnightOfTheClocksWhateverTheSeason) {
  const Ticks spring = Between(At(2026, 3, 26), At(2026, 3, 31, 12), Changing);
  EXPECT_THAT(spring.labels, ElementsAre("27 Mar", "28 Mar", "29 Mar", "30 Mar", "31 Mar"));
  EXPECT_THAT(spring.moments,
              ElementsAre(At(2026, 3, 26, 23), At(2026, 3, 27, 23), At(2026, 3, 28, 23),
                          At(2026, 3, 29, 22), At(2026, 3, 30, 22)));
  const Ticks autumn = Between(At(2026, 10, 24), At(2026, 10, 27), Changing);
  EXPECT_THAT(autumn.moments, Contains(At(2026, 10, 24, 22)));
  EXPECT_THAT(autumn.moments, Contains(At(2026, 10, 25, 23)));
}

TEST(TimeTicks, HoursThatTheClocksSkipHaveNoneAndThoseShownTwiceOne) {
  const Ticks spring = Between(At(2026, 3, 28, 23), At(2026, 3, 29, 7), Changing);
  EXPECT_THAT(spring.labels, ElementsAre("29 Mar", "01:00", "03:00", "04:00", "05:00", "06:00",
                                         "07:00", "08:00", "09:00"));
  EXPECT_EQ(spring.moments[2] - spring.moments[1], 3600);
  const Ticks autumn = Between(At(2026, 10, 24, 22), At(2026, 10, 25, 5), Changing);
  EXPECT_THAT(autumn.labels,
              ElementsAre("25 Oct", "01:00", "02:00", "03:00", "04:00", "05:00", "06:00"));
  EXPECT_EQ(autumn.moments[3] - autumn.moments[2], 7200);
}

TEST(TimeTicks, ADayWithoutMidnightBeginsWhenItBegins) {
  const Ticks ticks = Between(At(2024, 9, 6, 4), At(2024, 9, 10, 4), SkippingMidnight);
  EXPECT_THAT(ticks.labels, Contains("8 Sep"));
  EXPECT_THAT(ticks.moments, Contains(At(2024, 9, 8, 4)));
}

TEST(TimeTicks, AreTheSameWhereverTheAxisHasItsZero) {
  const double from = At(2026, 10, 24, 13);
  const Ticks far = Between(from, from + 200'000, Changing);
  const Ticks near = Between(from, from + 200'000, Changing, from + 77);
  EXPECT_EQ(far.labels, near.labels);
  EXPECT_EQ(far.moments, near.moments);
}

TEST(TimeTicks, PartsOfASecondAreToldToo) {
  const double start = At(2026, 11, 21, 12);
  EXPECT_THAT(Between(start, start + 0.01, kUtc, start).labels, Contains("12:00:00.005"));
}

TEST(TimeTicks, StandApartAndInOrderAtEverySpan) {
  const double middle = At(2026, 3, 29, 1);
  for (double span = 0.5; span < 3e10; span *= 1.37) {
    const PlotCalendar calendar{.start = middle, .offset = Changing};
    const auto ticks = TimeTicks({-span / 2, span / 2}, calendar, 800, 80);
    for (std::size_t i = 1; i < ticks.size(); ++i) {
      // An hour that is skipped brings its neighbours together.
      const double least = span > 86'400 ? 79 * span / 800 - 3600 : 39 * span / 800;
      EXPECT_GT(ticks[i].value - ticks[i - 1].value, least) << span;
    }
    EXPECT_LE(ticks.size(), 11U) << span;
    EXPECT_GE(ticks.size(), 1U) << span;
  }
}

TEST(TimeTicks, WhatIsNoAxisHasNone) {
  EXPECT_TRUE(TimeTicks({1, 1}, {}, 800, 80).empty());
  EXPECT_TRUE(TimeTicks({-1e300, 1e300}, {}, 800, 80).empty());
  EXPECT_TRUE(TimeTicks({0, 100}, {}, 0, 80).empty());
}

TEST(ClockText, TellsAMomentAsFarAsTheSpanNeeds) {
  const double moment = At(2026, 7, 1, 12, 30, 15) + 0.25;
  EXPECT_EQ(ClockText(moment, Changing, 5), "1 Jul 2026, 14:30:15.250");
  EXPECT_EQ(ClockText(moment, Changing, 3600), "1 Jul 2026, 14:30:15");
  EXPECT_EQ(ClockText(moment, Changing, 1e6), "1 Jul 2026, 14:30");
  EXPECT_EQ(ClockText(moment, Changing, 1e9), "1 Jul 2026");
  EXPECT_EQ(DayText(At(2026, 7, 1, 23), Changing), "2 Jul 2026");
}

}  // namespace
}  // namespace kestrel
