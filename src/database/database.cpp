// Transactions and cells of rows.
// SPDX-License-Identifier: MIT
#include "database/database.h"

namespace kestrel::database {
namespace {

template <typename Kind>
const Kind& As(const Value& cell, const char* name) {
  if (const auto* value = std::get_if<Kind>(&cell)) return *value;
  throw DatabaseError(Fault::Corrupt, std::string("a value in the database is no ") + name);
}

}  // namespace

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.Rollback();
  } catch (const DatabaseError&) {
    // A lost connection has rolled back by itself; whoever uses it next is told.
    open_ = false;
  }
}

void Transaction::Commit() {
  database_.Commit();
  open_ = false;
}

std::int64_t Integer(const Value& cell) {
  return As<std::int64_t>(cell, "whole number");
}

double Real(const Value& cell) {
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return static_cast<double>(*whole);
  return As<double>(cell, "number");
}

const std::string& Text(const Value& cell) {
  return As<std::string>(cell, "text");
}

const Bytes& Blob(const Value& cell) {
  return As<Bytes>(cell, "block of bytes");
}

std::int64_t Number(Database& database, const std::string& sql, const Values& values,
                    std::int64_t otherwise) {
  std::int64_t number = otherwise;
  database.Run(sql, values, [&](Row row) { number = Integer(row[0]); });
  return number;
}

}  // namespace kestrel::database
