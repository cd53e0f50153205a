// The program-wide names before a program does anything.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Every program-wide name back to its start value; the models of the registers go.
void ResetProgramNames();

}  // namespace kestrel
