// The list of all registers with their contents.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "transport/register_access.h"

namespace kestrel {

// What the registers held, read one after another.
struct RegisterListing {
  struct Line {
    std::int16_t row;
    std::string word;  // four hexadecimal digits
    bool changed;      // since the listing before
  };

  std::string text;         // heading and lines, each ended by CR LF
  std::vector<Line> lines;  // as they follow on the heading
};

inline constexpr int kListHeadingLines = 2;

// The table's name of a register, "reserved" for a row that is.
[[nodiscard]] std::string RegisterEntry(std::int16_t row);

// Reads every register that is not reserved. Names are brought to a length that suits the list, in
// the register table itself. Nothing, and no name changed, when the sensor is lost; without an
// interface every register reads as 0.
[[nodiscard]] std::optional<RegisterListing> ReadAllRegisters(RegisterAccess& registers,
                                                              const RegisterListing& before);

// One line on a listing: when it was read and which registers have changed.
[[nodiscard]] std::string ListingNote(const RegisterListing& listing, const std::string& time);

}  // namespace kestrel
