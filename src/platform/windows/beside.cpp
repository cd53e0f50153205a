// A program beside this one, waited for.
// SPDX-License-Identifier: MIT
#include "platform/beside.h"

#include <array>
#include <filesystem>
#include <string>

// Last: it makes macros of names that the program uses.
#include <windows.h>

namespace kestrel {

std::optional<int> RunBeside(const std::string& name, char** /*argv*/) {
  std::array<wchar_t, 32'768> own{};
  if (::GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())) == 0) {
    return std::nullopt;
  }
  const auto program = std::filesystem::path(own.data()).parent_path() / (name + ".exe");
  std::wstring line = ::GetCommandLineW();  // as it was typed, quotes and all
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION made{};
  if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &start, &made) == 0) {
    return std::nullopt;
  }
  ::SetConsoleCtrlHandler(nullptr, TRUE);  // Ctrl-C is the other's
  ::WaitForSingleObject(made.hProcess, INFINITE);
  DWORD code = 1;
  ::GetExitCodeProcess(made.hProcess, &code);
  ::CloseHandle(made.hProcess);
  ::CloseHandle(made.hThread);
  return static_cast<int>(code);
}

}  // namespace kestrel
