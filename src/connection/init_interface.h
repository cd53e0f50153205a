// InitInterface: the interface made ready.
// SPDX-License-Identifier: MIT
#pragma once

#include "connection/core.h"

namespace kestrel {

// What a start of the program sets before it reads the configuration file.
void SetStartDefaults();

// Prepares the interface that InterfaceType names and lets registers be accessed over it;
// InterfaceType falls to 0 when there is none.
void InitInterface(Core& core);

}  // namespace kestrel
