// A page that is lost takes no more of the journal with it than it held, and that is told.
// SPDX-License-Identifier: MIT
#include <fstream>
#include <set>

#include "archive/operations.h"
#include "archive/rescue.h"
#include "archive/wrapped_database.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using database::Fault;
using testing::IsEmpty;

constexpr std::int64_t kPage = 16384;
constexpr int kEntries = 1'200;
constexpr int kLong = 500;  // has pages of its own

JournalEntry Made(int number) {
  JournalEntry entry = NumberedEntry(number);
  if (number == kLong) entry.text = std::string(60'000, 'x');
  return entry;
}

class JournalRescues : public testing::Test {
 protected:
  JournalRescues() {
    Archive archive(place_.Connect());
    std::vector<JournalEntry> entries;
    for (int number = 0; number < kEntries; ++number) entries.push_back(Made(number));
    PutEntries(archive, entries);
    first_ = Number(archive.Connection(), "select rootpage from sqlite_master where name = $1",
                    {std::string("journal")});
    pages_ = Number(archive.Connection(), "pragma page_count");
  }
  // Pages are numbered from 1 on.
  void Lose(std::int64_t page) {
    std::fstream file(place_.Name(), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp((page - 1) * kPage);
    file << std::string(kPage, '\0');
  }
  Rescued RescueAll() {
    Archive from = Archive::ForRescue(std::make_unique<database::SqliteDatabase>(
        database::SqliteChoice{.file = place_.Name(), .access = database::Access::ReadOnly}));
    into_.emplace(saved_.emplace().Connect());
    return Rescue(from, *into_);
  }
  // Of what was saved; each of them is whole.
  std::set<std::int64_t> Saved() {
    std::set<std::int64_t> numbers;
    for (const JournalEntry& entry : EntriesOf(*into_)) {
      EXPECT_EQ(entry, Made(static_cast<int>(entry.missed)));
      numbers.insert(entry.missed);
    }
    return numbers;
  }

  TemporaryFile place_;
  std::optional<TemporaryFile> saved_;
  std::optional<Archive> into_;
  std::int64_t first_ = 0;
  std::int64_t pages_ = 0;
};

TEST_F(JournalRescues, APageThatIsLostTakesWhatItHeldAndNothingElse) {
  std::ifstream file(place_.Name(), std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(file), {}};
  int pagesOfEntries = 0;
  int longOnes = 0;
  std::set<std::int64_t> everLost;
  for (std::int64_t page = 2; page <= pages_; ++page) {
    SCOPED_TRACE(page);
    std::ofstream(place_.Name(), std::ios::binary) << whole;
    Lose(page);
    const Rescued rescued = RescueAll();
    const std::set<std::int64_t> saved = Saved();
    EXPECT_EQ(static_cast<std::size_t>(rescued.journalKept), saved.size());
    EXPECT_EQ(rescued.journalKept + rescued.journalLost, kEntries);
    if (page == first_) {
      EXPECT_THAT(saved, IsEmpty()) << "it told where all others are";
      continue;
    }
    EXPECT_LE(rescued.journalLost, 250);
    if (rescued.journalLost == 1) {
      EXPECT_FALSE(saved.contains(kLong));
      ++longOnes;
    }
    if (rescued.journalLost > 1) ++pagesOfEntries;
    for (int number = 0; number < kEntries; ++number) {
      if (!saved.contains(number)) everLost.insert(number);
    }
  }
  EXPECT_GE(pagesOfEntries, 5);
  EXPECT_GE(longOnes, 3);
  EXPECT_EQ(everLost.size(), std::size_t{kEntries}) << "each of them was on one of the pages";
}

TEST_F(JournalRescues, TwoPagesThatAreLostTakeWhatTheyHeld) {
  std::int64_t lost = 0;
  std::vector<std::int64_t> pages;
  std::ifstream file(place_.Name(), std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(file), {}};
  for (std::int64_t page = first_ + 1; page <= pages_ && pages.size() < 2; ++page) {
    std::ofstream(place_.Name(), std::ios::binary) << whole;
    Lose(page);
    const Rescued rescued = RescueAll();
    if (rescued.journalLost < 2) continue;
    lost += rescued.journalLost;
    pages.push_back(page);
  }
  ASSERT_EQ(pages.size(), 2U);
  for (const std::int64_t page : pages) Lose(page);
  const Rescued rescued = RescueAll();
  EXPECT_EQ(rescued.journalLost, lost);
  EXPECT_EQ(rescued.journalKept, kEntries - lost);
  EXPECT_EQ(Saved().size(), static_cast<std::size_t>(kEntries - lost));
}

TEST_F(JournalRescues, WhereNobodyKnowsHowManyThereWereOneIsToldAtLeast) {
  const std::int64_t index =
      Number(*place_.Connect(), "select rootpage from sqlite_master where name = 'journal_began'");
  Lose(first_);
  Lose(index);
  const Rescued rescued = RescueAll();
  EXPECT_EQ(rescued.journalKept, 0);
  EXPECT_EQ(rescued.journalLost, 1);
}

class JournalRescuesFromAnywhere : public testing::TestWithParam<DatabaseKind> {};

TEST_P(JournalRescuesFromAnywhere, WhatCannotBeReadAtOnceIsReadRowByRowWhereRowsHaveNumbers) {
  const auto place = GetParam().make();
  const auto other = GetParam().make();
  Archive into(other->Connect());
  Archive from(std::make_unique<WrappedDatabase>(place->Connect(), [](const std::string& sql) {
    if (sql.find("from journal where 1 = 1") == std::string::npos) return;
    throw DatabaseError(Fault::Lost, "a sector cannot be read");
  }));
  Fill(from);
  const Rescued rescued = Rescue(from, into);
  EXPECT_EQ(rescued.kept, 7);
  const bool isFile = GetParam().name == std::string("InAFile");
  EXPECT_EQ(rescued.journalKept, isFile ? 2 : 0);
  EXPECT_EQ(rescued.journalLost, isFile ? 0 : 1);
  EXPECT_EQ(EntriesOf(into).size(), isFile ? 2U : 0U);
}

KESTREL_ON_EVERY_DATABASE(JournalRescuesFromAnywhere);

}  // namespace
}  // namespace kestrel::archive
