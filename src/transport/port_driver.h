// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/driver_service.h"
#include "seams/messages.h"

namespace kestrel {

// Makes sure the port-access driver service "giveio" is installed and starts with the system; shows
// "The required I/O drivers could not be installed." when it cannot be had.
void SetupGiveIO(DriverService& service, Messages& messages);

}  // namespace kestrel
