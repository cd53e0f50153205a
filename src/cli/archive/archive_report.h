// Kept records as lines for people or JSON for scripts.
// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <string>

#include "archive/kept_record.h"
#include "cli/command.h"

namespace kestrel {

// A list: its head, and a line each. Columns are parted by tabs.
[[nodiscard]] std::string ListHead();
[[nodiscard]] std::string ListLine(const archive::KeptRecord& record);

// id, time, kind, settings, levels, remarks and where it came from.
[[nodiscard]] Json KeptJson(const archive::KeptRecord& record);

// What is kept beside the record, a line each.
void PrintKept(std::ostream& out, const archive::KeptRecord& record);

}  // namespace kestrel
