// What is rescued of a damaged archive, whatever of it is damaged, and what stands in the way.
// SPDX-License-Identifier: MIT
#include "archive/rescue.h"

#include <cerrno>
#include <set>

#include "archive/operations.h"
#include "archive/place.h"
#include "support/seeds.h"
#include "support/sqlite_call_faults.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using testing::IsEmpty;

constexpr std::size_t kPage = 16384;
constexpr int kRecords = 40;

class Rescues : public testing::Test {
 protected:
  Rescues() {
    Archive archive = Open({Name("whole.db")});
    std::vector<NewRecord> records;
    std::vector<JournalEntry> entries;
    for (int number = 0; number < kRecords; ++number) {
      records.push_back(Numbered(number));
      entries.push_back(NumberedEntry(number));
    }
    archive.KeepAll(records);
    PutEntries(archive, entries);
  }
  [[nodiscard]] std::string Name(const std::string& file) const {
    return (folder_.path() / file).string();
  }
  void Forget(const std::string& file) const {
    for (const char* end : {"", "-wal", "-shm"}) {
      std::filesystem::remove(folder_.path() / (file + end));
    }
  }
  [[nodiscard]] std::string Whole() const { return folder_.Content("whole.db"); }
  [[nodiscard]] std::string Damaged(const std::string& bytes) const {
    Forget("damaged.db");
    return folder_.Write("damaged.db", bytes).string();
  }
  // Into a new archive; gives up after so many asked-for numbers.
  Rescued RescueFrom(const std::string& file, std::int64_t most = 1'000'000) {
    Forget("saved.db");
    Archive from = OpenForRescue({file});
    Archive into = Open({Name("saved.db")});
    std::int64_t asked = 0;
    const Rescued rescued = Rescue(from, into, [&](std::int64_t) { return ++asked < most; });
    EXPECT_LT(asked, most) << "it goes on for ever";
    EXPECT_THAT(into.Damage(), IsEmpty());
    return rescued;
  }
  Holding Saved() {
    Archive archive = Open({Name("saved.db")});
    return HeldBy(archive);
  }

  TemporaryFolder folder_;
};

TEST_F(Rescues, AWholeArchiveIsRescuedWhole) {
  const Rescued rescued = RescueFrom(Name("whole.db"));
  EXPECT_EQ(rescued.kept, kRecords);
  EXPECT_EQ(rescued.journalKept, kRecords);
  EXPECT_EQ(rescued.lost + rescued.withoutSource + rescued.journalLost, 0);
  Archive whole = Open({Name("whole.db")});
  EXPECT_EQ(Saved(), HeldBy(whole));
}

TEST_F(Rescues, ItsOwnerIsToldHowManyAreDoneAndMayEndIt) {
  Archive from = OpenForRescue({Name("whole.db")});
  Archive into = Open({Name("saved.db")});
  std::vector<std::int64_t> told;
  const Rescued rescued = Rescue(from, into, [&](std::int64_t done) {
    told.push_back(done);
    return done < 3;
  });
  EXPECT_THAT(told, testing::ElementsAre(0, 1, 2, 3));
  EXPECT_EQ(rescued.kept, 3);
  EXPECT_EQ(rescued.lost, 0) << "what was not looked at is not lost";
  EXPECT_EQ(into.Count(), 3);
}

// With what tells of sensor, program and bench gone.
NewRecord WithoutSource(NewRecord record) {
  record.record.sensor = {};
  record.program.clear();
  record.bench.clear();
  return record;
}

TEST_F(Rescues, APageThatIsLostTakesNoOtherRecordsWithIt) {
  const std::string whole = Whole();
  ASSERT_GT(whole.size(), 8 * kPage);
  std::vector<std::size_t> kept;
  std::int64_t withoutSource = 0;
  for (std::size_t page = 1; page < whole.size() / kPage; ++page) {
    SCOPED_TRACE(page);
    std::string bytes = whole;
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page * kPage), kPage, '\0');
    const Rescued rescued = RescueFrom(Damaged(bytes));
    const Holding saved = Saved();
    EXPECT_EQ(static_cast<std::size_t>(rescued.kept), saved.records.size());
    EXPECT_EQ(rescued.kept + rescued.lost, kRecords);
    for (const KeptRecord& record : saved.records) {
      const NewRecord wanted = Numbered(record.uid[0]);
      EXPECT_EQ(static_cast<const NewRecord&>(record),
                rescued.withoutSource > 0 ? WithoutSource(wanted) : wanted);
    }
    EXPECT_EQ(static_cast<std::size_t>(rescued.journalKept), saved.journal.size());
    EXPECT_EQ(rescued.journalKept + rescued.journalLost, kRecords);
    kept.push_back(saved.records.size());
    withoutSource += rescued.withoutSource;
  }
  EXPECT_GE(std::ranges::count(kept, std::size_t{kRecords}), 4) << "a lost index takes nothing";
  const auto costsMuch = [](std::size_t count) { return count < std::size_t{kRecords / 2}; };
  EXPECT_LE(std::ranges::count_if(kept, costsMuch), 2) << "the first pages of the two tables";
  EXPECT_EQ(withoutSource, kRecords);
}

TEST_F(Rescues, BytesThatAreDamagedAnywhereEndNothingAndNothingGoesOnForEver) {
  const std::string whole = Whole();
  int saved = 0;
  WithSeeds(60, [&](Random& random) {
    std::string bytes = whole;
    for (int change = random.Between(1, 40); change > 0; --change) {
      // The first bytes of a page tell what is where on it.
      const int page = random.Below(static_cast<int>(whole.size() / kPage));
      const int place = random.OneIn(2) ? random.Below(64) : random.Below(int{kPage});
      bytes[static_cast<std::size_t>(page) * kPage + static_cast<std::size_t>(place)] =
          static_cast<char>(random.Below(256));
    }
    try {
      saved += static_cast<int>(RescueFrom(Damaged(bytes), 50'000).kept);
    } catch (const DatabaseError& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr("cannot be opened"));
    }
  });
  EXPECT_GT(saved, 10 * kRecords);
}

TEST_F(Rescues, ARecordThatNoArchiveTakesIsLostAlone) {
  {
    database::SqliteDatabase database({.file = Name("whole.db")});
    database.Run("update record set note = 'a' || char(0) || 'b' where id = 7");
    database.Run("update journal set text = 'a' || char(0) || 'b' where missed = 5");
  }
  const Rescued rescued = RescueFrom(Name("whole.db"));
  EXPECT_EQ(rescued.kept, kRecords - 1);
  EXPECT_EQ(rescued.lost, 1);
  EXPECT_EQ(rescued.journalKept, kRecords - 1);
  EXPECT_EQ(rescued.journalLost, 1);
  const Holding saved = Saved();
  EXPECT_EQ(saved.records.size(), std::size_t{kRecords - 1});
  EXPECT_EQ(saved.journal.size(), std::size_t{kRecords - 1});
}

TEST_F(Rescues, ANumberFarBeyondTheOthersIsReachedAtOnce) {
  constexpr std::int64_t kFar = 5'000'000'000'000;
  {
    database::SqliteDatabase database({.file = Name("whole.db")});
    database.Run("pragma foreign_keys=off");
    database.Run("update points set record = $1 where record = 9", {kFar});
    database.Run("update record set id = $1 where id = 9", {kFar});
  }
  EXPECT_EQ(RescueFrom(Name("whole.db"), 100'000).kept, kRecords);
}

TEST_F(Rescues, WhatIsInTheWayOfTheNewArchiveIsToldAndTheNextTimeAllIsThere) {
  Archive whole = Open({Name("whole.db")});
  const Holding all = HeldBy(whole);
  bool isMet = true;
  for (int number = 1; isMet; number += 1 + number / 4) {
    SCOPED_TRACE(number);
    Forget("saved.db");
    {
      const SqliteCallFaults faults(number, ENOSPC, 100'000);
      try {
        Archive into = Open({Name("saved.db")});
        Rescue(whole, into);
      } catch (const DatabaseError& error) {
        EXPECT_STRNE(error.what(), "");
        EXPECT_TRUE(faults.Met());
      }
      isMet = faults.Met();
    }
    Archive into = Open({Name("saved.db")});
    EXPECT_EQ(Rescue(whole, into).kept, kRecords);
    ASSERT_EQ(HeldBy(into), all);
  }
}

}  // namespace
}  // namespace kestrel::archive
