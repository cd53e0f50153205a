// What every database does alike.
// SPDX-License-Identifier: MIT
#include "database/database.h"

#include <limits>
#include <thread>

#include "support/temporary_database.h"

namespace kestrel::database {
namespace {

Fault FaultOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const DatabaseError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.fault;
  }
  ADD_FAILURE() << "no fault";
  return Fault::Other;
}

class Databases : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override {
    place_ = GetParam().make();
    database_ = place_->Connect();
    Transaction transaction(*database_);
    database_->LockSchema();
    database_->Run(std::string("create table thing(id ") + database_->KeyType() +
                   ", number bigint unique, level double precision, note text, words blob)");
    transaction.Commit();
  }
  std::int64_t Count() { return Number(*database_, "select count(*) from thing"); }

  std::unique_ptr<TemporaryDatabase> place_;
  std::unique_ptr<Database> database_;
};

TEST_P(Databases, ValuesComeBackAsTheyWent) {
  const Values values{std::numeric_limits<std::int64_t>::min(), 0.1,
                      std::string("Lager \"Süd\"\n'; drop table thing; -- \U0001F600 \u05D0"),
                      Bytes{0, 255, 0, 7}};
  database_->Run("insert into thing(number, level, note, words) values($1, $2, $3, $4)", values);
  Values got;
  database_->Run("select number, level, note, words from thing", {},
                 [&](Row row) { got.assign(row.begin(), row.end()); });
  EXPECT_EQ(got, values);
}

TEST_P(Databases, NothingAndEmptyAreTwoThings) {
  database_->Run("insert into thing(number, note, words) values($1, $2, $3)", {{}, {}, {}});
  database_->Run("insert into thing(number, note, words) values($1, $2, $3)",
                 {std::int64_t{1}, std::string(), Bytes()});
  std::vector<Values> rows;
  database_->Run("select note, words from thing order by id", {},
                 [&](Row row) { rows.emplace_back(row.begin(), row.end()); });
  EXPECT_EQ(rows, (std::vector<Values>{{{}, {}}, {std::string(), Bytes()}}));
}

TEST_P(Databases, KeysAreGivenInOrder) {
  const char* insert = "insert into thing(note) values('x') returning id";
  const std::int64_t first = Number(*database_, insert);
  EXPECT_EQ(Number(*database_, insert), first + 1);
}

TEST_P(Databases, WhatIsNotCommittedIsGone) {
  {
    Transaction transaction(*database_);
    database_->Run("insert into thing(number) values(1)");
  }
  EXPECT_EQ(Count(), 0);
  {
    Transaction transaction(*database_);
    database_->Run("insert into thing(number) values(1)");
    transaction.Commit();
  }
  EXPECT_EQ(Count(), 1);
}

TEST_P(Databases, AFaultInATransactionUndoesItAndTheNextOneWorks) {
  const auto twice = [&] {
    Transaction transaction(*database_);
    database_->Run("insert into thing(number) values(1)");
    database_->Run("insert into thing(number) values(1)");
    transaction.Commit();
  };
  EXPECT_EQ(FaultOf(twice), Fault::Constraint);
  EXPECT_EQ(Count(), 0);
  database_->Run("insert into thing(number) values(1)");
  EXPECT_EQ(Count(), 1);
}

TEST_P(Databases, AHandlerThatThrowsEndsTheStatementOnly) {
  for (int i = 0; i < 5; ++i) database_->Run("insert into thing(note) values('x')");
  EXPECT_THROW(
      database_->Run("select id from thing", {}, [](Row) { throw std::logic_error("mine"); }),
      std::logic_error);
  EXPECT_EQ(Count(), 5);
}

TEST_P(Databases, ACellOfAnotherKindIsRefused) {
  EXPECT_EQ(FaultOf([&] { (void)Number(*database_, "select 'x'"); }), Fault::Corrupt);
}

TEST_P(Databases, AWrongStatementIsNamed) {
  EXPECT_EQ(FaultOf([&] { database_->Run("selec 1"); }), Fault::Other);
}

TEST_P(Databases, AStatementThatFailedOnceIsRunWhenItCanBe) {
  const char* late = "select count(*) from later";
  EXPECT_EQ(FaultOf([&] { database_->Run(late); }), Fault::Other);
  database_->Run("create table later(number bigint)");
  database_->Run("insert into later(number) values(1)");
  EXPECT_EQ(Number(*database_, late), 1);
}

TEST_P(Databases, LongWorkIsCancelledFromAnotherThread) {
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    database_->Cancel();
  });
  EXPECT_EQ(FaultOf([&] {
              database_->Run(
                  "with recursive c(n) as (select cast(1 as bigint) union all select n + 1 from c) "
                  "select count(*) from c");
            }),
            Fault::Cancelled);
  other.join();
  EXPECT_EQ(Count(), 0);
}

TEST_P(Databases, AnotherConnectionSeesWhatIsCommitted) {
  const auto other = place_->Connect();
  Transaction transaction(*database_);
  database_->Run("insert into thing(number) values(1)");
  EXPECT_EQ(Number(*other, "select count(*) from thing"), 0);
  transaction.Commit();
  EXPECT_EQ(Number(*other, "select count(*) from thing"), 1);
}

TEST_P(Databases, TablesAreKnown) {
  EXPECT_TRUE(database_->HasTable("thing"));
  EXPECT_FALSE(database_->HasTable("nothing"));
  EXPECT_FALSE(database_->IsBlank());
  EXPECT_GT(database_->Size(), 0);
  EXPECT_EQ(database_->Damage(), std::vector<std::string>{});
}

KESTREL_ON_EVERY_DATABASE(Databases);

TEST(TextOnAServer, ThatIsNoUtf8IsRefusedAndTheNextOneIsTaken) {
  TemporarySchema place;
  const auto database = place.Connect();
  database->Run("create table thing(note text)");
  EXPECT_EQ(FaultOf([&] {
              database->Run("insert into thing(note) values($1)", {std::string("caf\xE9")});
            }),
            Fault::Constraint);
  database->Run("insert into thing(note) values($1)", {std::string("caf\xC3\xA9")});
  EXPECT_EQ(Number(*database, "select count(*) from thing"), 1);
}

TEST(CellsOnAServer, OfEveryKindOfNumberAndTextAreRead) {
  TemporarySchema place;
  const auto database = place.Connect();
  Values got;
  database->Run(
      "select true, cast(-7 as smallint), cast(70000 as integer), cast(0.5 as real), cast('n' as "
      "name), cast('c' as varchar)",
      {}, [&](Row row) { got.assign(row.begin(), row.end()); });
  EXPECT_EQ(got, (Values{std::int64_t{1}, std::int64_t{-7}, std::int64_t{70000}, 0.5,
                         std::string("n"), std::string("c")}));
  EXPECT_EQ(FaultOf([&] { database->Run("select now()", {}, [](Row) {}); }), Fault::Other);
}

TEST(NoDatabase, AServerThatIsNotThereIsLost) {
  try {
    PostgresDatabase("postgresql://nobody@/none?host=/nowhere");
    FAIL() << "no fault";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.fault, Fault::Lost);
    EXPECT_NE(std::string(error.what()).find("/nowhere"), std::string::npos) << error.what();
  }
}

}  // namespace
}  // namespace kestrel::database
