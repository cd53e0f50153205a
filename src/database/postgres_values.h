// Values on their way to a PostgreSQL server and back, in its binary format.
// SPDX-License-Identifier: MIT
#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <vector>

#include "database/database.h"

namespace kestrel::database {

// Refers to the values, which outlive it.
class PackedValues {
 public:
  explicit PackedValues(const Values& values);

  std::vector<Oid> types;
  std::vector<const char*> data;
  std::vector<int> sizes;
  std::vector<int> binary;

 private:
  void Add(std::size_t index, const Value& value);
  void Put(Oid type, const void* bytes, std::size_t size);

  std::vector<std::uint64_t> words_;  // numbers in network order
};

// A cell of the first row. Throws DatabaseError of a column of a type that is not used here.
[[nodiscard]] Value UnpackedCell(const PGresult& outcome, int column);

}  // namespace kestrel::database
