// Lock files: open to one program for writing, and gone with it.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <array>
#include <system_error>

#include "platform/device_locks.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

struct CloseFile {
  void operator()(void* file) const { ::CloseHandle(file); }
};

// Null where it is another program's, or cannot be made; GetLastError tells which.
HANDLE Make(const fs::path& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                  FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  return file == INVALID_HANDLE_VALUE ? nullptr : file;
}

void Sign(HANDLE file, const std::string& text) {
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

fs::path FolderOf(const wchar_t* variable) {
  const wchar_t* value = _wgetenv(variable);
  return value == nullptr ? fs::path() : fs::path(value);
}

}  // namespace

bool DeviceLocks::Take(const std::string& device) {
  if (held_.contains(device)) return true;
  for (const fs::path& folder : folders_) {
    std::error_code ignored;  // making the file tells
    fs::create_directories(folder, ignored);
    const HANDLE file = Make(folder / LockFileOf(device));
    if (file == nullptr && GetLastError() == ERROR_SHARING_VIOLATION) return false;
    if (file == nullptr) continue;
    held_[device] = std::shared_ptr<void>(file, CloseFile());
    Sign(file, user_() + " (process " + std::to_string(GetCurrentProcessId()) + ")");
    return true;
  }
  return true;
}

std::string DeviceLocks::Holder(const std::string& device) const {
  std::array<char, 300> text{};
  DWORD size = 0;
  for (const fs::path& folder : folders_) {
    const HANDLE file = CreateFileW((folder / LockFileOf(device)).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) continue;
    if (ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &size, nullptr) == 0) size = 0;
    ::CloseHandle(file);
    break;
  }
  return HolderOf({text.data(), size});
}

std::vector<fs::path> LockFolders() {
  if (const fs::path chosen = FolderOf(L"KESTREL_LOCKS"); !chosen.empty()) return {chosen};
  std::vector<fs::path> folders;
  for (const wchar_t* variable : {L"ProgramData", L"LOCALAPPDATA"}) {
    if (const fs::path folder = FolderOf(variable); !folder.empty()) {
      folders.push_back(folder / "kestrel" / "locks");
    }
  }
  return folders;
}

}  // namespace kestrel
