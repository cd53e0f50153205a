// What a keeper does where something stands in the way, and what it tells of it.
// SPDX-License-Identifier: MIT
#include <future>

#include "archive/keepers.h"

namespace kestrel::archive {
namespace {

using namespace std::chrono_literals;
using database::DatabaseError;
using database::Fault;
using testing::HasSubstr;

class KeepersInTrouble : public Keepers {
 protected:
  // Records that wait in the file from the last time.
  std::vector<NewRecord> LeaveWaiting(int count) {
    std::vector<NewRecord> made;
    isAway_ = true;
    {
      Keeper keeper(Choice());
      for (int i = 0; i < count; ++i) keeper.Keep(made.emplace_back(Made()));
    }
    isAway_ = false;
    EXPECT_EQ(Waiting(), count);
    return made;
  }
};

TEST_P(KeepersInTrouble, AnArchiveThatIsLostAtARecordIsToldAndTheRecordWaits) {
  Keeper keeper(Choice());
  keeper.Keep(Made());
  ASSERT_TRUE(keeper.Finish(kPatience));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 1; }));
  EXPECT_FALSE(keeper.State().fault);
  isAway_ = true;
  keeper.Keep(Made());
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 1; }));
  EXPECT_EQ(keeper.State().trouble, "the server is away");
  EXPECT_EQ(keeper.State().fault, Fault::Lost);
  EXPECT_EQ(keeper.State().unsafe, 0);
  EXPECT_EQ(Waiting(), 1);
  isAway_ = false;
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 2; }));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 0; }));
  EXPECT_FALSE(keeper.State().fault);
}

TEST_P(KeepersInTrouble, ATextThatNoArchiveTakesIsRefusedAndTheArchiveStaysOpen) {
  int opened = 0;
  KeeperChoice choice = Choice();
  choice.open = [&opened, open = choice.open] {
    ++opened;
    return open();
  };
  {
    Keeper keeper(choice);
    NewRecord made = Made();
    made.remarks.note = std::string("a\0b", 3);
    keeper.Keep(made);
    keeper.Keep(Made());
    ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 1; }));
    EXPECT_EQ(keeper.State().refused, 1);
    EXPECT_THAT(keeper.State().trouble, HasSubstr("A record cannot be archived: a remark"));
  }
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(Count(), 1);
}

TEST_P(KeepersInTrouble, WithoutAWaitingFileRecordsStayInMemoryUntilTheArchiveIsBack) {
  isAway_ = true;
  Keeper keeper({.open = Choice().open, .retry = 5ms});
  keeper.Keep(Made());
  EXPECT_FALSE(keeper.Finish(kPatience)) << "it does not wait for what cannot be had";
  EXPECT_EQ(keeper.State().unsafe, 1);
  EXPECT_EQ(keeper.State().trouble, "the server is away");
  isAway_ = false;
  EXPECT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 1; }));
  EXPECT_EQ(keeper.State().unsafe, 0);
  EXPECT_EQ(Count(), 1);
}

TEST_P(KeepersInTrouble, WhatIsNoFaultOfADatabaseIsToldWithoutAKind) {
  Keeper keeper({.open = []() -> Archive { throw RuntimeError("no road to it"); }, .retry = 5ms});
  EXPECT_TRUE(Gets(keeper, [](const KeeperState& state) { return !state.trouble.empty(); }));
  EXPECT_EQ(keeper.State().trouble, "no road to it");
  EXPECT_FALSE(keeper.State().fault);
}

TEST_P(KeepersInTrouble, AWaitingRecordThatIsDamagedStaysAndHoldsUpNoOther) {
  LeaveWaiting(3);
  waiting_.Connect()->Run("delete from points where record = 2");
  {
    Keeper keeper(Choice());
    ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return !state.trouble.empty(); }));
    EXPECT_EQ(keeper.State().trouble,
              "Records that wait to be archived cannot be brought over: record 2 has no points");
    EXPECT_EQ(keeper.State().kept, 2);
  }
  EXPECT_EQ(Count(), 2);
  EXPECT_EQ(Waiting(), 1) << "it is not lost";
}

TEST_P(KeepersInTrouble, AWaitingFileThatAnotherWritesToIsBroughtOverWhenThatIsDone) {
  LeaveWaiting(3);
  KeeperChoice choice = Choice();
  choice.openWaiting = [this] {
    return Archive(std::make_unique<database::SqliteDatabase>(
        database::SqliteChoice{.file = waiting_.Name(), .patience = 0ms}));
  };
  const auto other = waiting_.Connect();
  other->Begin();
  Keeper keeper(choice);
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return !state.trouble.empty(); }));
  EXPECT_EQ(keeper.State().fault, Fault::Busy);
  other->Rollback();
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 3; }));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.trouble.empty(); }));
  EXPECT_EQ(Count(), 3);
  EXPECT_EQ(Waiting(), 0);
}

TEST_P(KeepersInTrouble, RecordsThatAnotherHasBroughtOverMeanwhileAreLeftToIt) {
  const std::vector<NewRecord> made = LeaveWaiting(3);
  KeeperChoice choice = Choice();
  // Between the list and the first record.
  choice.openWaiting = [this, isDone = std::make_shared<bool>(false)] {
    return Archive(std::make_unique<WrappedDatabase>(
        waiting_.Connect(), [this, isDone](const std::string& sql) {
          if (*isDone || sql.find("where r.id = $1") == std::string::npos) return;
          *isDone = true;
          Archive(waiting_.Connect()).Remove(std::vector<std::int64_t>{1});
        }));
  };
  Keeper keeper(choice);
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 2; }));
  EXPECT_EQ(keeper.State().trouble, "");
  EXPECT_EQ(Waiting(), 0);
  Archive archive(place_->Connect());
  std::vector<NewRecord> kept;
  for (const KeptRecord& record : archive.List(archive.Find({}))) {
    kept.push_back(*archive.Get(record.id));
  }
  EXPECT_THAT(kept, testing::UnorderedElementsAre(made[1], made[2]));
}

TEST_P(KeepersInTrouble, ManyThatWaitedAreBroughtOverTheOldestFirst) {
  constexpr int kMany = 150;  // more than are brought over at once
  std::vector<NewRecord> made = LeaveWaiting(kMany);
  {
    Keeper keeper(Choice());
    ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == kMany; }));
  }
  EXPECT_EQ(Waiting(), 0);
  std::ranges::stable_sort(made, {}, [](const NewRecord& record) { return record.record.time; });
  Archive archive(place_->Connect());
  std::vector<std::int64_t> ids = archive.Find({});
  ASSERT_EQ(ids.size(), made.size());
  std::ranges::sort(ids);
  const std::vector<KeptRecord> kept = archive.List(ids);
  for (std::size_t i = 0; i < made.size(); ++i) EXPECT_EQ(kept[i].uid, made[i].uid);
}

TEST_P(KeepersInTrouble, AnArchiveThatIsBackIsTriedAgainNoSoonerThanIsAskedFor) {
  std::atomic<int> tries = 0;
  Keeper keeper({.open = [&tries]() -> Archive {
                   ++tries;
                   throw DatabaseError(Fault::Lost, "away");
                 },
                 .retry = 60s});
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return !state.trouble.empty(); }));
  for (int i = 0; i < 3; ++i) keeper.Keep(Made());
  EXPECT_FALSE(keeper.Finish(100ms));
  EXPECT_EQ(tries, 1);
}

TEST_P(KeepersInTrouble, ALimitThatCannotBeKeptIsTold) {
  KeeperChoice choice = Choice();
  choice.limit = 1;
  Keeper keeper(choice);
  NewRecord noted = Made();
  noted.remarks.note = "keep me";
  keeper.Keep(noted);
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return !state.pruned.isEnough; }));
  EXPECT_EQ(keeper.State().pruned.count, 0);
  EXPECT_EQ(Count(), 1);
}

TEST_P(KeepersInTrouble, WhatTheLimitRemovesIsToldFromTheFirstToTheLast) {
  KeeperState told;  // of the keeper's thread until its end
  KeeperChoice choice = Choice();
  choice.limit = 1;  // all without a note go, each time it is looked at
  choice.told = [&told](const KeeperState& state) { told = state; };
  constexpr int kRecords = 1 + 2 * kKeptBetweenPrunes;
  std::vector<NewRecord> made;
  {
    Keeper keeper(choice);
    for (int i = 0; i < kRecords + kKeptBetweenPrunes; ++i) {
      made.push_back(Made());
      made.back().record.alarms = {};
      made.back().record.time = std::chrono::system_clock::from_time_t(1'763'750'000 + i);
      if (i >= kRecords) made.back().remarks.note = "keep me";
      keeper.Keep(made.back());
    }
  }
  EXPECT_EQ(told.kept, kRecords + kKeptBetweenPrunes);
  EXPECT_EQ(told.pruned.count, kRecords);
  EXPECT_EQ(told.pruned.oldest, made.front().record.time);
  EXPECT_EQ(told.pruned.newest, made[kRecords - 1].record.time) << "none went the last time";
  EXPECT_EQ(Count(), kKeptBetweenPrunes);
}

TEST_P(KeepersInTrouble, AnAmendmentOfARecordAtWorkIsNotLost) {
  std::promise<void> mayOpen;
  KeeperChoice choice = Choice();
  choice.open = [&mayOpen, open = choice.open] {
    mayOpen.get_future().wait();
    return open();
  };
  Keeper keeper(choice);
  NewRecord made = Made();
  for (const int status : {1, 2, 3}) {
    made.record.alarms.axes[0].status = status;
    keeper.Keep(made);
  }
  EXPECT_EQ(keeper.State().unsafe, 1) << "it is one record";
  NewRecord other = Made();
  other.record.alarms = {};
  keeper.Keep(other);
  EXPECT_EQ(keeper.State().unsafe, 2);
  mayOpen.set_value();
  ASSERT_TRUE(keeper.Finish(kPatience));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 3; }));
  Archive archive(place_->Connect());
  EXPECT_EQ(archive.Count(), 2);
  for (const std::int64_t id : archive.Find({})) {
    const auto kept = archive.Get(id);
    const bool isAmended = kept->uid == made.uid;
    EXPECT_EQ(kept->record.alarms.axes[0].status == 3, isAmended);
  }
}

KESTREL_ON_EVERY_DATABASE(KeepersInTrouble);

}  // namespace
}  // namespace kestrel::archive
