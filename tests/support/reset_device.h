// The program-wide names of the device's layer and of those below it.
// SPDX-License-Identifier: MIT
#pragma once

#include "app/system_name.h"
#include "device/register_models.h"

namespace kestrel {

// The names of the device's layer and of those below back to their start values, that of the
// system included.
inline void ResetDevice() {
  ResetDeviceNames();
  ResetSystemName();
}

}  // namespace kestrel
