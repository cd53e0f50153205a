// A plan out of what a sensor is set to now.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "monitor/plan/plan.h"
#include "station/recorder.h"

namespace kestrel::monitor {

struct PresentSettings {
  RecordSetup setup{};  // every field filled, as Recorder::Configure gives it
  // REC_PRD, of a sensor in timer mode.
  std::optional<std::int32_t> timerWord{};
  Road road{};
  std::string bench{};
  std::string sensor{};
  archive::Remarks remarks{};
  std::chrono::seconds every{60};  // where it is not in timer mode
};

// One that captures as these settings do. Names are made to fit a plan; a period that is too short
// for the capture becomes the shortest that is not.
[[nodiscard]] Plan PlanFrom(const PresentSettings& present);

}  // namespace kestrel::monitor
