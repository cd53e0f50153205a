// The database library's own table of system calls, with others in their places.
// SPDX-License-Identifier: MIT
#include "support/sqlite_call_faults.h"

#include <sqlite3.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <map>

namespace kestrel {
namespace {

struct Faults {
  bool isOn = false;
  int number = 0;
  int error = 0;
  int count = 0;
  int calls = 0;
  std::string name;
  std::map<std::string, sqlite3_syscall_ptr> real;
};
Faults& State() {
  static Faults faults;
  return faults;
}

bool Fails(const char* name) {
  Faults& faults = State();
  if (!faults.isOn) return false;
  const int call = ++faults.calls;
  if (call < faults.number || call >= faults.number + faults.count) return false;
  if (faults.name.empty()) faults.name = name;
  errno = faults.error;
  return true;
}

template <typename Call>
Call Real(const char* name) {
  return reinterpret_cast<Call>(State().real.at(name));
}

int Open(const char* file, int flags, int mode) {
  return Fails("open") ? -1 : Real<int (*)(const char*, int, int)>("open")(file, flags, mode);
}
ssize_t Write(int file, const void* bytes, size_t size) {
  return Fails("write") ? -1
                        : Real<ssize_t (*)(int, const void*, size_t)>("write")(file, bytes, size);
}
ssize_t WriteAt(int file, const void* bytes, size_t size, off_t at) {
  using Call = ssize_t (*)(int, const void*, size_t, off_t);
  return Fails("pwrite") ? -1 : Real<Call>("pwrite")(file, bytes, size, at);
}
ssize_t WriteAt64(int file, const void* bytes, size_t size, off64_t at) {
  using Call = ssize_t (*)(int, const void*, size_t, off64_t);
  return Fails("pwrite64") ? -1 : Real<Call>("pwrite64")(file, bytes, size, at);
}
int Cut(int file, off_t size) {
  return Fails("ftruncate") ? -1 : Real<int (*)(int, off_t)>("ftruncate")(file, size);
}
int Remove(const char* file) {
  return Fails("unlink") ? -1 : Real<int (*)(const char*)>("unlink")(file);
}
ssize_t ReadAt64(int file, void* bytes, size_t size, off64_t at) {
  using Call = ssize_t (*)(int, void*, size_t, off64_t);
  return Fails("pread64") ? -1 : Real<Call>("pread64")(file, bytes, size, at);
}
ssize_t ReadAt(int file, void* bytes, size_t size, off_t at) {
  using Call = ssize_t (*)(int, void*, size_t, off_t);
  return Fails("pread") ? -1 : Real<Call>("pread")(file, bytes, size, at);
}

const std::map<std::string, sqlite3_syscall_ptr> kReplaced{
    {"open", reinterpret_cast<sqlite3_syscall_ptr>(Open)},
    {"write", reinterpret_cast<sqlite3_syscall_ptr>(Write)},
    {"pwrite", reinterpret_cast<sqlite3_syscall_ptr>(WriteAt)},
    {"pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(WriteAt64)},
    {"pread", reinterpret_cast<sqlite3_syscall_ptr>(ReadAt)},
    {"pread64", reinterpret_cast<sqlite3_syscall_ptr>(ReadAt64)},
    {"ftruncate", reinterpret_cast<sqlite3_syscall_ptr>(Cut)},
    {"unlink", reinterpret_cast<sqlite3_syscall_ptr>(Remove)}};

}  // namespace

// The library has no place for these in its table; the program's own come before the system's.
extern "C" int fsync(int file) {
  return Fails("fsync") ? -1 : static_cast<int>(syscall(SYS_fsync, file));
}
extern "C" int fdatasync(int file) {
  return Fails("fdatasync") ? -1 : static_cast<int>(syscall(SYS_fdatasync, file));
}

SqliteCallFaults::SqliteCallFaults(int number, int error, int count) {
  State() = {true, number, error, count, 0, {}, {}};
  sqlite3_initialize();
  sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
  for (const auto& [name, replacement] : kReplaced) {
    const sqlite3_syscall_ptr real = files->xGetSystemCall(files, name.c_str());
    if (real == nullptr) continue;
    State().real[name] = real;
    files->xSetSystemCall(files, name.c_str(), replacement);
  }
}

SqliteCallFaults::~SqliteCallFaults() {
  sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
  for (const auto& [name, real] : State().real) files->xSetSystemCall(files, name.c_str(), real);
  State().isOn = false;
}

bool SqliteCallFaults::Met() const {
  return !State().name.empty();
}

std::string SqliteCallFaults::Name() const {
  return State().name;
}

}  // namespace kestrel
