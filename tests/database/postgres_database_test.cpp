// What befalls a database on a server.
// SPDX-License-Identifier: MIT
#include "database/postgres_database.h"

#include <chrono>
#include <thread>

#include "database/fault_of.h"
#include "support/temporary_database.h"

namespace kestrel::database {
namespace {

class DatabaseOnAServer : public testing::Test {
 protected:
  // Ends a connection from another one, and waits until it is gone.
  void End(std::int64_t process) const {
    const auto other = place_.Connect();
    const std::string number = std::to_string(process);
    other->Run("select pg_terminate_backend(" + number + ")");
    const std::string count = "select count(*) from pg_stat_activity where pid = " + number;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (Number(*other, count) > 0) {
      ASSERT_LT(std::chrono::steady_clock::now(), end);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
  void End() const { End(Number(*database_, "select pg_backend_pid()")); }

  mutable TemporarySchema place_;
  std::unique_ptr<Database> database_ = place_.Connect();
};

TEST_F(DatabaseOnAServer, WhatItSaysOfAFaultIsToldByKind) {
  const std::vector<std::pair<const char*, Fault>> kinds{
      {"08006", Fault::Lost},       {"57P01", Fault::Lost},      {"23503", Fault::Constraint},
      {"22021", Fault::Constraint}, {"57014", Fault::Cancelled}, {"55P03", Fault::Busy},
      {"40001", Fault::Busy},       {"40P01", Fault::Busy},      {"53100", Fault::Full},
      {"XX001", Fault::Corrupt},    {"42501", Fault::Forbidden}, {"28000", Fault::Forbidden},
      {"25006", Fault::Forbidden},  {"53200", Fault::Other},     {"P0001", Fault::Other}};
  for (const auto& [state, kind] : kinds) {
    SCOPED_TRACE(state);
    const std::string sql = "do $$ begin raise exception 'the reason' using errcode = '" +
                            std::string(state) + "'; end $$";
    try {
      database_->Run(sql);
      ADD_FAILURE() << "no fault";
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.fault, kind);
      EXPECT_THAT(error.what(), testing::StartsWith("ERROR:  the reason"));
      EXPECT_NE(std::string(error.what()).back(), '\n');
    }
    EXPECT_EQ(Number(*database_, "select 1"), 1) << "the connection is of use still";
  }
}

TEST_F(DatabaseOnAServer, ALostConnectionIsToldWhateverIsAsked) {
  const char* known = "select 1";
  EXPECT_EQ(Number(*database_, known), 1);
  End();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(FaultOf([&] { database_->Run(known); }), Fault::Lost);
    EXPECT_EQ(FaultOf([&] { database_->Run("select 2"); }), Fault::Lost);
    EXPECT_EQ(FaultOf([&] { database_->Begin(); }), Fault::Lost);
    EXPECT_EQ(FaultOf([&] { database_->Commit(); }), Fault::Lost);
    EXPECT_EQ(FaultOf([&] { (void)database_->Size(); }), Fault::Lost);
    database_->Cancel();  // finds nobody
  }
  EXPECT_EQ(Number(*place_.Connect(), known), 1);
}

TEST_F(DatabaseOnAServer, AConnectionThatIsLostInATransactionHasUndoneIt) {
  database_->Run("create table thing(number bigint)");
  {
    Transaction transaction(*database_);
    database_->Run("insert into thing(number) values(1)");
    End();
    EXPECT_EQ(FaultOf([&] { transaction.Commit(); }), Fault::Lost);
  }
  EXPECT_EQ(Number(*place_.Connect(), "select count(*) from thing"), 0);
}

TEST_F(DatabaseOnAServer, ATransactionThatHasFailedIsNotCommitted) {
  database_->Run("create table thing(number bigint)");
  {
    Transaction transaction(*database_);
    database_->Run("insert into thing(number) values(1)");
    EXPECT_EQ(FaultOf([&] { database_->Run("select nothing from thing"); }), Fault::Other);
    EXPECT_EQ(FaultOf([&] { transaction.Commit(); }), Fault::Other);
  }
  EXPECT_EQ(Number(*database_, "select count(*) from thing"), 0);
}

TEST_F(DatabaseOnAServer, ATableThatAnotherHoldsIsBusy) {
  database_->Run("create table thing(number bigint)");
  const auto other = place_.Connect();
  other->Run("set lock_timeout = '20ms'");
  {
    Transaction transaction(*database_);
    database_->Run("lock table thing");
    EXPECT_EQ(FaultOf([&] { other->Run("select number from thing"); }), Fault::Busy);
  }
  EXPECT_EQ(Number(*other, "select count(*) from thing"), 0);
}

TEST_F(DatabaseOnAServer, RowsThatCameBeforeAFaultAreHandedOnAndTheFaultIsTold) {
  std::vector<std::int64_t> got;
  const auto run = [&] {
    database_->Run("select 10 / (3 - i) from generate_series(1, 6) as i", {},
                   [&](Row row) { got.push_back(Integer(row[0])); });
  };
  EXPECT_EQ(FaultOf(run), Fault::Constraint);
  EXPECT_EQ(got, (std::vector<std::int64_t>{5, 10}));
}

TEST_F(DatabaseOnAServer, WhatItMerelyMentionsIsNotPrinted) {
  testing::internal::CaptureStderr();
  database_->Run("do $$ begin raise warning 'by the way'; end $$");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DatabaseOnAServer, OnlyTablesOfItsOwnSchemaAreKnownAndCounted) {
  EXPECT_EQ(database_->Size(), 0);
  EXPECT_FALSE(database_->HasTable("pg_class"));
  TemporarySchema other;
  other.Connect()->Run("create table \"A b\"(number bigint)");
  EXPECT_FALSE(database_->HasTable("A b"));
  EXPECT_TRUE(database_->IsBlank());
  database_->Run("create table \"A b\"(number bigint)");
  database_->Run("insert into \"A b\"(number) values(1)");
  EXPECT_GT(database_->Size(), 0);
}

TEST_F(DatabaseOnAServer, TwoThatLockTheSchemaComeOneAfterTheOther) {
  const auto other = place_.Connect();
  other->Run("set lock_timeout = '20ms'");
  Transaction first(*database_);
  database_->LockSchema();
  EXPECT_EQ(FaultOf([&] {
              Transaction second(*other);
              other->LockSchema();
            }),
            Fault::Busy);
  first.Commit();
  Transaction second(*other);
  other->LockSchema();
  second.Commit();
}

TEST_F(DatabaseOnAServer, AStatementTakesValuesOfSeveralKindsInTurn) {
  database_->Run("create table thing(number bigint, level double precision)");
  const char* insert = "insert into thing(number, level) values($1, $2)";
  for (int i = 0; i < 2; ++i) {
    database_->Run(insert, {std::int64_t{1}, 0.5});
    database_->Run(insert, {{}, 0.5});
    database_->Run(insert, {std::int64_t{1}, {}});
  }
  EXPECT_EQ(Number(*database_, "select sum(number)::bigint from thing"), 4);
  EXPECT_EQ(Number(*database_, "select count(level) from thing"), 4);
}

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
