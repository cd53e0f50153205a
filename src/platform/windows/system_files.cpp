// Reading and replacing files whole, with the calls of Windows.
// SPDX-License-Identifier: MIT
#include "platform/system_files.h"

#include <shlobj.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <string>
#include <system_error>
#include <utility>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kLargestPart = 1U << 16U;

[[noreturn]] void ThrowLastError() {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

class OpenedFile {
 public:
  OpenedFile(const fs::path& path, DWORD access, DWORD creation)
      : handle_(CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, creation,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  ~OpenedFile() { Close(); }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;

  [[nodiscard]] HANDLE handle() const { return handle_; }
  [[nodiscard]] bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  bool Close() {
    return !valid() || CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)) != 0;
  }

 private:
  HANDLE handle_;
};

// A new file beside the one to be replaced; removed again unless it took that one's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& folder)
      : path_(folder / (".kestrel-" + std::to_string(GetCurrentProcessId()) + ".tmp")),
        file_(path_, GENERIC_WRITE, CREATE_ALWAYS) {
    if (!file_.valid()) {
      path_.clear();
      ThrowLastError();
    }
  }
  ~TemporaryFile() {
    file_.Close();
    if (!path_.empty()) DeleteFileW(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void Write(std::string_view content) {
    while (!content.empty()) {
      DWORD written = 0;
      const auto part = static_cast<DWORD>(std::min<std::size_t>(content.size(), kLargestPart));
      if (WriteFile(file_.handle(), content.data(), part, &written, nullptr) == 0) {
        ThrowLastError();
      }
      content.remove_prefix(written);
    }
  }

  void MoveTo(const fs::path& target) {
    if (FlushFileBuffers(file_.handle()) == 0 || !file_.Close()) ThrowLastError();
    if (MoveFileExW(path_.c_str(), target.c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
      ThrowLastError();
    }
    path_.clear();
  }

 private:
  fs::path path_;
  OpenedFile file_;
};

}  // namespace

fs::path SystemFiles::ProgramFolder() {
  std::array<wchar_t, 32768> program{};
  const DWORD length =
      GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
  if (length == 0 || length >= program.size()) return WorkingFolder();
  return fs::path(std::wstring(program.data(), length)).parent_path();
}

fs::path SystemFiles::DocumentsFolder() {
  std::array<wchar_t, MAX_PATH> folder{};
  if (SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, 0, folder.data()) == S_OK) {
    return folder.data();
  }
  if (SHGetFolderPathW(nullptr, CSIDL_PROFILE, nullptr, 0, folder.data()) == S_OK) {
    return folder.data();
  }
  return WorkingFolder();
}

// Rights here are more than a few bits, so a file that removes itself is the only sure answer.
bool SystemFiles::CanWriteIn(const fs::path& folder) {
  const fs::path trial = folder / (".kestrel-" + std::to_string(GetCurrentProcessId()) + ".try");
  const HANDLE file = CreateFileW(trial.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0;
}

std::optional<std::string> SystemFiles::Read(const fs::path& file, std::size_t limit) {
  const OpenedFile opened(file, GENERIC_READ, OPEN_EXISTING);
  if (!opened.valid() || GetFileType(opened.handle()) != FILE_TYPE_DISK) return std::nullopt;
  std::string content;
  while (content.size() < limit) {
    const std::size_t filled = content.size();
    content.resize(filled + std::min<std::size_t>(kLargestPart, limit - filled));
    DWORD got = 0;
    const BOOL good = ReadFile(opened.handle(), content.data() + filled,
                               static_cast<DWORD>(content.size() - filled), &got, nullptr);
    content.resize(filled + got);
    if (good == 0) return std::nullopt;
    if (got == 0) break;
  }
  return content;
}

void SystemFiles::ReplaceWhole(const fs::path& file, std::string_view content) {
  try {
    TemporaryFile temporary(file.has_parent_path() ? file.parent_path() : fs::path("."));
    temporary.Write(content);
    temporary.MoveTo(file);
  } catch (const std::system_error& error) {
    throw RuntimeError(file.string() + ": " + error.code().message());
  }
}

}  // namespace kestrel
