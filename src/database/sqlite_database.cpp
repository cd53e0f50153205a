// Statements, values and faults of SQLite.
// SPDX-License-Identifier: MIT
#include "database/sqlite_database.h"

namespace kestrel::database {
namespace {

Fault KindOf(int code) {
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Fault::Busy;
    case SQLITE_CONSTRAINT:
      return Fault::Constraint;
    case SQLITE_INTERRUPT:
      return Fault::Cancelled;
    case SQLITE_FULL:
      return Fault::Full;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return Fault::Corrupt;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
      return Fault::Forbidden;
    case SQLITE_IOERR:
      return Fault::Lost;
    default:
      return Fault::Other;
  }
}

// "?" and "#" have a meaning in the name of a file that is told as a URI.
std::string UriOf(const std::string& file, const char* query) {
  std::string uri = "file:";
  for (const char letter : file) {
    switch (letter) {
      case '%':
        uri += "%25";
        break;
      case '?':
        uri += "%3f";
        break;
      case '#':
        uri += "%23";
        break;
      default:
        uri += letter;
    }
  }
  return uri + query;
}

Value Cell(sqlite3_stmt* statement, int column) {
  const auto size = [&] {
    return static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  };
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_column_int64(statement, column)};
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, column);
    case SQLITE_TEXT: {
      const auto* text = sqlite3_column_text(statement, column);
      return std::string(text, text + size());
    }
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement, column));
      return Bytes(bytes, bytes + size());
    }
    default:
      return {};
  }
}

}  // namespace

SqliteDatabase::SqliteDatabase(const SqliteChoice& choice) {
  if (choice.access == Access::ReadOnly) {
    OpenToRead(choice.file);
    return;
  }
  Open(choice.file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX);
  Check(sqlite3_busy_timeout(connection_.get(), static_cast<int>(choice.patience.count())));
  // Pages that hold several records with little waste; only a file without a table takes it.
  for (const char* pragma :
       {"page_size=16384", "journal_mode=wal", "synchronous=full", "foreign_keys=on"}) {
    Set(pragma);
  }
}

void SqliteDatabase::Open(const std::string& name, int flags) {
  sqlite3* connection = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);  // also after a failure
  Check(code);
  Check(sqlite3_extended_result_codes(connection, 1));
}

// A file in a folder that cannot be written has no place for what readers and writers share: it is
// then read as one that nobody changes.
void SqliteDatabase::OpenToRead(const std::string& file) {
  Open(file, SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX);
  try {
    Run("select count(*) from sqlite_master");
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Forbidden) throw;
    statements_.clear();
    Open(UriOf(file, "?immutable=1"),
         SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX | SQLITE_OPEN_URI);
  }
}

void SqliteDatabase::Set(const char* pragma) {
  Check(sqlite3_exec(connection_.get(), (std::string("pragma ") + pragma).c_str(), nullptr, nullptr,
                     nullptr));
}

void SqliteDatabase::Run(const std::string& sql, const Values& values, const OnRow& row) {
  sqlite3_stmt* statement = Prepared(sql);
  const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> reset(statement, sqlite3_reset);
  sqlite3_clear_bindings(statement);
  for (std::size_t i = 0; i < values.size(); ++i) {
    Bind(statement, static_cast<int>(i) + 1, values[i]);
  }
  int code = sqlite3_step(statement);
  for (; code == SQLITE_ROW; code = sqlite3_step(statement)) {
    if (row) row(Cells(statement));
  }
  if (code != SQLITE_DONE) Check(code);
}

void SqliteDatabase::Rollback() {
  if (sqlite3_get_autocommit(connection_.get()) == 0) Run("rollback");
}

bool SqliteDatabase::HasTable(const std::string& name) {
  return Number(*this, "select count(*) from sqlite_master where type = 'table' and name = $1",
                {name}) > 0;
}

bool SqliteDatabase::IsBlank() {
  return Number(*this, "select count(*) from sqlite_master") == 0;
}

// Pages that are free will be used again before the file grows.
std::int64_t SqliteDatabase::Size() {
  const std::int64_t pages =
      Number(*this, "pragma page_count") - Number(*this, "pragma freelist_count");
  return pages * Number(*this, "pragma page_size");
}

std::vector<std::string> SqliteDatabase::Damage() {
  std::vector<std::string> lines;
  Run("pragma integrity_check", {}, [&](Row row) { lines.push_back(Text(row[0])); });
  if (lines == std::vector<std::string>{"ok"}) lines.clear();
  return lines;
}

sqlite3_stmt* SqliteDatabase::Prepared(const std::string& sql) {
  Statement& kept = statements_[sql];
  if (kept) return kept.get();
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v3(connection_.get(), sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT,
                           &statement, nullptr));
  kept.reset(statement);
  return statement;
}

// The values live as long as the statement runs: nothing is copied.
void SqliteDatabase::Bind(sqlite3_stmt* statement, int number, const Value& value) const {
  const int at = sqlite3_bind_parameter_index(statement, ("$" + std::to_string(number)).c_str());
  int code = SQLITE_OK;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    code = sqlite3_bind_int64(statement, at, *whole);
  } else if (const auto* real = std::get_if<double>(&value)) {
    code = sqlite3_bind_double(statement, at, *real);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    code =
        sqlite3_bind_text64(statement, at, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
  } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
    // A null pointer would become a null.
    const void* data = bytes->empty() ? static_cast<const void*>("") : bytes->data();
    code = sqlite3_bind_blob64(statement, at, data, bytes->size(), SQLITE_STATIC);
  } else {
    code = sqlite3_bind_null(statement, at);
  }
  Check(code);
}

Row SqliteDatabase::Cells(sqlite3_stmt* statement) {
  row_.resize(static_cast<std::size_t>(sqlite3_column_count(statement)));
  for (std::size_t column = 0; column < row_.size(); ++column) {
    row_[column] = Cell(statement, static_cast<int>(column));
  }
  return row_;
}

void SqliteDatabase::Check(int code) const {
  if (code != SQLITE_OK) throw DatabaseError(KindOf(code), sqlite3_errmsg(connection_.get()));
}

}  // namespace kestrel::database
