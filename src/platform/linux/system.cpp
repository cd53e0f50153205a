// The seams of Linux, made and handed out.
// SPDX-License-Identifier: MIT
#include "platform/system.h"

#include <malloc.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <thread>
#include <utility>

#include "platform/device_locks.h"
#include "platform/libusb/libusb_driver.h"
#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/system_locale.h"
#include "platform/locked_usb_driver.h"
#include "platform/system_files.h"

namespace kestrel {
namespace {

std::string OwnName() {
  return program_invocation_short_name;
}

}  // namespace

struct System::Parts {
  explicit Parts(const SystemOptions& options)
      : locks(
            LockFolders(), options.user ? options.user : [] { return OwnName(); }),
        boards(LibusbDriver::kTimeLimit, options.waiting),
        usb(
            boards, locks, [this](const std::string& name) { return boards.PlaceOf(name); },
            options.inUse),
        port(options.portAddress, {.locks = &locks}),
        service(port) {}

  kestrel::SystemClock clock;
  kestrel::SystemFiles files;
  kestrel::SystemLocale locale;
  DeviceLocks locks;
  LibusbDriver boards;
  LockedUsbDriver usb;
  PpdevPort port;
  PpdevService service;
};

System::System(const SystemOptions& options) : parts_(std::make_unique<Parts>(options)) {}
System::~System() = default;

Clock& System::SystemClock() {
  return parts_->clock;
}
Files& System::SystemFiles() {
  return parts_->files;
}
Locale& System::SystemLocale() {
  return parts_->locale;
}
Hardware System::Devices() {
  return {&parts_->usb, &parts_->port, &parts_->service};
}
void System::UsePortDevice(const std::string& device) {
  parts_->port.UseDevice(device);
}
std::string System::Claim(const std::string& name) {
  return parts_->locks.Take(name) ? "" : parts_->locks.Holder(name);
}
void System::LetGo() {
  parts_->usb.LetGo();
  parts_->port.LetGo();
}

// The thread is left behind at the end.
void System::WatchInput(std::function<void()> ended) {
  std::signal(SIGPIPE, SIG_IGN);
  std::thread([ended = std::move(ended)] {
    std::array<char, 256> dropped{};
    for (;;) {
      const ssize_t count = read(STDIN_FILENO, dropped.data(), dropped.size());
      if (count == 0 || (count < 0 && errno != EINTR)) return ended();
    }
  }).detach();
}

// Otherwise the library raises both with the largest block that it has seen.
void System::KeepMemorySmall() {
#ifdef __GLIBC__
  constexpr int kBytes = 128 << 10;
  mallopt(M_MMAP_THRESHOLD, kBytes);
  mallopt(M_TRIM_THRESHOLD, kBytes);
#endif
}

SystemVersion System::Version() {
  return {};
}

std::vector<std::string> System::Arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

std::string System::ComputerName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string System::Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::chrono::nanoseconds System::SinceBoot() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return std::chrono::seconds{now.tv_sec} + std::chrono::nanoseconds{now.tv_nsec};
}

bool System::ErrorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

}  // namespace kestrel
