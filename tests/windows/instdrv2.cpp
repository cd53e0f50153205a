// Stands for the installer of driver services: notes its arguments beside itself.
// SPDX-License-Identifier: MIT
// Stands for the installer of driver services: notes its arguments beside itself; an installation
// enters the service with a start on demand.

#include <windows.h>

#include <cstring>
#include <filesystem>
#include <fstream>

int main(int argc, char** argv) {
  wchar_t self[MAX_PATH];
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::ofstream notes(std::filesystem::path(self).parent_path() / "instdrv2.txt", std::ios::app);
  for (int i = 1; i < argc; ++i) notes << '[' << argv[i] << ']';
  notes << '\n';
  if (argc == 3 && std::strcmp(argv[2], "remove") != 0) {
    const DWORD onDemand = 3;
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\giveio", 0, nullptr,
                    0, KEY_WRITE, nullptr, &key, nullptr);
    RegSetValueExA(key, "Start", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&onDemand),
                   sizeof onDemand);
    RegCloseKey(key);
  }
  return 0;
}
