// Records that belong together are found together; archives of earlier versions are brought along.
// SPDX-License-Identifier: MIT
#include "archive/wide_sets.h"

#include "archive/journal.h"
#include "archive/rescue.h"
#include "archive/schema.h"
#include "archive/version_1.h"
#include "archive/wrapped_database.h"
#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Ids = std::vector<std::int64_t>;

const auto kThen = std::chrono::system_clock::from_time_t(1'763'750'000);

NewRecord Spectrum(int option, std::chrono::seconds after, std::optional<WideMark> wide) {
  RandomRecords records(static_cast<unsigned>(option));
  NewRecord made{NewUid(), records.Next(), {.machine = "Pump"}, "0.1.0", "bench 1", wide};
  while (made.record.kind != RecordKind::Spectrum) made.record = records.Next();
  made.record.settings = SettingsFromWords(option << 14 | 1 << 12 | 4, 0);
  made.record.time = kThen + after;
  return made;
}

class WideSets : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override {
    place_ = GetParam().make();
    archive_ = std::make_unique<Archive>(place_->Connect());
  }
  // Of the options given, in the order in which they were taken; ids likewise.
  Ids KeepSet(const Uid& uid, std::initializer_list<int> options, std::chrono::seconds after,
              unsigned wanted = 0b1111) {
    Ids ids;
    for (const int option : options) {
      ids.push_back(archive_->Keep(Spectrum(option, after++, WideMark{uid, wanted})));
    }
    return ids;
  }
  static std::vector<int> OptionsOf(const WideSet& set) {
    std::vector<int> options;
    for (const KeptRecord& kept : set.records) options.push_back(kept.record.settings.option);
    return options;
  }

  std::unique_ptr<TemporaryDatabase> place_;
  std::unique_ptr<Archive> archive_;
  const Uid one_ = NewUid();
  const Uid two_ = NewUid();
};

TEST_P(WideSets, TheMarkOfARecordComesBackAsItWent) {
  const NewRecord made = Spectrum(2, 1s, WideMark{one_, 0b1110});
  const auto kept = archive_->Get(archive_->Keep(made));
  ASSERT_TRUE(kept);
  EXPECT_EQ(static_cast<const NewRecord&>(*kept), made);
  EXPECT_EQ(archive_->List(Ids{kept->id}).front().wide, made.wide);
}

TEST_P(WideSets, ASetIsReadTheFinestFirstWithItsPoints) {
  KeepSet(one_, {0, 3, 1, 2}, 1s);
  archive_->Keep(Spectrum(1, 9s, {}));
  const auto set = GetWideSet(*archive_, one_);
  ASSERT_TRUE(set);
  EXPECT_THAT(OptionsOf(*set), ElementsAre(3, 2, 1, 0));
  EXPECT_TRUE(set->IsWhole());
  EXPECT_EQ(set->records[0].record.axes, Spectrum(3, 2s, {}).record.axes);
  EXPECT_FALSE(GetWideSet(*archive_, two_));
}

TEST_P(WideSets, AreListedTheLatestFirst) {
  KeepSet(one_, {0, 1}, 1s);
  KeepSet(two_, {0, 1}, 20s);
  archive_->Keep(Spectrum(1, 30s, {}));
  EXPECT_THAT(FindWideSets(*archive_, {}), ElementsAre(two_, one_));
  EXPECT_THAT(FindWideSets(*archive_, {.until = kThen + 10s}), ElementsAre(one_));
  EXPECT_THAT(FindWideSets(*archive_, {.machine = "Fan"}), IsEmpty());
}

TEST_P(WideSets, RecordsAreFoundByTheirSetAndApart) {
  const Ids first = KeepSet(one_, {0, 1}, 1s);
  const Ids second = KeepSet(two_, {2}, 20s);
  const std::int64_t alone = archive_->Keep(Spectrum(1, 30s, {}));
  EXPECT_THAT(archive_->Find({.set = one_}), ElementsAre(first[1], first[0]));
  EXPECT_THAT(archive_->Find({.wide = true}), ElementsAre(second[0], first[1], first[0]));
  EXPECT_THAT(archive_->Find({.wide = false}), ElementsAre(alone));
}

TEST_P(WideSets, WhatIsMissingIsTold) {
  const Ids ids = KeepSet(one_, {0, 1, 2}, 1s);  // stopped before option 3
  archive_->Delete(Ids{ids[1]}, kThen);
  auto set = GetWideSet(*archive_, one_);
  ASSERT_TRUE(set);
  EXPECT_THAT(OptionsOf(*set), ElementsAre(2, 0));
  EXPECT_THAT(set->deleted, ElementsAre(1));
  EXPECT_THAT(set->missing, ElementsAre(3));
  EXPECT_FALSE(set->IsWhole());
  archive_->BringBack(Ids{ids[1]});
  archive_->Remove(Ids{ids[2]});
  set = GetWideSet(*archive_, one_);
  EXPECT_THAT(OptionsOf(*set), ElementsAre(1, 0));
  EXPECT_THAT(set->deleted, IsEmpty());
  EXPECT_THAT(set->missing, ElementsAre(3, 2));
}

TEST_P(WideSets, OptionsThatWereNotWantedAreNotMissing) {
  KeepSet(one_, {1, 2}, 1s, 0b1110);
  EXPECT_THAT(GetWideSet(*archive_, one_)->missing, ElementsAre(3));
}

TEST_P(WideSets, ASetOfWhichAllIsDeletedIsKnownStill) {
  archive_->Delete(KeepSet(one_, {0, 3}, 1s), kThen);
  const auto set = GetWideSet(*archive_, one_);
  ASSERT_TRUE(set);
  EXPECT_THAT(set->records, IsEmpty());
  EXPECT_THAT(set->deleted, ElementsAre(3, 0));
  EXPECT_THAT(FindWideSets(*archive_, {}), IsEmpty());
}

TEST_P(WideSets, OfTwoRecordsOfOneOptionTheLatestCounts) {
  KeepSet(one_, {0, 1}, 1s);
  const Ids again = KeepSet(one_, {1}, 20s);
  const auto set = GetWideSet(*archive_, one_);
  EXPECT_THAT(OptionsOf(*set), ElementsAre(1, 0));
  EXPECT_EQ(set->records[0].id, again[0]);
}

TEST_P(WideSets, AnOptionOfWhichOneRecordIsThereAndOneDeletedIsThere) {
  const Ids ids = KeepSet(one_, {0, 0}, 1s, 0b1);
  archive_->Delete(Ids{ids[1]}, kThen);
  const auto set = GetWideSet(*archive_, one_);
  EXPECT_THAT(set->deleted, IsEmpty());
  EXPECT_TRUE(set->IsWhole());
}

TEST_P(WideSets, OneWithADeletedRecordIsNotWholeThoughNoneIsMissing) {
  const Ids ids = KeepSet(one_, {0, 1}, 1s, 0b11);
  EXPECT_TRUE(GetWideSet(*archive_, one_)->IsWhole());
  archive_->Delete(Ids{ids[0]}, kThen);
  const auto set = GetWideSet(*archive_, one_);
  EXPECT_THAT(set->missing, IsEmpty());
  EXPECT_FALSE(set->IsWhole());
}

TEST_P(WideSets, WhatAnyOfItsRecordsWantedIsWanted) {
  const Ids ids = KeepSet(one_, {0}, 1s, 0b0001);
  KeepSet(one_, {1}, 2s, 0b1010);
  EXPECT_EQ(GetWideSet(*archive_, one_)->wanted, 0b1011U);
  EXPECT_THAT(GetWideSet(*archive_, one_)->missing, ElementsAre(3));
  archive_->Delete(ids, kThen);
  EXPECT_EQ(GetWideSet(*archive_, one_)->wanted, 0b1011U);
}

TEST_P(WideSets, ARecordThatAnotherRemovesMeanwhileIsMissing) {
  const Ids ids = KeepSet(one_, {0, 1}, 1s, 0b11);
  Archive slow(std::make_unique<WrappedDatabase>(place_->Connect(), [&](const std::string& sql) {
    if (sql.find("where r.id = $1") != std::string::npos) archive_->Remove(Ids{ids[1]});
  }));
  const auto set = GetWideSet(slow, one_);
  ASSERT_TRUE(set);
  EXPECT_THAT(OptionsOf(*set), ElementsAre(0));
  EXPECT_THAT(set->missing, ElementsAre(1));
}

TEST_P(WideSets, ARescuedSetIsASet) {
  KeepSet(one_, {0, 1, 2, 3}, 1s);
  const auto other = GetParam().make();
  Archive into(other->Connect());
  Rescue(*archive_, into);
  EXPECT_TRUE(GetWideSet(into, one_)->IsWhole());
}

// One with sets and without a journal.
TEST_P(WideSets, OfAnArchiveOfVersion2AreReadWithoutItsBeingChanged) {
  const Ids ids = KeepSet(one_, {0, 1}, 1s);
  archive_->Connection().Run("drop table journal");
  archive_->Connection().Run("update about set value = 2");
  Archive archive = Archive::ForReading(place_->Connect());
  EXPECT_EQ(archive.Version(), 2);
  EXPECT_THAT(archive.Find({.wide = true}), ElementsAre(ids[1], ids[0]));
  EXPECT_THAT(archive.Find({.set = one_}), ElementsAre(ids[1], ids[0]));
  EXPECT_THAT(FindWideSets(archive, {}), ElementsAre(one_));
  EXPECT_EQ(archive.Get(ids[0])->wide, (WideMark{one_, 0b1111}));
  EXPECT_THAT(EntriesOf(archive), IsEmpty());
  EXPECT_EQ(ContentsOf(*place_->Connect()), Contents::Earlier);
}

TEST_P(WideSets, OfAnArchiveOfVersion2AreThereWhenItIsBroughtUpToDate) {
  KeepSet(one_, {0, 1}, 1s);
  archive_->Connection().Run("drop table journal");
  archive_->Connection().Run("update about set value = 2");
  Archive archive(place_->Connect());
  EXPECT_EQ(archive.Version(), kSchemaVersion);
  EXPECT_THAT(FindWideSets(archive, {}), ElementsAre(one_));
  EXPECT_THAT(EntriesOf(archive), IsEmpty());
}

KESTREL_ON_EVERY_DATABASE(WideSets);

class ArchivesOfVersion1 : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override {
    place_ = GetParam().make();
    MakeVersion1(*place_->Connect());
  }
  static void ExpectItsRecord(Archive& archive) {
    const Ids ids = archive.Find({});
    ASSERT_EQ(ids.size(), 1U);
    const auto kept = archive.Get(ids[0]);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->remarks.machine, "Pump 3");
    EXPECT_THAT(kept->remarks.tags, ElementsAre("old"));
    EXPECT_EQ(kept->record.settings.option, 1);
    EXPECT_NEAR(kept->record.Values(Axis::Y)[40], 0.5734, 1e-4);
    EXPECT_EQ(kept->levels, LevelsFor(kept->record));
    EXPECT_FALSE(kept->wide);
  }

  std::unique_ptr<TemporaryDatabase> place_;
};

TEST_P(ArchivesOfVersion1, AreBroughtUpToDateWithAllTheyHold) {
  EXPECT_EQ(ContentsOf(*place_->Connect()), Contents::Earlier);
  Archive archive(place_->Connect());
  EXPECT_EQ(ContentsOf(*place_->Connect()), Contents::Archive);
  EXPECT_EQ(archive.Version(), kSchemaVersion);
  ExpectItsRecord(archive);
  const Uid set = NewUid();
  archive.Keep(Spectrum(2, 5s, WideMark{set, 0b1110}));
  EXPECT_THAT(FindWideSets(archive, {}), ElementsAre(set));
  EXPECT_THAT(Archive(place_->Connect()).Damage(), IsEmpty());
}

TEST_P(ArchivesOfVersion1, AreReadWithoutBeingChanged) {
  Archive archive = Archive::ForReading(place_->Connect());
  EXPECT_EQ(archive.Version(), 1);
  ExpectItsRecord(archive);
  EXPECT_EQ(archive.Find({.wide = false}).size(), 1U);
  EXPECT_THAT(archive.Find({.wide = true}), IsEmpty());
  EXPECT_THAT(FindWideSets(archive, {}), IsEmpty());
  EXPECT_FALSE(GetWideSet(archive, NewUid()));
  EXPECT_EQ(ContentsOf(*place_->Connect()), Contents::Earlier);
}

TEST_P(ArchivesOfVersion1, AreRescuedIntoOneOfToday) {
  Archive from = Archive::ForReading(place_->Connect());
  const auto other = GetParam().make();
  Archive into(other->Connect());
  EXPECT_EQ(Rescue(from, into).kept, 1);
  ExpectItsRecord(into);
}

KESTREL_ON_EVERY_DATABASE(ArchivesOfVersion1);

TEST(Uids, AreReadBackFromTheirTexts) {
  const Uid uid = NewUid();
  EXPECT_EQ(UidFrom(TextOf(uid)), uid);
  EXPECT_EQ(TextOf(Uid{0x01, 0xab}), "01ab0000000000000000000000000000");
  for (const char* text :
       {"", "01ab", "01ab000000000000000000000000000g", "01ab00000000000000000000000000000",
        "-1ab0000000000000000000000000000"}) {
    EXPECT_FALSE(UidFrom(text)) << text;
  }
}

}  // namespace
}  // namespace kestrel::archive
