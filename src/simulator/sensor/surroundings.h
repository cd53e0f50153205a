// What surrounds the sensor: its scenario, how far that has gone, and when the power came.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <utility>

#include "simulator/signal/scenario.h"

namespace kestrel::sensor {

struct Surroundings {
  Scenario scenario;
  std::uint64_t captures = 0;  // complete since the scenario began
  std::chrono::nanoseconds powerUp{0};

  void Begin(Scenario other) {
    scenario = std::move(other);
    captures = 0;
  }

  [[nodiscard]] double SecondsSincePowerUp(std::chrono::nanoseconds moment) const {
    return std::chrono::duration<double>(moment - powerUp).count();
  }

  // For a record that begins at `moment`.
  [[nodiscard]] Moment At(std::chrono::nanoseconds moment) const {
    return {SecondsSincePowerUp(moment), captures};
  }
};

}  // namespace kestrel::sensor
