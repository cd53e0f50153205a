// Tests of the journal: entries put, amended and found again, in files and on a server.
// SPDX-License-Identifier: MIT
#include "archive/journal.h"

#include <gtest/gtest.h>

#include "record/utc_time.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using namespace std::chrono_literals;

JournalEntry Entry(const std::string& kind, const std::string& began) {
  return {.uid = NewUid(),
          .bench = "Hall 3",
          .sensor = "Pump 7",
          .kind = kind,
          .began = *UtcFrom(began),
          .missed = 1,
          .text = "The sensor was unplugged."};
}

class JournalTest : public testing::TestWithParam<DatabaseKind> {
 protected:
  std::unique_ptr<TemporaryDatabase> place_ = GetParam().make();
  Archive archive_{place_->Connect()};
};

TEST_P(JournalTest, EntriesAreFoundTheLatestFirst) {
  const JournalEntry first = Entry("sensor away", "2026-11-01T10:00");
  JournalEntry second = Entry("late", "2026-11-02T10:00");
  second.ended = second.began + 5min;
  PutEntries(archive_, std::vector{first, second});
  EXPECT_EQ(EntriesOf(archive_), (std::vector{second, first}));
  EXPECT_EQ(EntriesOf(archive_, {}, 1), std::vector{second});
}

TEST_P(JournalTest, TheSameEntryAgainBecomesWhatIsKnownNow) {
  JournalEntry entry = Entry("sensor away", "2026-11-01T10:00");
  PutEntries(archive_, std::vector{entry});
  entry.ended = entry.began + 1h;
  entry.missed = 360;
  PutEntries(archive_, std::vector{entry});
  EXPECT_EQ(EntriesOf(archive_), std::vector{entry});
}

TEST_P(JournalTest, AreAskedForByTimeNamesAndKind) {
  JournalEntry over = Entry("late", "2026-11-01T10:00");
  over.ended = over.began + 5min;
  JournalEntry lasting = Entry("sensor away", "2026-11-01T09:00");
  JournalEntry other = Entry("late", "2026-11-03T10:00");
  other.bench = "Hall 4";
  PutEntries(archive_, std::vector{over, lasting, other});
  EXPECT_EQ(EntriesOf(archive_, {.open = true}), (std::vector{other, lasting}));
  EXPECT_EQ(EntriesOf(archive_, {.kind = "late"}), (std::vector{other, over}));
  EXPECT_EQ(EntriesOf(archive_, {.bench = "Hall 3"}), (std::vector{over, lasting}));
  EXPECT_EQ(EntriesOf(archive_, {.sensor = "Pump 8"}), std::vector<JournalEntry>{});
  EXPECT_EQ(EntriesOf(archive_, {.from = UtcFrom("2026-11-02")}), (std::vector{other, lasting}));
  EXPECT_EQ(EntriesOf(archive_, {.until = UtcFrom("2026-11-01T09:30")}), std::vector{lasting});
}

TEST_P(JournalTest, TextsThatLookLikeStatementsAreTexts) {
  JournalEntry entry = Entry("late", "2026-11-01T10:00");
  entry.bench = "'); drop table journal; --";
  entry.sensor = "\"$1\" \\' \n\x01 %s";
  entry.text = std::string(10000, '\'');
  PutEntries(archive_, std::vector{entry});
  EXPECT_EQ(EntriesOf(archive_, {.bench = entry.bench, .sensor = entry.sensor}),
            std::vector{entry});
}

TEST_P(JournalTest, ATextWithANulIsRefusedAndNothingIsPut) {
  JournalEntry entry = Entry("late", "2026-11-01T10:00");
  JournalEntry bad = entry;
  bad.uid = NewUid();
  bad.text = std::string("a\0b", 3);
  EXPECT_THROW(PutEntries(archive_, std::vector{entry, bad}), database::DatabaseError);
  EXPECT_TRUE(EntriesOf(archive_).empty());
}

KESTREL_ON_EVERY_DATABASE(JournalTest);

// The file gives the id of a record that went to the next one.
TEST(RemovalByUid, LeavesARecordThatHasGotTheIdOfAnother) {
  TemporaryFile place;
  Archive archive(place.Connect());
  const NewRecord first{.uid = NewUid()};
  const NewRecord second{.uid = NewUid()};
  const std::int64_t id = archive.Keep(first);
  archive.Remove(std::vector{id});
  ASSERT_EQ(archive.Keep(second), id);
  archive.RemoveKnown(std::vector{std::pair{id, first.uid}});
  EXPECT_EQ(archive.Count(), 1);
  archive.RemoveKnown(std::vector{std::pair{id, second.uid}});
  EXPECT_EQ(archive.Count(), 0);
}

}  // namespace
}  // namespace kestrel::archive
