// Which sensor the program talks to at present.
// SPDX-License-Identifier: MIT
#pragma once

#include "connection/core.h"
#include "record/record.h"

namespace kestrel {

// Product, interface and adapter as they are chosen now, and whether the road leads to a simulated
// sensor.
[[nodiscard]] SensorIdentity PresentSensor(const Core& core);

}  // namespace kestrel
