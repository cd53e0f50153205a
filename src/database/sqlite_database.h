// A database in a file of its own.
// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <map>
#include <memory>
#include <string>

#include "database/database.h"

namespace kestrel::database {

enum class Access { ReadWrite, ReadOnly };

struct SqliteChoice {
  std::string file;  // UTF-8
  Access access = Access::ReadWrite;
  // For somebody else's lock.
  std::chrono::milliseconds patience{5000};
};

// What is committed is on the disk. Readers never wait for a writer; a second writer waits its
// turn.
class SqliteDatabase : public Database {
 public:
  // Makes the file where it is missing and may be made.
  explicit SqliteDatabase(const SqliteChoice& choice);

  using Database::Run;
  void Run(const std::string& sql, const Values& values, const OnRow& row) override;
  void Begin() override { Run("begin immediate"); }
  void Commit() override { Run("commit"); }
  void Rollback() override;
  void Cancel() override { sqlite3_interrupt(connection_.get()); }
  [[nodiscard]] const char* KeyType() const override { return "integer primary key"; }
  [[nodiscard]] bool NumbersRows() const override { return true; }
  [[nodiscard]] bool HasTable(const std::string& name) override;
  [[nodiscard]] bool IsBlank() override;
  void LockSchema() override {}  // Begin has locked everything
  void ReleaseMemory() override { sqlite3_db_release_memory(connection_.get()); }
  [[nodiscard]] std::int64_t Size() override;
  [[nodiscard]] std::vector<std::string> Damage() override;

 private:
  struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  void Open(const std::string& name, int flags);
  void OpenToRead(const std::string& file);
  void Set(const char* pragma);
  sqlite3_stmt* Prepared(const std::string& sql);
  void Bind(sqlite3_stmt* statement, int number, const Value& value) const;
  Row Cells(sqlite3_stmt* statement);
  void Check(int code) const;

  std::unique_ptr<sqlite3, Close> connection_;
  std::map<std::string, Statement> statements_;  // go before the connection
  Values row_;
};

}  // namespace kestrel::database
