// The program-wide names before a program does anything.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Every program-wide name back to its start value; the models of the registers go. SystemName
// stays: it is what the program runs on.
void ResetProgramNames();

}  // namespace kestrel
