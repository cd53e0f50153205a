// The models of the registers and the register table, made together and gone together.
// SPDX-License-Identifier: MIT
#pragma once

#include "transport/register_access.h"

namespace kestrel {

// Makes gAlmCtrl, gRecCtrl and gRecInfo and builds the register table.
void InitRegisterTable(RegisterAccess& registers);

// The program-wide names of this folder and of those below it back to their start values; the
// models go. SystemName stays: it is what the program runs on.
void ResetDeviceNames();

}  // namespace kestrel
