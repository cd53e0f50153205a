// The user's bearings as a text that is kept: a line each, cells parted by tabs.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/bearings.h"

namespace kestrel::study {

// No two of the same name.
using BearingLibrary = std::vector<analysis::Bearing>;

// Heads first; numbers with "." whatever the locale, and exact.
[[nodiscard]] std::string TextOf(const BearingLibrary& library);

// What could be read of a text, and a message about each line that could not.
struct ReadBearings {
  BearingLibrary bearings = {};
  std::vector<std::string> messages = {};
};
[[nodiscard]] ReadBearings BearingsFrom(std::string_view text);

// Takes the place of the one of the same name.
void Put(BearingLibrary& library, analysis::Bearing bearing);
void Drop(BearingLibrary& library, const std::string& name);

}  // namespace kestrel::study
