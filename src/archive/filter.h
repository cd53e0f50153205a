// Which records of an archive are asked for.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "archive/kept_record.h"
#include "database/database.h"
#include "record/record.h"

namespace kestrel::archive {

// What is empty asks for nothing.
struct Filter {
  std::optional<std::chrono::system_clock::time_point> from{};   // taken then or later
  std::optional<std::chrono::system_clock::time_point> until{};  // taken before
  std::optional<std::string> machine{};                          // exactly; "" for none told
  std::optional<std::string> point{};
  std::optional<std::string> bench{};
  std::string tag{};
  std::string text{};  // in machine, point, note or a tag, in capitals or not
  std::optional<RecordKind> kind{};
  std::optional<int> option{};  // sample-rate option 0..3
  std::optional<int> range{};   // range code 0..3, of the record's own information word
  std::optional<int> window{};  // window code 0..2
  std::optional<bool> alarm{};  // some band's alarm was on
  std::optional<bool> simulated{};
  std::optional<bool> wide{};  // of a wide spectrum: see WideMark
  std::optional<Uid> set{};    // of this wide spectrum
  bool deleted = false;  // those that are deleted, but not yet for good, in place of the others
  bool operator==(const Filter&) const = default;
};

// The condition of a select over "record" as r and "source" as s, for tables of a version.
struct Condition {
  std::string sql{};
  database::Values values;
};
[[nodiscard]] Condition ConditionOf(const Filter& filter, std::int64_t version);

}  // namespace kestrel::archive
