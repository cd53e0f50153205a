// What befalls a database in a file.
// SPDX-License-Identifier: MIT
#include "database/sqlite_database.h"

#include <cerrno>

#include "database/fault_of.h"
#include "support/other_user.h"
#include "support/sqlite_call_faults.h"
#include "support/temporary_folder.h"

namespace kestrel::database {
namespace {

class SqliteFile : public testing::Test {
 protected:
  [[nodiscard]] std::string Name() const { return (folder_.path() / "a?b#c%d.db").string(); }
  void Make() {
    SqliteDatabase database({.file = Name()});
    database.Run("create table thing(number bigint)");
    database.Run("insert into thing(number) values(7)");
  }
  TemporaryFolder folder_;
};

TEST_F(SqliteFile, ReadOnlyItIsReadAndNotWritten) {
  Make();
  SqliteDatabase database({.file = Name(), .access = Access::ReadOnly});
  EXPECT_EQ(Number(database, "select number from thing"), 7);
  EXPECT_EQ(FaultOf([&] { database.Run("insert into thing(number) values(8)"); }),
            Fault::Forbidden);
}

TEST_F(SqliteFile, ReadOnlyAMissingFileIsNotMade) {
  EXPECT_EQ(FaultOf([&] { SqliteDatabase({.file = Name(), .access = Access::ReadOnly}); }),
            Fault::Forbidden);
  EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(SqliteFile, AFileThatIsNoDatabaseIsSaidToBeDamaged) {
  folder_.Write("a?b#c%d.db", std::string(4096, 'x'));
  EXPECT_EQ(FaultOf([&] { SqliteDatabase({.file = Name()}); }), Fault::Corrupt);
  EXPECT_EQ(folder_.Content("a?b#c%d.db"), std::string(4096, 'x'));
}

TEST_F(SqliteFile, ASecondWriterWaitsAsLongAsItIsTold) {
  Make();
  SqliteDatabase one({.file = Name()});
  SqliteDatabase two({.file = Name(), .patience = std::chrono::milliseconds(20)});
  Transaction transaction(one);
  EXPECT_EQ(FaultOf([&] { two.Begin(); }), Fault::Busy);
  transaction.Commit();
  two.Begin();
  two.Rollback();
}

TEST_F(SqliteFile, DamageIsNamed) {
  Make();
  {
    SqliteDatabase database({.file = Name()});
    Transaction all(database);
    for (int i = 0; i < 20000; ++i) database.Run("insert into thing(number) values(7)");
    all.Commit();
    EXPECT_EQ(database.Damage(), std::vector<std::string>{});
  }
  std::string content = folder_.Content("a?b#c%d.db");
  ASSERT_GT(content.size(), 100'000U);
  std::fill_n(content.begin() + 40'000, 8'000, '\x5a');
  folder_.Write("a?b#c%d.db", content);
  SqliteDatabase database({.file = Name(), .access = Access::ReadOnly});
  EXPECT_FALSE(database.Damage().empty());
}

TEST_F(SqliteFile, InAFolderThatMayNotBeWrittenItIsRead) {
  Make();
  namespace fs = std::filesystem;
  fs::permissions(folder_.path(), static_cast<fs::perms>(0555));
  fs::permissions(Name(), static_cast<fs::perms>(0444));
  {
    const OtherUser user;
    SqliteDatabase database({.file = Name(), .access = Access::ReadOnly});
    EXPECT_EQ(Number(database, "select number from thing"), 7);
    EXPECT_EQ(FaultOf([&] { database.Run("delete from thing"); }), Fault::Forbidden);
    EXPECT_EQ(FaultOf([&] { SqliteDatabase({.file = Name() + "x"}); }), Fault::Forbidden);
  }
  fs::permissions(folder_.path(), fs::perms::owner_all);
}

TEST_F(SqliteFile, ReadOnlyOneThatIsDamagedIsSaidToBeSo) {
  folder_.Write("a?b#c%d.db", std::string(4096, 'x'));
  EXPECT_EQ(FaultOf([&] { SqliteDatabase({.file = Name(), .access = Access::ReadOnly}); }),
            Fault::Corrupt);
}

TEST_F(SqliteFile, IsMadeForWhatIsKeptForGood) {
  SqliteDatabase database({.file = Name()});
  EXPECT_EQ(Number(database, "pragma page_size"), 16384);
  EXPECT_EQ(Number(database, "pragma synchronous"), 2) << "each commit is forced to the disk";
  database.Run("create table thing(id integer primary key)");
  database.Run("create table part(thing bigint, foreign key(thing) references thing(id))");
  EXPECT_EQ(FaultOf([&] { database.Run("insert into part(thing) values(1)"); }), Fault::Constraint);
}

TEST_F(SqliteFile, ADiskWithoutRoomIsFullAndOneThatFailsIsLost) {
  const std::vector<std::pair<int, Fault>> kinds{{ENOSPC, Fault::Full}, {EIO, Fault::Lost}};
  for (const auto& [number, kind] : kinds) {
    folder_.Write("a?b#c%d.db", "");
    SqliteDatabase database({.file = Name()});
    database.Run("create table thing(number bigint)");
    {
      const SqliteCallFaults faults(1, number, 1000);
      EXPECT_EQ(FaultOf([&] { database.Run("insert into thing(number) values(7)"); }), kind);
    }
    EXPECT_EQ(Number(database, "select count(*) from thing"), 0);
    database.Run("insert into thing(number) values(7)");
    EXPECT_EQ(Number(database, "select count(*) from thing"), 1);
    for (const std::string& name : folder_.Names()) {
      std::filesystem::remove(folder_.path() / name);
    }
  }
}

TEST_F(SqliteFile, ATableThatIsBeingReadIsNotDropped) {
  Make();
  SqliteDatabase database({.file = Name()});
  const auto drop = [&](Row) { database.Run("drop table thing"); };
  EXPECT_EQ(FaultOf([&] { database.Run("select number from thing", {}, drop); }), Fault::Busy);
  EXPECT_EQ(Number(database, "select number from thing"), 7);
}

TEST_F(SqliteFile, ValuesThatAStatementHasNoPlaceForAreRefused) {
  SqliteDatabase database({.file = Name()});
  EXPECT_EQ(FaultOf([&] {
              database.Run("select $1", {std::int64_t{1}, std::int64_t{2}});
            }),
            Fault::Other);
}

TEST_F(SqliteFile, ValuesOfOneRunAreNotThoseOfTheNext) {
  SqliteDatabase database({.file = Name()});
  EXPECT_EQ(Number(database, "select coalesce($1, 5)", {std::int64_t{1}}), 1);
  EXPECT_EQ(Number(database, "select coalesce($1, 5)"), 5);
}

TEST_F(SqliteFile, RoomThatIsFreeForMoreIsNotCounted) {
  SqliteDatabase database({.file = Name()});
  database.Run("create table thing(words blob)");
  const std::int64_t small = database.Size();
  EXPECT_EQ(small, 2 * 16384) << "what there is, and an empty table";
  database.Run("insert into thing(words) values($1)", {Bytes(200'000, 1)});
  EXPECT_GE(database.Size(), small + 180'000);
  EXPECT_LT(database.Size(), small + 230'000);
  database.Run("delete from thing");
  EXPECT_EQ(database.Size(), small);
}

TEST_F(SqliteFile, MemoryIsGivenBack) {
  SqliteDatabase database({.file = Name()});
  database.Run("create table thing(words blob)");
  database.Run("insert into thing(words) values($1)", {Bytes(400'000, 1)});
  database.Run("select words from thing", {}, [](Row) {});
  const std::int64_t used = sqlite3_memory_used();
  database.ReleaseMemory();
  EXPECT_LT(sqlite3_memory_used(), used - 300'000);
}

}  // namespace
}  // namespace kestrel::database
