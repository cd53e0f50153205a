// A database of the test's own: a file, or a schema on the server that the test runs beside.
// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "database/postgres_database.h"
#include "database/sqlite_database.h"
#include "support/temporary_folder.h"

namespace kestrel {

// Gives any number of connections to one database.
class TemporaryDatabase {
 public:
  virtual ~TemporaryDatabase() = default;
  [[nodiscard]] virtual std::unique_ptr<database::Database> Connect() = 0;
};

class TemporaryFile : public TemporaryDatabase {
 public:
  [[nodiscard]] std::string Name() const { return (folder_.path() / "archive.db").string(); }
  [[nodiscard]] std::unique_ptr<database::Database> Connect() override {
    return std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = Name()});
  }

 private:
  TemporaryFolder folder_;
};

// Needs the environment that temporary_postgres makes.
class TemporarySchema : public TemporaryDatabase {
 public:
  TemporarySchema() {
    static int made = 0;
    name_ = "test_" + std::to_string(getpid()) + "_" + std::to_string(made++);
    database::PostgresDatabase("").Run("create schema " + name_);
  }
  // As a place to connect to.
  [[nodiscard]] std::string Url() const {
    return "postgresql:///?options=-csearch_path%3D" + name_;
  }
  [[nodiscard]] std::unique_ptr<database::Database> Connect() override {
    return std::make_unique<database::PostgresDatabase>(Url());
  }

 private:
  std::string name_;
};

template <typename Kind>
std::unique_ptr<TemporaryDatabase> MakeTemporaryDatabase() {
  return std::make_unique<Kind>();
}
struct DatabaseKind {
  const char* name;
  std::unique_ptr<TemporaryDatabase> (*make)();
};
inline void PrintTo(const DatabaseKind& kind, std::ostream* out) {
  *out << kind.name;
}
inline constexpr DatabaseKind kInAFile{"InAFile", MakeTemporaryDatabase<TemporaryFile>};
inline constexpr DatabaseKind kOnAServer{"OnAServer", MakeTemporaryDatabase<TemporarySchema>};

// Values for INSTANTIATE_TEST_SUITE_P: the suite on files, and on the server.
#define KESTREL_ON_EVERY_DATABASE(Suite)                                 \
  INSTANTIATE_TEST_SUITE_P(InAFile, Suite, ::testing::Values(kInAFile)); \
  INSTANTIATE_TEST_SUITE_P(OnAServer, Suite, ::testing::Values(kOnAServer))

}  // namespace kestrel
