// A plan out of what the windows show now.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "acquisition/settings_exchange.h"
#include "analysis/severity.h"
#include "archive/kept_record.h"
#include "connection/core.h"
#include "monitor/plan/plan.h"

namespace kestrel {

struct PresentRoad {
  std::string scenario{};    // of the simulated sensor; empty: the usual one
  std::string portDevice{};  // in the place of a port's address
};

// The road that is selected, as a plan names it. The number of a board is left out where there is
// only one: another program may number it differently.
[[nodiscard]] monitor::Road RoadOf(const Core& core, const PresentRoad& present);

// Whether both reach the same sensor, as far as their names tell.
[[nodiscard]] bool IsSameRoad(const monitor::Road& plan, const monitor::Road& window);

// Captures as the sensor was set when it was read last.
[[nodiscard]] monitor::Plan PresentPlan(const SettingsExchange::Shown& shown,
                                        const monitor::Road& road, const std::string& bench,
                                        const archive::Remarks& site);

// The plan's text with what else a plan can ask for, as comments.
[[nodiscard]] std::string NewPlanText(const monitor::Plan& plan, const analysis::ZoneLimits& zones);

}  // namespace kestrel
