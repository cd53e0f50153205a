// The calls in the place of the system's: programs and libraries find them here first.
// SPDX-License-Identifier: MIT
#include "network_faults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

namespace kestrel::publish {
namespace {

std::mutex mutex;  // of `current` and its counts
NetworkFaults* current = nullptr;
std::atomic<bool> isCounting = false;
thread_local bool isTestsOwn = false;

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsWire(int file) {
  struct stat status {};
  return fstat(file, &status) == 0 && (S_ISSOCK(status.st_mode) || S_ISFIFO(status.st_mode));
}

NetworkFaults::Fate FateOn(int file, const char* name) {
  return isCounting && !isTestsOwn && IsWire(file) ? NetworkFaults::Next(name)
                                                   : NetworkFaults::Fate{};
}

// A call that gives −1 where it fails.
template <typename Result, typename Serve>
Result Call(const char* name, const Serve& serve) {
  const auto fate = NetworkFaults::Next(name);
  if (!fate.isFault || fate.kind == NetworkFaults::Kind::TakesOneByte) return serve();
  errno = fate.error;
  return -1;
}

// One that moves bytes.
template <typename Serve>
ssize_t Move(int file, const char* name, std::size_t size, bool isRead, const Serve& serve) {
  const auto fate = FateOn(file, name);
  if (!fate.isFault) return serve(size);
  if (fate.kind == NetworkFaults::Kind::TakesOneByte) return serve(size == 0 ? 0 : 1);
  if (isRead && fate.kind == NetworkFaults::Kind::EndsEarly) return 0;
  errno = fate.error;
  return -1;
}

}  // namespace

void NetworkFaults::Begin() {
  const std::lock_guard lock(mutex);
  current = this;
  isCounting = true;
}

void NetworkFaults::End() {
  const std::lock_guard lock(mutex);
  isCounting = false;
  current = nullptr;
}

std::map<std::string, int> NetworkFaults::Calls() const {
  const std::lock_guard lock(mutex);
  return calls_;
}

NetworkFaults::Fate NetworkFaults::Next(const char* name) {
  if (!isCounting || isTestsOwn) return {};
  const int error = errno;
  const std::lock_guard lock(mutex);
  errno = error;
  if (current == nullptr) return {};
  const int count = ++current->calls_[name];
  if (current->name_ != name || count != current->number_) return {};
  current->isMet_ = true;
  return {true, current->kind_, current->error_};
}

TestsOwn::TestsOwn() : before_(isTestsOwn) {
  isTestsOwn = true;
}

TestsOwn::~TestsOwn() {
  isTestsOwn = before_;
}

}  // namespace kestrel::publish

// NOLINTBEGIN(bugprone-reserved-identifier): the system's names
using kestrel::publish::Call;
using kestrel::publish::Move;
using kestrel::publish::Real;

extern "C" {

int socket(int domain, int type, int protocol) noexcept {
  static const auto real = Real<int(int, int, int)>("socket");
  return Call<int>("socket", [&] { return real(domain, type, protocol); });
}
int socketpair(int domain, int type, int protocol, int ends[2]) noexcept {
  static const auto real = Real<int(int, int, int, int*)>("socketpair");
  return Call<int>("socketpair", [&] { return real(domain, type, protocol, ends); });
}
int connect(int file, const sockaddr* address, socklen_t size) {
  static const auto real = Real<int(int, const sockaddr*, socklen_t)>("connect");
  return Call<int>("connect", [&] { return real(file, address, size); });
}
int bind(int file, const sockaddr* address, socklen_t size) noexcept {
  static const auto real = Real<int(int, const sockaddr*, socklen_t)>("bind");
  return Call<int>("bind", [&] { return real(file, address, size); });
}
int listen(int file, int backlog) noexcept {
  static const auto real = Real<int(int, int)>("listen");
  return Call<int>("listen", [&] { return real(file, backlog); });
}
int accept(int file, sockaddr* address, socklen_t* size) {
  static const auto real = Real<int(int, sockaddr*, socklen_t*)>("accept");
  return Call<int>("accept", [&] { return real(file, address, size); });
}
int getsockname(int file, sockaddr* address, socklen_t* size) noexcept {
  static const auto real = Real<int(int, sockaddr*, socklen_t*)>("getsockname");
  return Call<int>("getsockname", [&] { return real(file, address, size); });
}
int setsockopt(int file, int level, int name, const void* value, socklen_t size) noexcept {
  static const auto real = Real<int(int, int, int, const void*, socklen_t)>("setsockopt");
  return Call<int>("setsockopt", [&] { return real(file, level, name, value, size); });
}
int getsockopt(int file, int level, int name, void* value, socklen_t* size) noexcept {
  static const auto real = Real<int(int, int, int, void*, socklen_t*)>("getsockopt");
  return Call<int>("getsockopt", [&] { return real(file, level, name, value, size); });
}
// Locks of files are the disk's.
int fcntl(int file, int command, ...) {
  static const auto real = Real<int(int, int, void*)>("fcntl");
  va_list list;
  va_start(list, command);
  void* word = va_arg(list, void*);
  va_end(list);
  if (!kestrel::publish::IsWire(file)) return real(file, command, word);
  return Call<int>("fcntl", [&] { return real(file, command, word); });
}
int fcntl64(int file, int command, ...) {
  va_list list;
  va_start(list, command);
  void* word = va_arg(list, void*);
  va_end(list);
  return fcntl(file, command, word);
}
int poll(pollfd* files, nfds_t count, int timeout) {
  static const auto real = Real<int(pollfd*, nfds_t, int)>("poll");
  return Call<int>("poll", [&] { return real(files, count, timeout); });
}
ssize_t send(int file, const void* bytes, size_t size, int flags) {
  static const auto real = Real<ssize_t(int, const void*, size_t, int)>("send");
  return Move(file, "send", size, false, [&](size_t n) { return real(file, bytes, n, flags); });
}
ssize_t recv(int file, void* bytes, size_t size, int flags) {
  static const auto real = Real<ssize_t(int, void*, size_t, int)>("recv");
  return Move(file, "recv", size, true, [&](size_t n) { return real(file, bytes, n, flags); });
}
ssize_t write(int file, const void* bytes, size_t size) {
  static const auto real = Real<ssize_t(int, const void*, size_t)>("write");
  return Move(file, "write", size, false, [&](size_t n) { return real(file, bytes, n); });
}
ssize_t read(int file, void* bytes, size_t size) {
  static const auto real = Real<ssize_t(int, void*, size_t)>("read");
  return Move(file, "read", size, true, [&](size_t n) { return real(file, bytes, n); });
}
ssize_t sendmsg(int file, const msghdr* message, int flags) {
  static const auto real = Real<ssize_t(int, const msghdr*, int)>("sendmsg");
  return Call<ssize_t>("sendmsg", [&] { return real(file, message, flags); });
}
int getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** found) {
  static const auto real =
      Real<int(const char*, const char*, const addrinfo*, addrinfo**)>("getaddrinfo");
  const auto fate = kestrel::publish::NetworkFaults::Next("getaddrinfo");
  return fate.isFault ? EAI_AGAIN : real(host, service, hints, found);
}
int eventfd(unsigned count, int flags) noexcept {
  static const auto real = Real<int(unsigned, int)>("eventfd");
  return Call<int>("eventfd", [&] { return real(count, flags); });
}
int pipe2(int ends[2], int flags) noexcept {
  static const auto real = Real<int(int*, int)>("pipe2");
  return Call<int>("pipe2", [&] { return real(ends, flags); });
}
int posix_spawnp(pid_t* process, const char* file, const posix_spawn_file_actions_t* actions,
                 const posix_spawnattr_t* attributes, char* const words[],
                 char* const environment[]) {
  static const auto real =
      Real<int(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
               char* const*, char* const*)>("posix_spawnp");
  const auto fate = kestrel::publish::NetworkFaults::Next("posix_spawnp");
  return fate.isFault ? fate.error : real(process, file, actions, attributes, words, environment);
}
// A handle of a process is the only one that the program asks for by its number and that may fail.
long syscall(long number, ...) noexcept {
  static const auto real = Real<long(long, long, long, long, long, long, long)>("syscall");
  va_list list;
  va_start(list, number);
  long words[6];
  for (long& word : words) word = va_arg(list, long);
  va_end(list);
  const auto serve = [&] {
    return real(number, words[0], words[1], words[2], words[3], words[4], words[5]);
  };
  return number == SYS_pidfd_open ? Call<long>("pidfd_open", serve) : serve();
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
