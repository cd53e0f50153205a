// A plan carried out by the command-line program until it is told to end.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "cli/exit_code.h"
#include "cli/session.h"
#include "monitor/plan/plan.h"

namespace kestrel {

struct MonitorRun {
  monitor::Plan plan{};
  std::vector<std::optional<BandTable>> bands{};  // of each step
  Connection connection{};
  archive::Place place{};
  bool isJson = false;         // what is said are lines for another program, accounts among them
  bool endsWithInput = false;  // when the standard input is closed
};

// `given` with a road of its own takes the place of the plan's.
[[nodiscard]] Connection ConnectionOf(const monitor::Road& road, const Connection& given);

// Throws RuntimeError where it cannot begin.
ExitCode RunMonitor(const Surroundings& surroundings, const MonitorRun& run);

}  // namespace kestrel
