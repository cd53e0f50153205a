// Everything that is known of a record apart from its points, as names and values.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "exchange/record_note.h"

namespace kestrel::exchange {

// Nothing where it is not known.
using FactValue = std::variant<std::monostate, bool, std::int64_t, float, double, std::string,
                               std::vector<std::string>>;

struct Fact {
  std::string name;  // lower case, "_" between words, at most 31 characters; the unit at its end
  FactValue value;
};

// In the same order for every record.
[[nodiscard]] std::vector<Fact> FactsOf(const NotedRecord& noted);

// When the record was taken; the epoch where nobody knows.
[[nodiscard]] std::chrono::system_clock::time_point TimeOf(const NotedRecord& noted);

// Hz between two bins of a spectrum, s between two samples of a time record.
[[nodiscard]] double StepOf(const Record& record);

// Hz or s of a point.
[[nodiscard]] double PlaceOf(const Record& record, std::size_t point);

}  // namespace kestrel::exchange
