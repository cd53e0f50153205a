// Records are kept by a thread of its own, through everything that may befall the archive.
// SPDX-License-Identifier: MIT
#include "archive/keeper.h"

#include "archive/keepers.h"

namespace kestrel::archive {
namespace {

using namespace std::chrono_literals;

TEST_P(Keepers, WhatIsHandedOverIsArchivedInTurn) {
  Keeper keeper(Choice());
  std::vector<NewRecord> made;
  for (int i = 0; i < 20; ++i) {
    made.push_back(Made());
    keeper.Keep(made.back());
  }
  ASSERT_TRUE(keeper.Finish(kPatience));
  Archive archive(place_->Connect());
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 20; }));
  EXPECT_EQ(keeper.State().trouble, "");
  const auto last = archive.Get(*keeper.State().lastId);
  EXPECT_EQ(static_cast<const NewRecord&>(*last), made.back());
  EXPECT_FALSE(std::filesystem::exists(waiting_.Name()));
}

TEST_P(Keepers, WhatIsHandedOverBeforeTheEndIsArchived) {
  {
    Keeper keeper(Choice());
    for (int i = 0; i < 20; ++i) keeper.Keep(Made());
  }
  EXPECT_EQ(Count(), 20);
}

TEST_P(Keepers, EveryChangeIsTold) {
  std::mutex mutex;
  std::vector<KeeperState> told;
  KeeperChoice choice = Choice();
  choice.told = [&](const KeeperState& state) {
    const std::lock_guard lock(mutex);
    told.push_back(state);
  };
  {
    Keeper keeper(choice);
    keeper.Keep(Made());
  }
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.back().kept, 1);
  EXPECT_EQ(told.back().unsafe, 0);
}

TEST_P(Keepers, RecordsWaitInAFileWhileTheArchiveIsAwayAndAreBroughtOverOnce) {
  isAway_ = true;
  Keeper keeper(Choice());
  for (int i = 0; i < 5; ++i) keeper.Keep(Made());
  ASSERT_TRUE(keeper.Finish(kPatience));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 5; }));
  EXPECT_EQ(keeper.State().trouble, "the server is away");
  EXPECT_EQ(Waiting(), 5);
  isAway_ = false;
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 0; }));
  EXPECT_EQ(keeper.State().trouble, "");
  EXPECT_EQ(Count(), 5);
  EXPECT_EQ(Waiting(), 0);
}

TEST_P(Keepers, RecordsThatWaitedSinceTheLastTimeAreBroughtOver) {
  isAway_ = true;
  {
    Keeper keeper(Choice());
    for (int i = 0; i < 3; ++i) keeper.Keep(Made());
  }
  EXPECT_EQ(Waiting(), 3);
  isAway_ = false;
  Keeper keeper(Choice());
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 3; }));
  EXPECT_EQ(Count(), 3);
}

TEST_P(Keepers, AnArchiveThatGoesAwayInTheMiddleLosesNothingAndDoublesNothing) {
  Keeper keeper(Choice());
  for (int i = 0; i < 200; ++i) {
    if (i % 7 == 0) isAway_ = !isAway_;
    keeper.Keep(Made());
    if (i % 5 == 0) std::this_thread::sleep_for(3ms);
  }
  isAway_ = false;
  ASSERT_TRUE(keeper.Finish(kPatience));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 0; }));
  EXPECT_EQ(Count(), 200);
  EXPECT_EQ(Waiting(), 0);
}

TEST_P(Keepers, WithNoPlaceAtAllRecordsStayInMemoryAndAreKeptLater) {
  isAway_ = isWaitingAway_ = true;
  Keeper keeper(Choice());
  for (int i = 0; i < 3; ++i) keeper.Keep(Made());
  EXPECT_FALSE(keeper.Finish(50ms));
  EXPECT_TRUE(Gets(keeper, [](const KeeperState& state) {
    return state.unsafe == 3 && !state.trouble.empty();
  }));
  isAway_ = isWaitingAway_ = false;
  EXPECT_TRUE(keeper.Finish(kPatience));
  EXPECT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 3; }));
  EXPECT_EQ(Count(), 3);
}

TEST_P(Keepers, ARecordAndItsAmendmentsInMemoryAreOneRecord) {
  isAway_ = isWaitingAway_ = true;
  Keeper keeper(Choice());
  for (int i = 0; i < 2; ++i) {
    NewRecord made = Made();
    for (const int status : {1, 2, 3}) {
      made.record.alarms.axes[0].status = status;
      keeper.Keep(made);
    }
    EXPECT_EQ(keeper.State().unsafe, i + 1);
  }
  isAway_ = isWaitingAway_ = false;
  ASSERT_TRUE(keeper.Finish(kPatience));
  // The waiting file came back first, and may have taken them.
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 0; }));
  Archive archive(place_->Connect());
  for (const std::int64_t id : archive.Find({})) {
    EXPECT_EQ(archive.Get(id)->record.alarms.axes[0].status, 3);
  }
  EXPECT_EQ(Count(), 2);
}

TEST_P(Keepers, ItEndsWithNoPlaceAtAll) {
  isAway_ = isWaitingAway_ = true;
  Keeper keeper(Choice());
  keeper.Keep(Made());
}

TEST_P(Keepers, AnAmendmentFollowsItsRecordWhereverThatIs) {
  isAway_ = true;
  Keeper keeper(Choice());
  NewRecord made = Made();
  keeper.Keep(made);
  ASSERT_TRUE(keeper.Finish(kPatience));
  isAway_ = false;
  made.record.alarms.axes[2].status = 0x17;
  made.record.alarms.statusKnown = true;
  keeper.Keep(made);
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.waiting == 0; }));
  ASSERT_TRUE(keeper.Finish(kPatience));
  ASSERT_EQ(Count(), 1);
  Archive archive(place_->Connect());
  EXPECT_EQ(archive.Get(archive.Find({}).front())->record, made.record);
}

TEST_P(Keepers, ARecordThatCannotBeKeptIsToldAndHoldsUpNoOther) {
  Keeper keeper(Choice());
  NewRecord made = Made();
  made.record.Of(Axis::Y).raw(7) = 0.25;
  keeper.Keep(made);
  keeper.Keep(Made());
  ASSERT_TRUE(keeper.Finish(kPatience));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 1; }));
  EXPECT_EQ(keeper.State().refused, 1);
  EXPECT_NE(keeper.State().trouble.find("0.25"), std::string::npos);
  EXPECT_EQ(Count(), 1);
}

TEST_P(Keepers, AWaitingRecordThatTheArchiveRefusesStaysAndHoldsUpNoOther) {
  isAway_ = true;
  {
    Keeper keeper(Choice());
    for (int i = 0; i < 3; ++i) keeper.Keep(Made());
  }
  waiting_.Connect()->Run("update record set note = 'a' || char(0) || 'b' where id = 2");
  isAway_ = false;
  {
    Keeper keeper(Choice());
    keeper.Keep(Made());
    ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 3; }));
    EXPECT_THAT(keeper.State().trouble, testing::HasSubstr("A record cannot be archived: "));
  }
  EXPECT_EQ(Count(), 3);
  EXPECT_EQ(Waiting(), 1) << "it is not lost";
}

TEST_P(Keepers, AWaitingFileThatIsDamagedHoldsUpNoRecord) {
  {
    std::ofstream file(waiting_.Name(), std::ios::binary);
    file << std::string(20'000, 'x');
  }
  Keeper keeper(Choice());
  keeper.Keep(Made());
  EXPECT_TRUE(keeper.Finish(1s));
  ASSERT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.kept == 1; }));
  EXPECT_THAT(keeper.State().trouble, testing::HasSubstr("cannot be brought over: "));
  EXPECT_EQ(Count(), 1);
  EXPECT_EQ(std::filesystem::file_size(waiting_.Name()), 20'000U);
}

TEST_P(Keepers, TwoKeepersShareOneArchive) {
  Keeper one(Choice());
  Keeper two(Choice());
  for (int i = 0; i < 50; ++i) {
    one.Keep(Made());
    two.Keep(Made());
  }
  ASSERT_TRUE(one.Finish(kPatience));
  ASSERT_TRUE(two.Finish(kPatience));
  ASSERT_TRUE(Gets(one, [](const KeeperState& state) { return state.waiting == 0; }));
  ASSERT_TRUE(Gets(two, [](const KeeperState& state) { return state.waiting == 0; }));
  EXPECT_EQ(Count(), 100);
}

TEST_P(Keepers, TheLimitIsKeptAndTold) {
  if (GetParam().name == std::string("OnAServer")) GTEST_SKIP() << "the server tidies up later";
  KeeperChoice choice = Choice();
  choice.limit = 400'000;
  Keeper keeper(choice);
  for (int i = 0; i < 300; ++i) {
    NewRecord made = Made();
    made.record.alarms = {};
    keeper.Keep(made);
  }
  ASSERT_TRUE(keeper.Finish(kPatience));
  EXPECT_TRUE(Gets(keeper, [](const KeeperState& state) { return state.pruned.count > 0; }));
  EXPECT_LT(Archive(place_->Connect()).Size(), 600'000);
  EXPECT_TRUE(keeper.State().pruned.isEnough);
}

KESTREL_ON_EVERY_DATABASE(Keepers);

}  // namespace
}  // namespace kestrel::archive
