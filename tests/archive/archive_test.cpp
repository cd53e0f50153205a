// Records are kept, found, amended, deleted and brought back, in a file and on a server.
// SPDX-License-Identifier: MIT
#include "archive/archive.h"

#include <algorithm>
#include <numeric>

#include "archive/schema.h"
#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Ids = std::vector<std::int64_t>;

const auto kThen = std::chrono::system_clock::from_time_t(1'763'750'000);

class Archives : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override {
    place_ = GetParam().make();
    archive_ = std::make_unique<Archive>(place_->Connect());
  }
  NewRecord Made(std::chrono::seconds after = 0s) {
    NewRecord made{NewUid(), records_.Next(), {}, "0.1.0", "bench 1"};
    made.record.time = kThen + after;
    return made;
  }
  std::int64_t Keep(std::chrono::seconds after, const std::function<void(NewRecord&)>& change) {
    NewRecord made = Made(after);
    change(made);
    return archive_->Keep(made);
  }
  Ids Found(const Filter& filter) { return archive_->Find(filter); }

  std::unique_ptr<TemporaryDatabase> place_;
  std::unique_ptr<Archive> archive_;
  RandomRecords records_{1};
};

TEST_P(Archives, ARecordComesBackAsItWent) {
  for (int i = 0; i < 200; ++i) {
    NewRecord made = Made(std::chrono::seconds(i));
    made.remarks = {"Pump \"3\"",
                    "Lager Süd",
                    "X radial",
                    2'980.5,
                    "Zeile 1\nZeile 2 '; --",
                    {"a%b_c", "nach Umbau", "\U0001F600"}};
    if (i % 2 == 0) made.remarks.rpm.reset();
    const auto kept = archive_->Get(archive_->Keep(made));
    ASSERT_TRUE(kept);
    EXPECT_EQ(static_cast<const NewRecord&>(*kept), made);
    EXPECT_EQ(kept->levels, LevelsFor(made.record));
    EXPECT_FALSE(kept->deleted);
  }
}

TEST_P(Archives, OtherConnectionsSeeIt) {
  const std::int64_t id = archive_->Keep(Made());
  Archive other(place_->Connect());
  EXPECT_THAT(other.Find({}), ElementsAre(id));
  EXPECT_EQ(other.Get(id), archive_->Get(id));
}

TEST_P(Archives, TheSameRecordIsKeptOnceAndAmended) {
  NewRecord made = Made();
  made.remarks.note = "first";
  const std::int64_t id = archive_->Keep(made);
  NewRecord later = made;
  later.record.status = {0x80, true};
  later.record.alarms.axes[1] = {5, 6, 7};
  later.remarks.note = "not this";
  EXPECT_EQ(archive_->Keep(later), id);
  EXPECT_EQ(archive_->Count(), 1);
  EXPECT_EQ(archive_->Get(id)->record, later.record);
  EXPECT_EQ(archive_->Get(id)->remarks.note, "first");
}

TEST_P(Archives, SeveralAreKeptOrNone) {
  std::vector<NewRecord> records{Made(), Made(), Made()};
  archive_->KeepAll(records);
  EXPECT_EQ(archive_->Count(), 3);
  records = {Made(), Made()};
  records[1].record.Of(Axis::Z).raw(3) = 0.5;  // no word
  EXPECT_THROW(archive_->KeepAll(records), RuntimeError);
  EXPECT_EQ(archive_->Count(), 3);
}

TEST_P(Archives, TheListHasAllButThePoints) {
  const NewRecord made = Made();
  const std::int64_t id = archive_->Keep(made);
  auto listed = archive_->List(Ids{id, id + 100});
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0].record.axes, (std::array<AxisRecord, 3>{}));
  listed[0].record.axes = made.record.axes;
  EXPECT_EQ(listed[0].record, made.record);
  EXPECT_FALSE(archive_->Get(id + 100));
}

TEST_P(Archives, TheLatestComesFirst) {
  const std::int64_t middle = archive_->Keep(Made(5s));
  const std::int64_t last = archive_->Keep(Made(9s));
  const std::int64_t first = archive_->Keep(Made(1s));
  EXPECT_THAT(Found({}), ElementsAre(last, middle, first));
}

TEST_P(Archives, FoundByTime) {
  archive_->Keep(Made(1s));
  const std::int64_t second = archive_->Keep(Made(2s));
  archive_->Keep(Made(3s));
  EXPECT_THAT(Found({.from = kThen + 2s, .until = kThen + 3s}), ElementsAre(second));
}

TEST_P(Archives, FoundByWhatTheUserTold) {
  const auto pump = Keep(1s, [](NewRecord& made) {
    made.remarks = {"Pump", "DE", {}, {}, "Lager GETAUSCHT", {"good", "100%"}};
  });
  const auto fan =
      Keep(2s, [](NewRecord& made) { made.remarks = {"Fan", "NDE", {}, {}, "", {"goods"}}; });
  const auto none = Keep(3s, [](NewRecord& made) { made.bench = "bench 2"; });
  EXPECT_THAT(Found({.machine = "Pump"}), ElementsAre(pump));
  EXPECT_THAT(Found({.machine = ""}), ElementsAre(none));
  EXPECT_THAT(Found({.point = "NDE"}), ElementsAre(fan));
  EXPECT_THAT(Found({.bench = "bench 2"}), ElementsAre(none));
  EXPECT_THAT(Found({.tag = "good"}), ElementsAre(pump));
  EXPECT_THAT(Found({.tag = "10%"}), IsEmpty());
  EXPECT_THAT(Found({.text = "getauscht"}), ElementsAre(pump));
  EXPECT_THAT(Found({.text = "good"}), ElementsAre(fan, pump));
  EXPECT_THAT(Found({.text = "0%"}), ElementsAre(pump));
  EXPECT_THAT(Found({.text = "'; drop table record; --"}), IsEmpty());
}

TEST_P(Archives, FoundByHowItWasTaken) {
  const auto time = Keep(1s, [](NewRecord& made) {
    made.record = {};
    made.record.kind = RecordKind::Time;
    made.record.settings = SettingsFromWords(2 << 14 | 1 << 12 | 3 << 10 | 8, 0);
    made.record.time = kThen + 1s;
    made.record.sensor.simulated = true;
  });
  const auto alarm = Keep(2s, [](NewRecord& made) {
    made.record = {};
    made.record.time = kThen + 2s;
    made.record.alarms.axes[2].status = 0x11;
  });
  EXPECT_THAT(Found({.kind = RecordKind::Time}), ElementsAre(time));
  EXPECT_THAT(Found({.kind = RecordKind::Spectrum}), ElementsAre(alarm));
  EXPECT_THAT(Found({.option = 2}), ElementsAre(time));
  EXPECT_THAT(Found({.range = 3}), ElementsAre(time));
  EXPECT_THAT(Found({.window = 1}), ElementsAre(time));
  EXPECT_THAT(Found({.option = 0}), ElementsAre(alarm));
  EXPECT_THAT(Found({.alarm = true}), ElementsAre(alarm));
  EXPECT_THAT(Found({.alarm = false}), ElementsAre(time));
  EXPECT_THAT(Found({.simulated = true}), ElementsAre(time));
  EXPECT_THAT(Found({.simulated = false}), ElementsAre(alarm));
}

TEST_P(Archives, TimesAreThoseOfTheRecordsThatFit) {
  archive_->Keep(Made(1s));
  const auto pump = [](NewRecord& made) { made.remarks.machine = "Pump"; };
  Keep(2s, pump);
  archive_->Delete(Ids{Keep(3s, pump)}, kThen);
  EXPECT_THAT(archive_->Times({}), testing::UnorderedElementsAre(kThen + 1s, kThen + 2s));
  EXPECT_THAT(archive_->Times({.machine = "Pump"}), ElementsAre(kThen + 2s));
  EXPECT_THAT(archive_->Times({.machine = "Fan"}), IsEmpty());
}

TEST_P(Archives, RemarksAreChangedAndMachinesAndPointsKnown) {
  const std::int64_t one = archive_->Keep(Made());
  const std::int64_t two = archive_->Keep(Made());
  archive_->SetRemarks(one, {"Pump", "NDE", "X up", 1'480.0, "n", {"b", "a", "b", " "}});
  archive_->SetRemarks(two, {"Pump", "DE", "", {}, "", {}});
  EXPECT_EQ(archive_->Get(one)->remarks,
            (Remarks{"Pump", "NDE", "X up", 1'480.0, "n", {"a", "b"}}));
  EXPECT_THAT(archive_->Machines(), ElementsAre("Pump"));
  EXPECT_THAT(archive_->Points("Pump"), ElementsAre("DE", "NDE"));
  EXPECT_THAT(archive_->Points("Fan"), IsEmpty());
}

TEST_P(Archives, WhatIsChangedOfRemarksIsTakenBackAndTheRestStays) {
  const std::int64_t one = archive_->Keep(Made());
  const std::int64_t two = archive_->Keep(Made());
  archive_->SetRemarks(one, {.machine = "Pump", .rpm = 1'480.0, .note = "n"});
  const RemarksChange change{
      .machine = "Fan", .rpm = std::optional<double>(), .tags = {{"b", "a"}}};
  const auto before = archive_->ChangeRemarks(
      std::vector{std::pair{one, change}, std::pair{two, change}, std::pair{two + 9, change}});
  EXPECT_EQ(archive_->Get(one)->remarks,
            (Remarks{.machine = "Fan", .note = "n", .tags = {"a", "b"}}));
  EXPECT_EQ(archive_->Get(two)->remarks, (Remarks{.machine = "Fan", .tags = {"a", "b"}}));
  ASSERT_EQ(before.size(), 2U);
  archive_->ChangeRemarks(std::vector{std::pair{one, RemarksChange{.note = "later"}}});
  archive_->ChangeRemarks(std::vector{std::pair{one, change.BackTo(before[0].second)}});
  EXPECT_EQ(archive_->Get(one)->remarks,
            (Remarks{.machine = "Pump", .rpm = 1'480.0, .note = "later"}));
}

TEST_P(Archives, ARemarkThatNoTextCanBeIsRefused) {
  const std::int64_t id = archive_->Keep(Made());
  EXPECT_THROW(archive_->SetRemarks(id, {.note = std::string("a\0b", 3)}), RuntimeError);
  EXPECT_EQ(archive_->Get(id)->remarks, Remarks{});
}

TEST_P(Archives, DeletedOnesAreBroughtBackOrGoForGood) {
  const std::int64_t one = archive_->Keep(Made(1s));
  const std::int64_t two = archive_->Keep(Made(2s));
  const std::int64_t three = archive_->Keep(Made(3s));
  archive_->Delete(Ids{one, two}, kThen + 10s);
  EXPECT_THAT(Found({}), ElementsAre(three));
  EXPECT_THAT(Found({.deleted = true}), ElementsAre(two, one));
  EXPECT_EQ(archive_->Get(one)->deleted, kThen + 10s);
  archive_->BringBack(Ids{one});
  EXPECT_THAT(Found({}), ElementsAre(three, one));
  archive_->Purge(kThen + 10s);
  EXPECT_THAT(Found({.deleted = true}), ElementsAre(two));
  archive_->Purge(kThen + 11s);
  EXPECT_THAT(Found({.deleted = true}), IsEmpty());
  EXPECT_FALSE(archive_->Get(two));
  EXPECT_THAT(archive_->Damage(), IsEmpty());
}

TEST_P(Archives, TheOldestGoFirstWhereThereIsALimit) {
  Ids ids;
  for (int i = 0; i < 200; ++i) ids.push_back(archive_->Keep(Made(std::chrono::seconds(i))));
  const auto noted = Keep(-1s, [](NewRecord& made) {
    made.record.alarms = {};
    made.remarks.note = "keep me";
  });
  const auto alarmed = Keep(-1s, [](NewRecord& made) { made.record.alarms.axes[0].status = 1; });
  EXPECT_EQ(archive_->Prune(archive_->Size()).count, 0);
  const Pruned pruned = archive_->Prune(0);
  EXPECT_FALSE(pruned.isEnough);
  EXPECT_TRUE(archive_->Get(noted));
  EXPECT_TRUE(archive_->Get(alarmed));
}

TEST_P(Archives, TheLimitRemovesNoMoreThanItMust) {
  for (int i = 0; i < 300; ++i) {
    Keep(std::chrono::seconds(i), [](NewRecord& made) { made.record.alarms = {}; });
  }
  const std::int64_t before = archive_->Size();
  const Pruned pruned = archive_->Prune(before * 3 / 4);
  if (GetParam().name == std::string("OnAServer")) GTEST_SKIP() << "the server tidies up later";
  EXPECT_TRUE(pruned.isEnough);
  EXPECT_LE(archive_->Size(), before * 3 / 4);
  EXPECT_LT(pruned.count, 150);
  EXPECT_EQ(archive_->Count(), 300 - pruned.count);
  EXPECT_EQ(pruned.oldest, kThen);
  EXPECT_EQ(pruned.newest, kThen + std::chrono::seconds(pruned.count - 1));
}

TEST_P(Archives, ItsTablesAreTold) {
  auto connection = place_->Connect();
  EXPECT_EQ(ContentsOf(*connection), Contents::Archive);
  connection->Run("update about set value = 99");
  EXPECT_EQ(ContentsOf(*connection), Contents::Newer);
  EXPECT_THROW(Archive(place_->Connect()), database::DatabaseError);
  EXPECT_THROW((void)Archive::ForReading(place_->Connect()), database::DatabaseError);
  connection->Run("update about set value = 0");
  EXPECT_EQ(ContentsOf(*connection), Contents::Foreign);
}

TEST_P(Archives, AForeignDatabaseIsLeftAlone) {
  const auto place = GetParam().make();
  place->Connect()->Run("create table theirs(id bigint)");
  EXPECT_THROW(Archive(place->Connect()), database::DatabaseError);
  EXPECT_FALSE(place->Connect()->HasTable("record"));
  EXPECT_THROW((void)Archive::ForReading(place->Connect()), database::DatabaseError);
}

KESTREL_ON_EVERY_DATABASE(Archives);

TEST(Tags, AreCleaned) {
  EXPECT_THAT(CleanTags({" b ", "a", "", "b", "two\nlines"}), ElementsAre("a", "b", "two lines"));
}

}  // namespace
}  // namespace kestrel::archive
