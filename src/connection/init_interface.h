// InitInterface: the interface made ready.
// SPDX-License-Identifier: MIT
#pragma once

#include "connection/core.h"

namespace kestrel {

// Prepares the interface that InterfaceType names; InterfaceType falls to 0 when there is none.
void InitInterface(Core& core);

}  // namespace kestrel
