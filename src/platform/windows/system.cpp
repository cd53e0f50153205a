// The seams of Windows, made and handed out.
// SPDX-License-Identifier: MIT
#include "platform/system.h"

#include <io.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <utility>

#include "platform/device_locks.h"
#include "platform/either_usb_driver.h"
#include "platform/libusb/libusb_driver.h"
#include "platform/locked_port.h"
#include "platform/locked_usb_driver.h"
#include "platform/system_files.h"
#include "platform/windows/ezusb_driver.h"
#include "platform/windows/port_libraries.h"
#include "platform/windows/service_registry.h"
#include "platform/windows/system_clock.h"
#include "platform/windows/system_locale.h"
#include "seams/path_text.h"

// Last: it makes macros of names that the program uses.
#include <windows.h>

namespace kestrel {
namespace {

std::string OwnName() {
  std::array<wchar_t, 32'768> own{};
  GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size()));
  return TextOf(std::filesystem::path(own.data()).stem());
}

// What the program writes to a console is UTF-8; whoever uses it afterwards finds it as it was.
class ConsoleInUtf8 {
 public:
  ConsoleInUtf8() { SetConsoleOutputCP(CP_UTF8); }
  ~ConsoleInUtf8() { SetConsoleOutputCP(before_); }
  ConsoleInUtf8(const ConsoleInUtf8&) = delete;
  ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;

 private:
  UINT before_ = GetConsoleOutputCP();
};

}  // namespace

struct System::Parts {
  explicit Parts(const SystemOptions& options)
      : locks(
            LockFolders(), options.user ? options.user : [] { return OwnName(); }),
        adapters(options.waiting),
        boards(LibusbDriver::kTimeLimit, options.waiting,
               {.isTaken =
                    [this](std::size_t number) {
                      return adapters.Attached("Ezusb-" + std::to_string(number));
                    }},
               kUsbBusyElsewhere),
        usb(
            either, locks, [this](const std::string& name) { return PlaceOf(name); },
            options.inUse) {}

  // The names of the boards' own driver are the same in all programs.
  [[nodiscard]] std::string PlaceOf(const std::string& name) {
    return adapters.Attached(name) ? name : boards.PlaceOf(name);
  }

  ConsoleInUtf8 console;
  kestrel::SystemClock clock;
  kestrel::SystemFiles files;
  kestrel::SystemLocale locale;
  DeviceLocks locks;
  EzusbDriver adapters;  // those that the boards' own driver leads to
  LibusbDriver boards;   // those of the system's generic one, which one program has at a time
  EitherUsbDriver either{adapters, boards};
  LockedUsbDriver usb;
  PortLibraries libraries;
  LockedPort port{libraries, locks};
  ServiceRegistry service{libraries, port};
};

// The port libraries take addresses, and say nothing of ports that cannot be had.
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
// Ports have no names here, only addresses.
void System::UsePortDevice(const std::string& /*device*/) {}
std::string System::Claim(const std::string& name) {
  return parts_->locks.Take(name) ? "" : parts_->locks.Holder(name);
}
void System::LetGo() {
  parts_->usb.LetGo();
  parts_->port.LetGo();
}

void System::WatchInput(std::function<void()> ended) {
  std::thread([ended = std::move(ended)] {
    std::array<char, 256> dropped{};
    while (_read(0, dropped.data(), static_cast<unsigned>(dropped.size())) > 0) {
    }
    ended();
  }).detach();
}

void System::KeepMemorySmall() {}

// GetVersionEx tells programs without a manifest of their own an old version.
SystemVersion System::Version() {
  using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto getVersion = reinterpret_cast<RtlGetVersion>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetVersion")));
  OSVERSIONINFOW info{};
  info.dwOSVersionInfoSize = sizeof info;
  if (getVersion == nullptr || getVersion(&info) != 0) {
    return {SystemVersion::Family::Windows9x, 4, 0};
  }
  return {SystemVersion::Family::WindowsNt, static_cast<int>(info.dwMajorVersion),
          static_cast<int>(info.dwMinorVersion)};
}

// The narrow ones have lost what the system's code page does not hold.
std::vector<std::string> System::Arguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; words != nullptr && i < count; ++i) {
    arguments.push_back(TextOf(std::filesystem::path(words.get()[i])));
  }
  return arguments;
}

std::string System::ComputerName() {
  return Environment("COMPUTERNAME");
}

std::string System::Environment(const char* name) {
  const wchar_t* value = _wgetenv(std::filesystem::path(name).c_str());
  if (value == nullptr) return "";
  return TextOf(value);
}

std::chrono::nanoseconds System::SinceBoot() {
  return std::chrono::milliseconds{GetTickCount64()};
}

bool System::ErrorIsTerminal() {
  return _isatty(_fileno(stderr)) != 0;
}

}  // namespace kestrel
