// Reading and replacing files whole, call by call of the system.
// SPDX-License-Identifier: MIT
#include "platform/system_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

// Thrown with errno where a system call failed; the caller adds the path.
[[noreturn]] void ThrowErrno(int error) {
  throw std::system_error(error, std::generic_category());
}

// A call that a signal has interrupted is made again.
template <typename Call>
auto Retried(const Call& call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] bool valid() const { return number_ >= 0; }
  int Close() { return valid() ? close(std::exchange(number_, -1)) : 0; }

 private:
  int number_;
};

bool IsRegular(const Descriptor& file) {
  struct stat status {};
  return fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
}

// A new file beside the one to be replaced; removed again unless it took that one's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& folder) : folder_(folder), file_(Create()) {}
  ~TemporaryFile() {
    if (!path_.empty()) unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void SetMode(mode_t mode) {
    if (fchmod(file_.number(), mode) != 0) ThrowErrno(errno);
  }

  void Write(std::string_view content) {
    while (!content.empty()) {
      const ssize_t written =
          Retried([&] { return write(file_.number(), content.data(), content.size()); });
      if (written < 0) ThrowErrno(errno);
      if (written == 0) ThrowErrno(ENOSPC);  // or it would be tried for ever
      content.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  void MoveTo(const fs::path& target) {
    // Some file systems cannot synchronise; their files are as safe as they get.
    const int synchronised = Retried([&] { return fsync(file_.number()); });
    if (synchronised != 0 && errno != EINVAL && errno != ENOSYS) ThrowErrno(errno);
    if (file_.Close() != 0) ThrowErrno(errno);
    if (rename(path_.c_str(), target.c_str()) != 0) ThrowErrno(errno);
    path_.clear();
  }

 private:
  int Create() {
    constexpr int kMostAttempts = 1000;  // names left over by earlier runs are skipped
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
      const fs::path path = folder_ / (".kestrel-" + std::to_string(getpid()) + "-" +
                                       std::to_string(attempt) + ".tmp");
      const int number = Retried(
          [&] { return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); });
      if (number >= 0) {
        path_ = path;
        return number;
      }
      if (errno != EEXIST) ThrowErrno(errno);
    }
    ThrowErrno(EEXIST);
  }

  fs::path folder_;
  fs::path path_;
  Descriptor file_;
};

// The new name is safe once the folder is on the disk too. Not every folder can be opened or
// synchronised, and the new file is in place already, so a failure is none of the replacement.
void SynchroniseFolder(const fs::path& folder) {
  const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.valid()) static_cast<void>(fsync(opened.number()));
}

void Replace(const fs::path& target, std::string_view content) {
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  struct stat earlier {};
  const bool existed = stat(target.c_str(), &earlier) == 0;
  // One that cannot be looked at is not taken for none: it may be write-protected.
  if (!existed && errno != ENOENT) ThrowErrno(errno);
  if (existed && S_ISDIR(earlier.st_mode)) ThrowErrno(EISDIR);
  if (existed && !S_ISREG(earlier.st_mode)) ThrowErrno(EINVAL);
  if (existed && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) ThrowErrno(errno);
  TemporaryFile temporary(folder);
  if (existed) temporary.SetMode(earlier.st_mode & 07777U);
  temporary.Write(content);
  temporary.MoveTo(target);
  SynchroniseFolder(folder);
}

}  // namespace

fs::path SystemFiles::ProgramFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? WorkingFolder() : program.parent_path();
}

fs::path SystemFiles::DocumentsFolder() {
  std::error_code error;
  const char* chosen = std::getenv("XDG_DOCUMENTS_DIR");
  if (chosen != nullptr && fs::is_directory(chosen, error)) return chosen;
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') return WorkingFolder();
  const fs::path documents = fs::path(home) / "Documents";
  return fs::is_directory(documents, error) ? documents : fs::path(home);
}

bool SystemFiles::CanWriteIn(const fs::path& folder) {
  std::error_code error;
  return fs::is_directory(folder, error) &&
         faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::optional<std::string> SystemFiles::Read(const fs::path& file, std::size_t limit) {
  constexpr std::size_t kChunk = 65536;
  // Not blocking: opening a pipe would wait for its writer.
  const Descriptor opened(
      Retried([&] { return open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  if (!opened.valid() || !IsRegular(opened)) return std::nullopt;
  std::string content;
  while (content.size() < limit) {
    const std::size_t filled = content.size();
    content.resize(filled + std::min(kChunk, limit - filled));
    const ssize_t got = Retried(
        [&] { return read(opened.number(), content.data() + filled, content.size() - filled); });
    if (got < 0) return std::nullopt;
    content.resize(filled + static_cast<std::size_t>(got));
    if (got == 0) break;
  }
  return content;
}

void SystemFiles::ReplaceWhole(const fs::path& file, std::string_view content) {
  std::error_code missing;
  const fs::path linked = fs::canonical(file, missing);
  try {
    Replace(missing ? file : linked, content);
  } catch (const std::system_error& error) {
    throw RuntimeError(file.string() + ": " + error.code().message());
  }
}

}  // namespace kestrel
