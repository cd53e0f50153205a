// Devices on a bus as an input describes them.
// SPDX-License-Identifier: MIT
#pragma once

#include "input.h"

namespace kestrel {

// Devices on a bus as an input describes them, in the place of the system's library. What the
// devices answer, and which calls fail, goes on in the same input.
void PlugIn(Input& input);

// Pulls one of the devices out, or plugs another one in.
void ChangeBus(Input& input);

// Whether everything that was taken from the library has been given back to it.
[[nodiscard]] bool AllGivenBack();

}  // namespace kestrel
