// An archive as the first version of the program made it.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "database/database.h"

namespace kestrel::archive {

inline bool IsFile(const database::Database& database) {
  return std::string(database.KeyType()) == "integer primary key";
}

// As the database at hand writes what a file says.
inline std::string Spoken(std::string sql, const database::Database& database) {
  const bool isFile = IsFile(database);
  const auto replace = [&](const std::string& from, const std::string& to) {
    for (auto at = sql.find(from); !isFile && at != std::string::npos;
         at = sql.find(from, at + to.size())) {
      sql.replace(at, from.size(), to);
    }
  };
  replace("integer primary key", database.KeyType());
  replace("X'", "'\\x");
  return sql;
}

// The words of a record that was kept before there were sets.
inline void MakeVersion1(database::Database& database) {
  std::ifstream file(KESTREL_VERSION_1);
  const std::string all{std::istreambuf_iterator<char>(file), {}};
  ASSERT_NE(all, "");
  database::Transaction transaction(database);
  database.LockSchema();
  for (std::size_t from = all.find('\n') + 1; from < all.size();) {
    const std::size_t end = all.find(";\n", from);
    database.Run(Spoken(all.substr(from, end - from), database));
    from = end + 2;
  }
  // A server counts apart from what is there.
  for (const char* table : {"source", "record"}) {
    if (IsFile(database)) break;
    database.Run(std::string("alter table ") + table + " alter column id restart with 2");
  }
  transaction.Commit();
}

}  // namespace kestrel::archive
