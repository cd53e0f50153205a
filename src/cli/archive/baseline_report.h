// A baseline as JSON.
// SPDX-License-Identifier: MIT
#pragma once

#include "baseline/workbench.h"
#include "cli/command.h"

namespace kestrel {

[[nodiscard]] Json BaselineJson(const baseline::Workbench& bench);

}  // namespace kestrel
