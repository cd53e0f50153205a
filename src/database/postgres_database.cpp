// Statements and faults of a PostgreSQL server.
// SPDX-License-Identifier: MIT
#include "database/postgres_database.h"

#include <array>
#include <exception>

#include "database/postgres_values.h"

namespace kestrel::database {
namespace {

// The server's texts end with a line's end.
std::string Trimmed(std::string text) {
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

// What the server merely mentions, which would else be printed.
void PassOver(void* /*of nobody*/, const char* /*text*/) {}

}  // namespace

PostgresDatabase::PostgresDatabase(const std::string& where) {
  // What `where` says itself comes later and holds.
  const std::array<const char*, 3> names{"connect_timeout", "dbname", nullptr};
  const std::array<const char*, 3> values{"10", where.c_str(), nullptr};
  connection_.reset(PQconnectdbParams(names.data(), values.data(), 1));
  PGconn* connection = connection_.get();
  if (PQstatus(connection) != CONNECTION_OK) {
    throw DatabaseError(Fault::Lost, Trimmed(PQerrorMessage(connection)));
  }
  cancel_.reset(PQgetCancel(connection));
  PQsetNoticeProcessor(connection, PassOver, nullptr);
}

void PostgresDatabase::Run(const std::string& sql, const Values& values, const OnRow& row) {
  PGconn* connection = connection_.get();
  const PackedValues packed(values);
  const std::string name = Prepared(sql, packed.types);
  if (PQsendQueryPrepared(connection, name.c_str(), static_cast<int>(values.size()),
                          packed.data.data(), packed.sizes.data(), packed.binary.data(), 1) == 0) {
    throw DatabaseError(Fault::Lost, Trimmed(PQerrorMessage(connection)));
  }
  PQsetSingleRowMode(connection);  // or the whole answer is held in memory
  std::exception_ptr first;        // all outcomes must be fetched, also after a fault
  while (const Outcome outcome{PQgetResult(connection)}) {
    if (first) continue;
    try {
      Take(*outcome, row);
    } catch (...) {
      first = std::current_exception();
      Cancel();
    }
  }
  if (first) std::rethrow_exception(first);
}

// The server would roll back a failed transaction and call that done.
void PostgresDatabase::Commit() {
  if (PQtransactionStatus(connection_.get()) == PQTRANS_INERROR) {
    throw DatabaseError(Fault::Other, "the transaction has failed");
  }
  Run("commit");
}

void PostgresDatabase::Rollback() {
  if (PQtransactionStatus(connection_.get()) != PQTRANS_IDLE) Run("rollback");
}

void PostgresDatabase::Cancel() {
  std::array<char, 256> text{};
  PQcancel(cancel_.get(), text.data(), static_cast<int>(text.size()));
}

bool PostgresDatabase::HasTable(const std::string& name) {
  return Number(*this,
                "select count(*) from information_schema.tables "
                "where table_schema = current_schema() and table_name = $1",
                {name}) > 0;
}

bool PostgresDatabase::IsBlank() {
  return Number(*this,
                "select count(*) from information_schema.tables "
                "where table_schema = current_schema()") == 0;
}

// The number is any that only this program uses. Tables say "blob" as files do.
void PostgresDatabase::LockSchema() {
  Run("select cast(pg_advisory_xact_lock(7235461) as text)");
  const bool hasBlob =
      Number(*this,
             "select count(*) from information_schema.domains "
             "where domain_schema = current_schema() and domain_name = 'blob'") > 0;
  if (!hasBlob) Run("create domain blob as bytea");
}

std::int64_t PostgresDatabase::Size() {
  return Number(*this,
                "select cast(coalesce(sum(pg_total_relation_size(quote_ident(table_name))), 0) as "
                "bigint) from information_schema.tables where table_schema = current_schema()");
}

std::string PostgresDatabase::Prepared(const std::string& sql, const std::vector<Oid>& types) {
  std::string& name = names_[{sql, types}];
  if (!name.empty()) return name;
  const std::string fresh = "s" + std::to_string(++tried_);  // one that failed may be there
  const Outcome outcome(PQprepare(connection_.get(), fresh.c_str(), sql.c_str(),
                                  static_cast<int>(types.size()), types.data()));
  if (!outcome) throw DatabaseError(Fault::Lost, Trimmed(PQerrorMessage(connection_.get())));
  Take(*outcome, {});
  return name = fresh;
}

void PostgresDatabase::Take(const PGresult& outcome, const OnRow& row) {
  const ExecStatusType status = PQresultStatus(&outcome);
  if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_SINGLE_TUPLE) {
    Throw(outcome);
  }
  if (row && PQntuples(&outcome) > 0) row(Cells(outcome));
}

Row PostgresDatabase::Cells(const PGresult& outcome) {
  row_.resize(static_cast<std::size_t>(PQnfields(&outcome)));
  for (std::size_t column = 0; column < row_.size(); ++column) {
    row_[column] = UnpackedCell(outcome, static_cast<int>(column));
  }
  return row_;
}

void PostgresDatabase::Throw(const PGresult& outcome) const {
  const char* state = PQresultErrorField(&outcome, PG_DIAG_SQLSTATE);
  throw DatabaseError(KindOf(state == nullptr ? "" : state),
                      Trimmed(PQresultErrorMessage(&outcome)));
}

// By the server's five-letter states.
Fault PostgresDatabase::KindOf(const std::string& state) const {
  if (PQstatus(connection_.get()) != CONNECTION_OK || state.starts_with("08") ||
      state.starts_with("57P")) {
    return Fault::Lost;
  }
  // Values that may not be together, and such as may not be at all: a text that is no UTF-8.
  if (state.starts_with("23") || state.starts_with("22")) return Fault::Constraint;
  if (state == "57014") return Fault::Cancelled;
  if (state == "55P03" || state.starts_with("40")) return Fault::Busy;
  if (state == "53100") return Fault::Full;
  if (state.starts_with("XX")) return Fault::Corrupt;
  if (state == "42501" || state.starts_with("28") || state == "25006") return Fault::Forbidden;
  return Fault::Other;
}

}  // namespace kestrel::database
