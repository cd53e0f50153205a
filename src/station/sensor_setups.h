// The set-up of a station's sensor: read whole, and restored.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

#include "connection/core.h"
#include "setup/sensor_setup.h"
#include "station/result.h"
#include "station/unattended_loop.h"
#include "station/watch.h"

namespace kestrel {

// Transfers take seconds; an interrupt ends them before the next band.
class SensorSetups {
 public:
  SensorSetups(Core& core, UnattendedLoop& loop, StepEnd& end, const Watch& watch)
      : core_(core), loop_(loop), end_(end), watch_(watch) {}

  // What the sensor holds now, with its identity and the time, under this name.
  Result<setup::Setup> Read(const std::string& name, const std::string& program);

  // The report tells how it ended; a failure only where the sensor was lost before anything could
  // be told.
  [[nodiscard]] setup::RestoreReport Restore(const setup::Setup& saved,
                                             const setup::RestoreChoice& choice);

 private:
  template <typename Work>
  auto Watched(Work work);

  Core& core_;
  UnattendedLoop& loop_;
  StepEnd& end_;
  const Watch& watch_;
};

}  // namespace kestrel
