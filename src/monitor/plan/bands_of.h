// The files of alarm bands that a plan names.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <variant>
#include <vector>

#include "alarms/band_table.h"
#include "monitor/plan/plan.h"
#include "seams/files.h"

namespace kestrel::monitor {

// One for each step, none where it names none; or a mistake for each file that is none. Names of
// files are relative to `folder`.
[[nodiscard]] std::variant<std::vector<std::optional<BandTable>>, Mistakes> BandsOf(
    const Plan& plan, Files& files, const std::filesystem::path& folder);

}  // namespace kestrel::monitor
