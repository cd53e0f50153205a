// What a record does not know of itself: machine, point, orientation, speed, notes.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "record/record.h"

namespace kestrel::exchange {

// What was added to a record. Texts are UTF-8; empty ones were not given.
struct RecordNote {
  std::string machine{};
  std::string point{};
  std::string orientation{};  // of the axes: "X axial, Y horizontal, Z vertical"
  std::optional<double> speedRpm{};
  std::string note{};
  std::vector<std::string> tags{};
  // When it was taken, UTC; the record's own time where there is none.
  std::optional<std::chrono::system_clock::time_point> time{};
  std::string sensor{};   // as the user names it
  std::string program{};  // version of the program that took the record
  bool operator==(const RecordNote&) const = default;
};

struct NotedRecord {
  Record record{};
  RecordNote note{};
};

}  // namespace kestrel::exchange
