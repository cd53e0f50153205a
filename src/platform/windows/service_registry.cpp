// The registry's values as texts, and commands run to their end without a window.
// SPDX-License-Identifier: MIT
#include "platform/windows/service_registry.h"

#include <windows.h>

// After windows.h, which it builds on.
#include <shlobj.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <vector>

#include "numeric/number_parse.h"
#include "platform/system_files.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

constexpr std::string_view kServiceKey = "SYSTEM\\CurrentControlSet\\Services\\giveio";
constexpr std::string_view kStart = "Start";
constexpr const char* kStartsWithSystem = "2";

class RegistryKey {
 public:
  RegistryKey() = default;
  ~RegistryKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  bool OpenToRead(const std::string& key) {
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &key_) == ERROR_SUCCESS;
  }
  bool OpenToWrite(const std::string& key) {
    return RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                           KEY_WRITE, nullptr, &key_, nullptr) == ERROR_SUCCESS;
  }
  [[nodiscard]] HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

// Text without the zeros that end it, or a 4-byte number in decimal.
std::string ValueText(DWORD type, const std::vector<BYTE>& data) {
  if (type == REG_DWORD && data.size() >= sizeof(DWORD)) {
    DWORD number = 0;
    std::memcpy(&number, data.data(), sizeof number);
    return std::to_string(number);
  }
  if (type != REG_SZ && type != REG_EXPAND_SZ) return {};
  std::string text(data.begin(), data.end());
  return text.substr(0, text.find('\0'));
}

std::wstring WideOf(const std::string& utf8) {
  return PathOf(utf8).native();
}

// The command interpreter reads such files in the console's code page.
std::string ForBatchFile(const std::string& utf8) {
  const std::wstring wide = WideOf(utf8);
  const auto length = static_cast<int>(wide.size());
  std::string text(2 * wide.size(), ' ');
  const int size = WideCharToMultiByte(CP_OEMCP, 0, wide.data(), length, text.data(),
                                       static_cast<int>(text.size()), nullptr, nullptr);
  return text.substr(0, static_cast<std::size_t>(size));
}

}  // namespace

// A library that has brought its driver along needs no other to be installed.
std::string ServiceRegistry::ReadRegistryValue(const std::string& key, const std::string& name) {
  if (name == kStart && key == kServiceKey && libraries_.BringsDriver()) return kStartsWithSystem;
  RegistryKey opened;
  if (!opened.OpenToRead(key)) return {};
  DWORD type = 0;
  DWORD size = 0;
  if (RegQueryValueExA(opened.get(), name.c_str(), nullptr, &type, nullptr, &size) !=
      ERROR_SUCCESS) {
    return {};
  }
  std::vector<BYTE> data(size);
  if (RegQueryValueExA(opened.get(), name.c_str(), nullptr, &type, data.data(), &size) !=
      ERROR_SUCCESS) {
    return {};
  }
  data.resize(size);
  return ValueText(type, data);
}

void ServiceRegistry::WriteRegistryValue(const std::string& key, const std::string& name,
                                         std::int32_t type, const std::string& value) {
  RegistryKey opened;
  if (!opened.OpenToWrite(key)) return;
  if (type == kRegistryNumber) {
    const auto number = static_cast<DWORD>(LeadingNumber(value));
    std::array<BYTE, sizeof number> bytes{};
    std::memcpy(bytes.data(), &number, sizeof number);
    RegSetValueExA(opened.get(), name.c_str(), 0, REG_DWORD, bytes.data(), sizeof number);
  } else if (type == kRegistryString) {
    RegSetValueExA(opened.get(), name.c_str(), 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>(value.size() + 1));
  }
}

std::string ServiceRegistry::ProgramFolder() {
  return TextOf(SystemFiles().ProgramFolder());
}

void ServiceRegistry::WriteBatchFile(const std::string& path, const std::string& content) {
  SystemFiles().ReplaceWhole(PathOf(path), ForBatchFile(content));
}

std::string ServiceRegistry::Explanation() {
  const bool installed =
      ReadRegistryValue(std::string(kServiceKey), std::string(kStart)) == kStartsWithSystem;
  if (!port_.Explanation().empty()) return port_.Explanation();
  std::string text = libraries_.Fault();
  if (!installed && IsUserAnAdmin() == 0) {
    text += (text.empty() ? "" : "\n") +
            std::string(
                "Installing the driver needs an administrator's rights: start the program "
                "as administrator once.");
  }
  return text;
}

std::int32_t ServiceRegistry::RunAndWait(const std::string& commandLine) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION process{};
  std::wstring command = WideOf(commandLine);  // the system may write into it
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                     nullptr, &start, &process) == 0) {
    return -1;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<std::int32_t>(code);
}

}  // namespace kestrel
