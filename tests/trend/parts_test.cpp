// Gaps, alarm events and figures of a trend.
// SPDX-License-Identifier: MIT
#include "trend/parts.h"

#include <algorithm>

#include "made_up_levels.h"

namespace kestrel::trend {
namespace {

constexpr int kWarning3 = 1 << 8;
constexpr int kFault3 = 1 << 9;
constexpr int kWarning1 = 1 << 4;

std::vector<AlarmEvent> Events(std::initializer_list<MadePoint> points) {
  const auto series = SeriesOf(points);
  return EventsIn(series.points, GapsIn(series.points));
}

TEST(GapsIn, AreDistancesMuchLongerThanTheUsualOne) {
  const auto series = SeriesOf({{0}, {60}, {121}, {180}, {900}, {960}, {1020}, {1430}, {1490}});
  const auto gaps = GapsIn(series.points);
  ASSERT_EQ(gaps.size(), 1U);
  EXPECT_EQ(gaps[0], (Gap{3, kBegin + 180, kBegin + 900}));
}

TEST(GapsIn, FewPointsAndSecondsApartHaveNone) {
  EXPECT_TRUE(GapsIn(SeriesOf({{0}, {1}, {9999}}).points).empty());
  EXPECT_TRUE(GapsIn(SeriesOf({{0}, {0.5}, {1}, {1.5}, {9}}).points).empty());
  EXPECT_TRUE(GapsIn(Points()).empty());
}

TEST(EventsIn, AnAlarmLastsUntilARecordHasItNoMore) {
  const auto events = Events({{0, 1}, {60, 2, kWarning3}, {120, 4, kWarning3}, {180, 3}, {240, 1}});
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(NameOf(events[0]), "Warning 3, Z");
  EXPECT_EQ(events[0].begin, kBegin + 60);
  EXPECT_EQ(events[0].to, kBegin + 180);
  EXPECT_EQ(events[0].end, AlarmEvent::End::Over);
  EXPECT_EQ(events[0].largest, 4);
  EXPECT_EQ(events[0].id, 3);
  EXPECT_EQ(LastedText(events[0]), "2 min");
}

TEST(EventsIn, WarningAndFaultAndBandsAreEventsOfTheirOwnTheLatestFirst) {
  const auto events = Events({{0, 1, kWarning1},
                              {60, 2, kWarning3},
                              {120, 4, kWarning3 | kFault3},
                              {180, 4, kWarning3 | kFault3}});
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(NameOf(events[0]), "Fault 3, Z");
  EXPECT_EQ(LastedText(events[0]), "open");
  EXPECT_EQ(NameOf(events[1]), "Warning 3, Z");
  EXPECT_EQ(events[1].end, AlarmEvent::End::Open);
  EXPECT_EQ(NameOf(events[2]), "Warning 1, Z");
  EXPECT_EQ(LastedText(events[2]), "60 s");
}

TEST(EventsIn, WhereRecordsAreMissingNothingIsClaimed) {
  const auto events = Events({{0, 1, kWarning3},
                              {60, 1, kWarning3},
                              {120, 1, kWarning3},
                              {9000, 1, kWarning3},
                              {9060, 1}});
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[1].end, AlarmEvent::End::Unknown);
  EXPECT_EQ(LastedText(events[1]), "at least 2 min");
  EXPECT_EQ(events[0].begin, kBegin + 9000);
}

TEST(EventsIn, ALevelThatARecordDoesNotCarryIsNoLargest) {
  const auto events = Events({{0, std::nan(""), kWarning3}, {60, 1}});
  ASSERT_EQ(events.size(), 1U);
  EXPECT_FALSE(events[0].largest);
  EXPECT_EQ(events[0].id, 1);
}

TEST(DurationText, IsReadableAtEveryLength) {
  EXPECT_EQ(DurationText(0.25), "0.3 s");
  EXPECT_EQ(DurationText(41), "41 s");
  EXPECT_EQ(DurationText(720), "12 min");
  EXPECT_EQ(DurationText(92'520), "25.7 h");
  EXPECT_EQ(DurationText(276'480), "3.2 d");
}

TEST(StatisticsOf, AreThoseOfTheValuesWithinTheSpan) {
  const auto series = SeriesOf({{0, 100}, {10, 1}, {20, 2}, {30, std::nan("")}, {40, 6}, {50, 3}});
  const auto told = StatisticsOf(series.points, 2, {kBegin + 10, kBegin + 50});
  ASSERT_TRUE(told);
  EXPECT_EQ(told->count, 4U);
  EXPECT_EQ(told->least, 1);
  EXPECT_EQ(told->mean, 3);
  EXPECT_EQ(told->median, 2.5);
  EXPECT_EQ(told->largest, 6);
  EXPECT_DOUBLE_EQ(told->deviation, std::sqrt(14.0 / 3));
  EXPECT_FALSE(StatisticsOf(series.points, 2, {kBegin + 25, kBegin + 35}));
}

}  // namespace
}  // namespace kestrel::trend
