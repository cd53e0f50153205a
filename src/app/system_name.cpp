// From the system's version to the name that decides what it needs.
// SPDX-License-Identifier: MIT
#include "app/system_name.h"

#include <utility>

namespace kestrel {
namespace {

constexpr const char* kWin95 = "Win95";
constexpr const char* kWin98 = "Win98";
constexpr const char* kWinNt = "WinNT";
constexpr const char* kWinXp = "WinXP";

const char* NameOf(const SystemVersion& version) {
  const std::pair number(version.major, version.minor);
  switch (version.family) {
    case SystemVersion::Family::Windows9x:
      return number < std::pair(4, 10) ? kWin95 : kWin98;
    case SystemVersion::Family::WindowsNt:
      return number < std::pair(5, 1) ? kWinNt : kWinXp;
    case SystemVersion::Family::Other:
      break;
  }
  return kWinNt;
}

std::string name = kWinNt;

}  // namespace

const std::string& SystemName = name;

void ResetSystemName() {
  name = kWinNt;
}

void iniSystem2(const SystemVersion& version) {
  name = NameOf(version);
}

bool UsbOffered(Messages& messages) {
  if (SystemName != kWin95) return true;
  messages.Show("USB not available for Windows95");
  return false;
}

}  // namespace kestrel
