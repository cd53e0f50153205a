// The driver service that opens the ports to the program, and the port made ready with it.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/driver_service.h"
#include "seams/messages.h"
#include "seams/port_io.h"
#include "transport/parallel_port.h"

namespace kestrel {

extern const bool& PortReady;  // the parallel-port driver has been enabled (false); PreparePort

// Back to the start value in brackets.
void ResetPortDriver();

// Makes sure the port-access driver service "giveio" is installed and starts with the system; shows
// "The required I/O drivers could not be installed." with the reason when it cannot be had, faults
// of the service among them. Returns whether it can.
bool SetupGiveIO(DriverService& service, Messages& messages);

// Takes hold of the port at PortAddress, giving up any other, and puts its lines into their idle
// state. Says so, once, where the port cannot be had.
void PreparePort(DriverService& service, PortIo& io, ParallelPort& port, Messages& messages);

}  // namespace kestrel
