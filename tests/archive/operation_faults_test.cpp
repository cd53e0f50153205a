// Whatever is done to an archive is done whole or not at all, wherever a fault stops it.
// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <fstream>

#include "archive/operations.h"
#include "archive/place.h"
#include "support/sqlite_call_faults.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using database::Database;
using database::DatabaseError;
using database::Fault;

// A fault instead of a statement, or behind one that was carried out all the same.
class FaultyStatements : public Database {
 public:
  explicit FaultyStatements(std::unique_ptr<Database> under) : under_(std::move(under)) {}

  // The next statement is number 1; 0 for none.
  void FaultAt(int number, Fault fault, bool isAfter) {
    faultAt_ = number;
    fault_ = fault;
    isAfter_ = isAfter;
    statements_ = 0;
  }
  [[nodiscard]] bool Met() const { return faultAt_ > 0 && statements_ >= faultAt_; }

  using Database::Run;
  void Run(const std::string& sql, const database::Values& values,
           const database::OnRow& row) override {
    Do([&] { under_->Run(sql, values, row); });
  }
  // One that was begun all the same is the other side's to undo.
  void Begin() override {
    isAfter_ = isAfter_ && statements_ + 1 != faultAt_;
    Do([&] { under_->Begin(); });
  }
  void Commit() override {
    Do([&] { under_->Commit(); });
  }
  void Rollback() override { under_->Rollback(); }
  void Cancel() override { under_->Cancel(); }
  [[nodiscard]] const char* KeyType() const override { return under_->KeyType(); }
  [[nodiscard]] bool HasTable(const std::string& name) override { return under_->HasTable(name); }
  [[nodiscard]] bool IsBlank() override { return under_->IsBlank(); }
  void LockSchema() override {
    Do([&] { under_->LockSchema(); });
  }
  [[nodiscard]] std::int64_t Size() override { return under_->Size(); }
  [[nodiscard]] std::vector<std::string> Damage() override { return under_->Damage(); }

 private:
  void Do(const std::function<void()>& statement) {
    const bool isDue = ++statements_ == faultAt_;
    if (isDue && !isAfter_) throw DatabaseError(fault_, "it was made to fail");
    statement();
    if (isDue) throw DatabaseError(fault_, "it was made to fail");
  }

  std::unique_ptr<Database> under_;
  int faultAt_ = 0;
  int statements_ = 0;
  Fault fault_ = Fault::Lost;
  bool isAfter_ = false;
};

class OperationsWithFaults : public testing::TestWithParam<DatabaseKind> {
 protected:
  // As Fill makes it, with nothing of before, over a connection of its own.
  void Begin() {
    Archive other(place_->Connect());
    for (const char* table : {"points", "record", "source", "journal"}) {
      other.Connection().Run(std::string("delete from ") + table);
    }
    Fill(other);
    DeleteTheLast(other);
    auto faulty = std::make_unique<FaultyStatements>(place_->Connect());
    faults_ = faulty.get();
    archive_.emplace(std::move(faulty));
  }

  std::unique_ptr<TemporaryDatabase> place_ = GetParam().make();
  FaultyStatements* faults_ = nullptr;
  std::optional<Archive> archive_;
};

TEST_P(OperationsWithFaults, AreDoneWholeOrNotAtAllAtEveryStatementAndCanBeDoneAgain) {
  for (const Operation& operation : kOperations) {
    Begin();
    const Holding before = HeldBy(*archive_);
    operation.run(*archive_, FilledIds(*archive_));
    const Holding after = HeldBy(*archive_);
    ASSERT_NE(before, after) << operation.name;
    bool wasMet = true;
    for (int step = 0; wasMet; ++step) {
      SCOPED_TRACE(std::string(operation.name) + ", step " + std::to_string(step));
      Begin();
      const IdsByNumber ids = FilledIds(*archive_);
      const bool isAfter = step % 2 == 1;
      faults_->FaultAt(step / 2 + 1, Fault::Lost, isAfter);
      const auto run = [&] { operation.run(*archive_, ids); };
      bool isDone = true;
      try {
        run();
      } catch (const DatabaseError&) {
        isDone = false;
      }
      wasMet = faults_->Met();
      EXPECT_EQ(isDone, !wasMet);
      faults_->FaultAt(0, Fault::Lost, false);
      Archive other(place_->Connect());
      const Holding there = HeldBy(other);
      if (!wasMet) {
        ASSERT_EQ(there, after);
        ASSERT_GE(step, 2);
      } else {
        ASSERT_TRUE(there == before || there == after);
      }
      run();
      ASSERT_EQ(HeldBy(other), after) << "on the same connection";
    }
  }
}

KESTREL_ON_EVERY_DATABASE(OperationsWithFaults);

// A file as Fill makes it; in memory where that can be: forcing to a disk is what takes the time.
class OperationsOnDisks : public testing::TestWithParam<std::tuple<Operation, Disk>> {
 protected:
  OperationsOnDisks() {
    if (std::filesystem::exists("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
    folder_.emplace();
    unsetenv("TMPDIR");
    {
      Archive archive = Open({Name("whole.db")});
      Fill(archive);
      DeleteTheLast(archive);
    }
    whole_ = folder_->Content("whole.db");
  }
  [[nodiscard]] std::string Name(const char* file) const {
    return (folder_->path() / file).string();
  }
  // The file that the operation is tried on, new.
  std::string Fresh() {
    for (const char* file : {"tried.db-wal", "tried.db-shm", "tried.db"}) {
      std::filesystem::remove(folder_->path() / file);
    }
    folder_->Write("tried.db", whole_);
    return Name("tried.db");
  }

  std::optional<TemporaryFolder> folder_;
  std::string whole_;
};

TEST_P(OperationsOnDisks, AreDoneWholeOrNotAtAllAtEveryCallAndCanBeDoneAgain) {
  const auto& [operation, disk] = GetParam();
  Holding before;
  Holding after;
  IdsByNumber ids;
  {
    Archive archive = Open({Fresh()});
    ids = FilledIds(archive);
    before = HeldBy(archive);
    operation.run(archive, ids);
    after = HeldBy(archive);
  }
  bool isMet = true;
  int number = 0;
  while (isMet) {
    SCOPED_TRACE(++number);
    const std::string file = Fresh();
    bool isDone = false;
    std::optional<Archive> archive;
    {
      const SqliteCallFaults faults(number, disk.error, disk.count);
      try {
        archive.emplace(Open({file}));
        operation.run(*archive, ids);
        isDone = true;
      } catch (const DatabaseError& error) {
        EXPECT_STRNE(error.what(), "");
        EXPECT_NE(error.fault, Fault::Cancelled);
      }
      isMet = faults.Met();
      EXPECT_TRUE(isDone || isMet);
    }
    {
      Archive other = Open({file});
      const Holding there = HeldBy(other);
      ASSERT_TRUE(there == after || (!isDone && there == before));
      ASSERT_THAT(other.Damage(), testing::IsEmpty());
    }
    if (!archive) continue;
    try {
      operation.run(*archive, ids);
    } catch (const DatabaseError& error) {
      // What could not be opened for writing is only read, until it is opened anew.
      ASSERT_EQ(error.fault, Fault::Forbidden);
      operation.run(archive.emplace(Open({file})), ids);
    }
    ASSERT_EQ(HeldBy(*archive), after) << "done again";
  }
  EXPECT_GT(number, 5);
}

INSTANTIATE_TEST_SUITE_P(Each, OperationsOnDisks,
                         testing::Combine(testing::ValuesIn(kOperations),
                                          testing::ValuesIn(kDisks)),
                         [](const auto& tested) {
                           return std::string(std::get<0>(tested.param).name) +
                                  std::get<1>(tested.param).name;
                         });

class OperationsBesideAnother : public testing::TestWithParam<Operation> {};

TEST_P(OperationsBesideAnother, AreRefusedAsBusyAndChangeNothingWhileItWrites) {
  TemporaryFile place;
  Archive other(place.Connect());
  Fill(other);
  DeleteTheLast(other);
  const Holding before = HeldBy(other);
  Archive archive(std::make_unique<database::SqliteDatabase>(
      database::SqliteChoice{.file = place.Name(), .patience = std::chrono::milliseconds(0)}));
  const IdsByNumber ids = FilledIds(archive);
  {
    const database::Transaction writes(other.Connection());
    try {
      GetParam().run(archive, ids);
      ADD_FAILURE() << "it was done";
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.fault, Fault::Busy);
    }
  }
  EXPECT_EQ(HeldBy(other), before);
  GetParam().run(archive, ids);
  EXPECT_NE(HeldBy(other), before);
}

TEST_P(OperationsBesideAnother, AreForbiddenWhereAnArchiveIsOnlyRead) {
  TemporaryFile place;
  Archive other(place.Connect());
  Fill(other);
  DeleteTheLast(other);
  const Holding before = HeldBy(other);
  Archive archive = Open({place.Name()}, database::Access::ReadOnly);
  const IdsByNumber ids = FilledIds(archive);
  try {
    GetParam().run(archive, ids);
    ADD_FAILURE() << "it was done";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.fault, Fault::Forbidden);
  }
  EXPECT_EQ(HeldBy(other), before);
  EXPECT_EQ(HeldBy(archive), before);
}

INSTANTIATE_TEST_SUITE_P(Each, OperationsBesideAnother, testing::ValuesIn(kOperations),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace kestrel::archive
