// Lock files: made for all users, locked, and signed by their holder.
// SPDX-License-Identifier: MIT
#include "platform/device_locks.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include "platform/linux/file_descriptor.h"

namespace kestrel {
namespace {

constexpr mode_t kForEverybody = 0666;

// One of another user is opened, not made: the system forbids the latter in shared folders.
int OpenFile(const std::string& path) {
  constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW;
  int file = open(path.c_str(), O_RDWR | kFlags);
  if (file < 0 && errno == ENOENT) {
    file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | kFlags, kForEverybody);
    if (file >= 0) static_cast<void>(fchmod(file, kForEverybody));  // whatever the mask is
    if (file < 0 && errno == EEXIST) file = open(path.c_str(), O_RDWR | kFlags);
  }
  return file >= 0 ? file : open(path.c_str(), O_RDONLY | kFlags);
}

void Sign(int file, const std::string& text) {
  if (ftruncate(file, 0) != 0) return;
  static_cast<void>(!pwrite(file, text.data(), text.size(), 0));
}

// The first that can be opened.
FileDescriptor OpenIn(const std::vector<std::filesystem::path>& folders,
                      const std::string& device) {
  for (const std::filesystem::path& folder : folders) {
    FileDescriptor file(OpenFile((folder / LockFileOf(device)).string()));
    if (file.IsOpen()) return file;
  }
  return {};
}

}  // namespace

bool DeviceLocks::Take(const std::string& device) {
  if (held_.contains(device)) return true;
  FileDescriptor file = OpenIn(folders_, device);
  if (!file.IsOpen()) return true;
  if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  Sign(file.Number(), user_() + " (process " + std::to_string(getpid()) + ")");
  held_[device] = std::make_shared<FileDescriptor>(std::move(file));
  return true;
}

std::string DeviceLocks::Holder(const std::string& device) const {
  const FileDescriptor file = OpenIn(folders_, device);
  std::array<char, 300> text{};
  const ssize_t size = file.IsOpen() ? pread(file.Number(), text.data(), text.size(), 0) : 0;
  return HolderOf({text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))});
}

std::vector<std::filesystem::path> LockFolders() {
  std::vector<std::filesystem::path> folders;
  if (const char* chosen = std::getenv("KESTREL_LOCKS")) {
    folders.emplace_back(chosen);
    return folders;
  }
  folders.emplace_back("/run/lock");
  if (const char* own = std::getenv("XDG_RUNTIME_DIR")) folders.emplace_back(own);
  folders.emplace_back("/tmp");
  return folders;
}

}  // namespace kestrel
