// Which records become members of a set, which are left out, and why.
// SPDX-License-Identifier: MIT
#include "baseline/sets.h"

#include "made_records.h"
#include "record/utc_time.h"

namespace kestrel::baseline {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const Part kGood{.verdict = Verdict::Good, .filter = {.tag = "good"}};
const Part kBad{.verdict = Verdict::Bad, .name = "outer race", .filter = {.tag = "bad"}};

class BaselineSets : public testing::Test {
 protected:
  Sets Found(std::vector<Part> parts = {kGood, kBad}, const Wanted& wanted = {}) {
    return SetsOf(made.archive, parts, wanted);
  }
  static std::vector<std::int64_t> Ids(const std::vector<Member>& members) {
    std::vector<std::int64_t> ids;
    for (const Member& member : members) ids.push_back(member.id);
    return ids;
  }
  static const LeftOut& Group(const Sets& sets, const std::string& title) {
    const auto group = std::ranges::find(sets.leftOut, title, &LeftOut::title);
    if (group == sets.leftOut.end()) throw std::runtime_error("no group " + title);
    return *group;
  }
  std::int64_t Good(int minute, const Settings& settings) {
    return made.Keep(MadeSpectrum(minute, Flat(10), settings), {"good"});
  }
  const Settings usual{.option = 0, .window = 1, .range = 3, .averages = 4};
  MadeArchive made;
};

TEST_F(BaselineSets, AreEmptyWhereTheArchiveIs) {
  const Sets sets = Found();
  EXPECT_THAT(sets.good, IsEmpty());
  EXPECT_THAT(sets.bad, IsEmpty());
  EXPECT_THAT(sets.leftOut, IsEmpty());
  EXPECT_THAT(sets.parts, SizeIs(2));
  EXPECT_THAT(Found({}).parts, IsEmpty());
}

TEST_F(BaselineSets, HoldWhatThePartsChooseTheOldestFirst) {
  const auto later = made.Keep(MadeSpectrum(5, Flat(10)), {"good"});
  const auto earlier = made.Keep(MadeSpectrum(3, Flat(10)), {"good"});
  const auto bad = made.Keep(MadeSpectrum(9, Flat(90)), {"bad"});
  (void)made.Keep(MadeSpectrum(4, Flat(10)), {"else"});
  const Sets sets = Found();
  EXPECT_THAT(Ids(sets.good), ElementsAre(earlier, later));
  EXPECT_THAT(Ids(sets.bad), ElementsAre(bad));
  EXPECT_EQ(sets.settings, usual);
  EXPECT_EQ(sets.parts[0].first, MinuteOf(3));
  EXPECT_EQ(sets.parts[0].last, MinuteOf(5));
  EXPECT_EQ(sets.parts[0].taken, 2U);
  EXPECT_THAT(sets.parts[0].places, ElementsAre("Pump 3, drive end"));
  EXPECT_EQ(sets.parts[1].name, "outer race");
}

TEST_F(BaselineSets, SettingsAreThoseOfMostGoodRecordsAndOthersAreLeftOutByTheFirstDifference) {
  for (int minute = 0; minute < 3; ++minute) (void)Good(minute, usual);
  const auto slow = Good(3, {.option = 1, .window = 0, .range = 0, .averages = 1});
  const auto window = Good(4, {.option = 0, .window = 2, .range = 0, .averages = 1});
  const auto range = Good(5, {.option = 0, .window = 1, .range = 2, .averages = 1});
  const auto averages = Good(6, {.option = 0, .window = 1, .range = 3, .averages = 1});
  const Sets sets = Found();
  EXPECT_THAT(sets.good, SizeIs(3));
  EXPECT_EQ(sets.LeftOutCount(), 4U);
  EXPECT_THAT(Group(sets, "Sample-rate option 1").ids, ElementsAre(slow));
  EXPECT_THAT(Group(sets, "Window: Flat top").ids, ElementsAre(window));
  EXPECT_THAT(Group(sets, "Averaged otherwise: 1 average").ids, ElementsAre(averages));
  const LeftOut& ranges = Group(sets, "Range 0 to 20 g");
  EXPECT_THAT(ranges.ids, ElementsAre(range));
  EXPECT_EQ(ranges.reason, "cannot be compared with 0 to 70 g");
}

TEST_F(BaselineSets, WantedSettingsComeBeforeTheCommonest) {
  for (int minute = 0; minute < 3; ++minute) (void)Good(minute, usual);
  const auto slow = Good(3, {.option = 2, .window = 1, .range = 3, .averages = 4});
  const Sets sets = Found({kGood}, {.option = 2});
  EXPECT_THAT(Ids(sets.good), ElementsAre(slow));
  EXPECT_THAT(Group(sets, "Sample-rate option 0").ids, SizeIs(3));
  const Sets none = Found({kGood}, {.option = 3, .range = 1});
  EXPECT_THAT(none.good, IsEmpty());
  EXPECT_EQ(none.settings.option, 3);
  EXPECT_EQ(none.settings.range, 1);
  EXPECT_EQ(none.settings.window, usual.window) << "as of most, where nothing else is wanted";
  EXPECT_EQ(none.LeftOutCount(), 4U);
}

TEST_F(BaselineSets, WithoutGoodRecordsTheBadOnesHaveTheSettings) {
  (void)made.Keep(MadeSpectrum(1, Flat(9), {.option = 1, .window = 0, .range = 0}), {"bad"});
  EXPECT_EQ(Found().settings, (Settings{.option = 1, .window = 0, .range = 0, .averages = 1}));
}

TEST_F(BaselineSets, LeaveOutTimeRecordsAndCapturesThatWereStopped) {
  archive::NewRecord time = MadeSpectrum(1, Flat(1));
  time.record.kind = RecordKind::Time;
  const auto samples = made.Keep(time, {"good"});
  archive::NewRecord stopped = MadeSpectrum(2, Flat(1));
  stopped.record.origin = {.stopped = true, .countBefore = 7, .stored = {}};
  stopped.record.conditions.recordCount = 7;
  const auto old = made.Keep(stopped, {"good"});
  stopped.uid = archive::NewUid();
  stopped.record.conditions.recordCount = 8;  // the sensor had counted one
  const auto fresh = made.Keep(stopped, {"good"});
  const Sets sets = Found();
  EXPECT_THAT(Ids(sets.good), ElementsAre(fresh));
  EXPECT_THAT(Group(sets, "Time records").ids, ElementsAre(samples));
  EXPECT_THAT(Group(sets, "Stopped captures").ids, ElementsAre(old));
}

TEST_F(BaselineSets, ARecordIsAMemberOnceAndNeverGoodAndBad) {
  const auto both = made.Keep(MadeSpectrum(1, Flat(1)), {"good", "bad"});
  const auto good = made.Keep(MadeSpectrum(2, Flat(1)), {"good"});
  const Sets sets = Found({kGood, kGood, kBad});
  EXPECT_THAT(Ids(sets.good), ElementsAre(good));
  EXPECT_THAT(sets.bad, IsEmpty());
  EXPECT_THAT(Group(sets, "Chosen as good and as bad").ids, ElementsAre(both));
  EXPECT_EQ(sets.parts[1].found, 0U);
}

TEST_F(BaselineSets, NamedRecordsAreTakenAloneAndThoseNotFoundAreSaid) {
  const auto first = made.Keep(MadeSpectrum(1, Flat(1)));
  (void)made.Keep(MadeSpectrum(2, Flat(1)));
  const auto gone = made.Keep(MadeSpectrum(3, Flat(1)));
  made.archive.Delete(std::span(&gone, 1), MinuteOf(9));
  const Sets sets = Found({{.verdict = Verdict::Good, .ids = {first, gone, 4711}}});
  EXPECT_THAT(Ids(sets.good), ElementsAre(first));
  EXPECT_THAT(Group(sets, "Not found").ids, ElementsAre(gone, 4711));
}

TEST_F(BaselineSets, OneRecordInSoMuchTimeIsTakenAtEachPlace) {
  for (int minute = 0; minute < 10; ++minute) {
    (void)made.Keep(MadeSpectrum(minute, Flat(1)), {"good"}, minute % 2 == 0 ? "Pump" : "Fan");
  }
  Part thin = kGood;
  thin.every = 4min;
  const Sets sets = Found({thin});
  std::vector<Moment> times;
  for (const Member& member : sets.good) times.push_back(member.time);
  EXPECT_THAT(times, ElementsAre(MinuteOf(0), MinuteOf(4), MinuteOf(8), MinuteOf(1), MinuteOf(5),
                                 MinuteOf(9)));
  EXPECT_NE(sets.good[2].run, sets.good[3].run);
  EXPECT_EQ(sets.parts[0].taken, 6U);
  EXPECT_EQ(sets.parts[0].found, 10U);
  EXPECT_THAT(sets.leftOut, IsEmpty());
}

TEST_F(BaselineSets, TextsTellSpanAndThinning) {
  const auto day = [](const std::string& text) { return *UtcFrom(text); };
  EXPECT_EQ(SpanText(day("2026-10-12"), day("2026-10-24")), "12 to 24 October 2026");
  EXPECT_EQ(SpanText(day("2026-10-12"), day("2026-11-02")), "12 October to 2 November 2026");
  EXPECT_EQ(SpanText(day("2025-12-31"), day("2026-01-01")), "31 December 2025 to 1 January 2026");
  EXPECT_EQ(SpanText(day("2026-10-12T08:00"), day("2026-10-12T14:30")),
            "12 October 2026, 08:00 to 14:30");
  EXPECT_EQ(SpanText(day("2026-10-12T08:00"), day("2026-10-12T08:00")), "12 October 2026, 08:00");
  EXPECT_EQ(ThinningText({.found = 1728, .every = 2h}), "one every 2 h of 1,728");
  EXPECT_EQ(ThinningText({.found = 132}), "all 132");
  EXPECT_EQ(ThinningText({.found = 3, .every = 90s}), "one every 90 s of 3");
}

}  // namespace
}  // namespace kestrel::baseline
