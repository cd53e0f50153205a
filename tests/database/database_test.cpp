// What every database does alike.
// SPDX-License-Identifier: MIT
#include "database/database.h"

#include <limits>
#include <thread>

#include "database/fault_of.h"
#include "support/temporary_database.h"

namespace kestrel::database {
namespace {

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

TEST_P(Databases, TheEndOfACommittedTransactionDoesNotUndoTheNextOne) {
  {
    Transaction transaction(*database_);
    transaction.Commit();
    database_->Begin();
    database_->Run("insert into thing(number) values(1)");
  }
  database_->Commit();
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

TEST_P(Databases, OneWithoutATableIsBlank) {
  EXPECT_TRUE(GetParam().make()->Connect()->IsBlank());
}

TEST_P(Databases, WhatIsThereToReadIsThereAfterMemoryIsGivenBack) {
  database_->Run("insert into thing(number) values(7)");
  const char* select = "select number from thing";
  EXPECT_EQ(Number(*database_, select), 7);
  database_->ReleaseMemory();
  EXPECT_EQ(Number(*database_, select), 7);
}

TEST_P(Databases, RowsAreReadByTheirNumbersWhereTheyHaveSome) {
  for (const int number : {7, 8}) {
    database_->Run("insert into thing(number) values($1)", {std::int64_t{number}});
  }
  const auto second = [&] {
    return Number(*database_, "select number from thing where rowid = 2");
  };
  if (database_->NumbersRows()) {
    EXPECT_EQ(second(), 8);
  } else {
    EXPECT_EQ(FaultOf([&] { (void)second(); }), Fault::Other);
  }
}

TEST_P(Databases, WhereNothingWasBegunNothingIsUndone) {
  database_->Run("insert into thing(number) values(7)");
  database_->Rollback();
  EXPECT_EQ(Count(), 1);
}

TEST_P(Databases, TheSchemaIsLockedAsOftenAsItIsChanged) {
  Transaction transaction(*database_);
  database_->LockSchema();
  database_->Run("create table more(words blob)");
  transaction.Commit();
  EXPECT_TRUE(database_->HasTable("more"));
}

TEST_P(Databases, RowsThatNobodyWantsAreNotHandedOn) {
  for (int i = 0; i < 3; ++i) database_->Run("insert into thing(note) values('x')");
  database_->Run("select id from thing");
  EXPECT_EQ(Count(), 3);
}

TEST_P(Databases, ASingleNumberIsTheOneThatIsGivenWhereThereIsNone) {
  const char* select = "select number from thing";
  EXPECT_EQ(Number(*database_, select), 0);
  EXPECT_EQ(Number(*database_, select, {}, -3), -3);
}

KESTREL_ON_EVERY_DATABASE(Databases);

TEST(Cells, AreOfTheirKindOrRefused) {
  const Value whole = std::int64_t{-7};
  const Value real = 0.5;
  const Value text = std::string("x");
  const Value bytes = Bytes{1, 2};
  EXPECT_EQ(Integer(whole), -7);
  EXPECT_EQ(Real(real), 0.5);
  EXPECT_EQ(Real(whole), -7.0) << "a file keeps a real number without a fraction as a whole one";
  EXPECT_EQ(Text(text), "x");
  EXPECT_EQ(Blob(bytes), (Bytes{1, 2}));
  for (const Value& other : {real, text, bytes, Value{}}) {
    EXPECT_EQ(FaultOf([&] { (void)Integer(other); }), Fault::Corrupt);
  }
  for (const Value& other : {text, bytes, Value{}}) {
    EXPECT_EQ(FaultOf([&] { (void)Real(other); }), Fault::Corrupt);
  }
  for (const Value& other : {whole, real, bytes, Value{}}) {
    EXPECT_EQ(FaultOf([&] { (void)Text(other); }), Fault::Corrupt);
  }
  for (const Value& other : {whole, real, text, Value{}}) {
    EXPECT_EQ(FaultOf([&] { (void)Blob(other); }), Fault::Corrupt);
    EXPECT_EQ(IsNull(other), other == Value{});
  }
}

}  // namespace
}  // namespace kestrel::database
