// Kept records as lines for people or JSON for scripts.
// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <string>

#include "archive/wide_sets.h"
#include "cli/command.h"

namespace kestrel {

// A kept wide spectrum by its name, or the last one where the name is none. Throws RuntimeError
// where there is none.
[[nodiscard]] archive::WideSet FoundWideSet(archive::Archive& archive, const std::string& name);

// A list: its head, and a line each. Columns are parted by tabs.
[[nodiscard]] std::string ListHead();
[[nodiscard]] std::string ListLine(const archive::KeptRecord& record);

// id, time, kind, settings, levels, remarks and where it came from.
[[nodiscard]] Json KeptJson(const archive::KeptRecord& record);

// What is kept beside the record, a line each.
void PrintKept(std::ostream& out, const archive::KeptRecord& record);

}  // namespace kestrel
