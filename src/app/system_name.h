// SystemName: the class of Windows that the program runs on, or takes its system for.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "seams/messages.h"

namespace kestrel {

// The operating system as it tells its version.
struct SystemVersion {
  enum class Family { Other, Windows9x, WindowsNt };
  Family family = Family::Other;
  int major = 0;
  int minor = 0;
};

// Class of the operating system, "Win95", "Win98", "WinNT" or "WinXP" ("WinNT"); iniSystem2.
extern const std::string& SystemName;

// Back to the start value in brackets.
void ResetSystemName();

// Sets SystemName: every Windows from 5.1 on counts as "WinXP", every system that is not Windows as
// "WinNT". Systems other than Windows need not call it.
void iniSystem2(const SystemVersion& version);

// Whether USB adapters can be used; says so where they cannot.
[[nodiscard]] bool UsbOffered(Messages& messages);

}  // namespace kestrel
