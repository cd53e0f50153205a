// One database, whichever server or file it is: statements with values, rows, faults by kind.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "numeric/runtime_error.h"

namespace kestrel::database {

using Bytes = std::vector<std::uint8_t>;
// Null, a number, text (UTF-8) or bytes.
using Value = std::variant<std::monostate, std::int64_t, double, std::string, Bytes>;
using Values = std::vector<Value>;
using Row = std::span<const Value>;
using OnRow = std::function<void(Row)>;

enum class Fault {
  Busy,        // somebody else holds a lock; later it may work
  Constraint,  // a row that may not be
  Lost,        // the connection, or the disk under the file
  Cancelled,
  Full,       // no space left
  Corrupt,    // the file is damaged, or is no database
  Forbidden,  // no right to do that
  Other
};

class DatabaseError : public RuntimeError {
 public:
  DatabaseError(Fault kind, const std::string& text) : RuntimeError(text), fault(kind) {}
  Fault fault;
};

// A connection. It belongs to one thread; only Cancel may be called from another. Every call throws
// DatabaseError.
class Database {
 public:
  virtual ~Database() = default;

  // One statement with $1, $2, ... for the values, the same text for every kind of database.
  virtual void Run(const std::string& sql, const Values& values, const OnRow& row) = 0;
  void Run(const std::string& sql, const Values& values = {}) { Run(sql, values, {}); }

  virtual void Begin() = 0;  // with the right to write
  virtual void Commit() = 0;
  virtual void Rollback() = 0;  // nothing where no transaction is open

  // Ends the Run at work, with Fault::Cancelled.
  virtual void Cancel() = 0;

  // The column type of an automatic key.
  [[nodiscard]] virtual const char* KeyType() const = 0;
  // Whether every row of a table has a number, "rowid", by which it can be read.
  [[nodiscard]] virtual bool NumbersRows() const { return false; }
  // Whether a table of this name is there.
  [[nodiscard]] virtual bool HasTable(const std::string& name) = 0;
  // Whether there is any table.
  [[nodiscard]] virtual bool IsBlank() = 0;
  // Within a transaction: others that want to change the tables wait for its end. Makes whatever
  // tables need beside them.
  virtual void LockSchema() = 0;
  // Gives back memory that only holds what is also on the disk; the next statements read it anew.
  virtual void ReleaseMemory() {}
  // Bytes on the disk.
  [[nodiscard]] virtual std::int64_t Size() = 0;
  // What is damaged, a line each; none where all is well.
  [[nodiscard]] virtual std::vector<std::string> Damage() = 0;
};

// Begun here, rolled back at the end of its scope unless committed.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database) { database_.Begin(); }
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  Database& database_;
  bool open_ = true;
};

// A cell of a row. Throws DatabaseError where it is of another kind; the optional ones take null.
[[nodiscard]] std::int64_t Integer(const Value& cell);
[[nodiscard]] double Real(const Value& cell);
[[nodiscard]] const std::string& Text(const Value& cell);
[[nodiscard]] const Bytes& Blob(const Value& cell);
[[nodiscard]] inline bool IsNull(const Value& cell) {
  return std::holds_alternative<std::monostate>(cell);
}
// The first cell of the only row, a number; `otherwise` where there is no row.
[[nodiscard]] std::int64_t Number(Database& database, const std::string& sql,
                                  const Values& values = {}, std::int64_t otherwise = 0);

}  // namespace kestrel::database
