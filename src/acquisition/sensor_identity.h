// Which sensor the program talks to at present.
// SPDX-License-Identifier: MIT
#pragma once

#include "record/record.h"

namespace kestrel {

// Product, interface and adapter as they are chosen now. Whether the sensor is simulated cannot be
// told from the program's side of the seams.
[[nodiscard]] SensorIdentity PresentSensor();

}  // namespace kestrel
