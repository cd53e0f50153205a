// The wrapped calls of the file system, failing where they are told to.
// SPDX-License-Identifier: MIT
#include "support/system_call_faults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <utility>

namespace kestrel {
namespace {

using Kind = CallFault::Kind;

thread_local SystemCallFaults* current = nullptr;

[[noreturn]] void Die() {
  kill(getpid(), SIGKILL);
  for (;;) pause();
}

// Runs a call with what befalls it. `serve` is the call; a failed close closes all the same.
template <typename Serve>
auto Call(const char* name, const Serve& serve, bool closes = false) -> decltype(serve()) {
  using Result = decltype(serve());
  SystemCallFaults* faults = std::exchange(current, nullptr);  // what serves it does not count
  const Kind kind = faults == nullptr ? Kind::None : faults->Next(name, false);
  if (kind == Kind::KilledBefore) Die();
  const bool fails = kind == Kind::Fails || kind == Kind::Interrupted;
  Result result = -1;
  if (!fails || closes) result = serve();
  int error = errno;
  if (kind == Kind::KilledAfter) Die();
  if (fails) {
    result = -1;
    error = kind == Kind::Interrupted ? EINTR : faults->Error();
  }
  current = faults;
  errno = error;
  return result;
}

}  // namespace

SystemCallFaults::SystemCallFaults(int number, CallFault fault) : number_(number), fault_(fault) {
  current = this;
}

SystemCallFaults::~SystemCallFaults() {
  current = nullptr;
}

Kind SystemCallFaults::Next(const char* name, bool writes) {
  calls_.emplace_back(name);
  const bool partly = fault_.kind == Kind::TakesHalf || fault_.kind == Kind::TakesNothing;
  if (static_cast<int>(calls_.size()) != number_ || (partly && !writes)) return Kind::None;
  met_ = true;
  return fault_.kind;
}

}  // namespace kestrel

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int file, void* buffer, size_t size);
ssize_t __real_write(int file, const void* buffer, size_t size);
int __real_fsync(int file);
int __real_close(int file);
int __real_rename(const char* from, const char* to);
int __real_unlink(const char* path);
int __real_fchmod(int file, mode_t mode);
int __real_stat(const char* path, struct stat* status);
int __real_fstat(int file, struct stat* status);
int __real_faccessat(int folder, const char* path, int mode, int flags);

int __wrap_open(const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return kestrel::Call("open", [&] { return __real_open(path, flags, mode); });
}

ssize_t __wrap_read(int file, void* buffer, size_t size) {
  return kestrel::Call("read", [&] { return __real_read(file, buffer, size); });
}

ssize_t __wrap_write(int file, const void* buffer, size_t size) {
  using kestrel::CallFault;
  auto* faults = std::exchange(kestrel::current, nullptr);
  const auto kind = faults == nullptr ? CallFault::Kind::None : faults->Next("write", true);
  if (kind == CallFault::Kind::KilledBefore) kestrel::Die();
  ssize_t taken = -1;
  int error = 0;
  if (kind == CallFault::Kind::Fails || kind == CallFault::Kind::Interrupted) {
    error = kind == CallFault::Kind::Interrupted ? EINTR : faults->Error();
  } else if (kind == CallFault::Kind::TakesNothing) {
    taken = 0;
  } else {
    const bool half = kind == CallFault::Kind::TakesHalf || kind == CallFault::Kind::KilledAfter;
    taken = __real_write(file, buffer, half ? (size + 1) / 2 : size);
    error = errno;
  }
  if (kind == CallFault::Kind::KilledAfter) kestrel::Die();
  kestrel::current = faults;
  errno = error;
  return taken;
}

int __wrap_fsync(int file) {
  return kestrel::Call("fsync", [&] { return __real_fsync(file); });
}
int __wrap_close(int file) {
  return kestrel::Call(
      "close", [&] { return __real_close(file); }, true);
}
int __wrap_rename(const char* from, const char* to) {
  return kestrel::Call("rename", [&] { return __real_rename(from, to); });
}
int __wrap_unlink(const char* path) {
  return kestrel::Call("unlink", [&] { return __real_unlink(path); });
}
int __wrap_fchmod(int file, mode_t mode) {
  return kestrel::Call("fchmod", [&] { return __real_fchmod(file, mode); });
}
int __wrap_stat(const char* path, struct stat* status) {
  return kestrel::Call("stat", [&] { return __real_stat(path, status); });
}
int __wrap_fstat(int file, struct stat* status) {
  return kestrel::Call("fstat", [&] { return __real_fstat(file, status); });
}
int __wrap_faccessat(int folder, const char* path, int mode, int flags) {
  return kestrel::Call("faccessat", [&] { return __real_faccessat(folder, path, mode, flags); });
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
