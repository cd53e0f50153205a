// What befalls a database in a file.
// SPDX-License-Identifier: MIT
#include "database/sqlite_database.h"

#include <thread>

#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace kestrel::database {
namespace {

Fault FaultOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const DatabaseError& error) {
    return error.fault;
  }
  ADD_FAILURE() << "no fault";
  return Fault::Other;
}

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
    for (int i = 0; i < 20000; ++i) database.Run("insert into thing(number) values(7)");
    EXPECT_EQ(database.Damage(), std::vector<std::string>{});
  }
  std::string content = folder_.Content("a?b#c%d.db");
  ASSERT_GT(content.size(), 100'000U);
  std::fill_n(content.begin() + 40'000, 8'000, '\x5a');
  folder_.Write("a?b#c%d.db", content);
  SqliteDatabase database({.file = Name(), .access = Access::ReadOnly});
  EXPECT_FALSE(database.Damage().empty());
}

}  // namespace
}  // namespace kestrel::database
