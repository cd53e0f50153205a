// The seams of Windows, made and handed out.
// SPDX-License-Identifier: MIT
#include "platform/system.h"

#include <io.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <utility>

#include "platform/windows/ezusb_driver.h"
#include "platform/windows/port_libraries.h"
#include "platform/windows/service_registry.h"
#include "platform/windows/system_clock.h"
#include "platform/windows/system_files.h"
#include "platform/windows/system_locale.h"

// Last: it makes macros of names that the program uses.
#include <windows.h>

namespace kestrel {

struct System::Parts {
  explicit Parts(const SystemOptions& options) : usb(options.waiting) {}

  kestrel::SystemClock clock;
  kestrel::SystemFiles files;
  kestrel::SystemLocale locale;
  EzusbDriver usb;
  PortLibraries port;
  ServiceRegistry service{port};
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
std::string System::Claim(const std::string& /*name*/) {
  return {};
}
// Boards are opened for each operation, and ports belong to nobody.
void System::LetGo() {}

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

std::string System::ComputerName() {
  return Environment("COMPUTERNAME");
}

std::string System::Environment(const char* name) {
  const wchar_t* value = _wgetenv(std::filesystem::path(name).c_str());
  if (value == nullptr) return "";
  const std::u8string text = std::filesystem::path(value).u8string();
  return {text.begin(), text.end()};
}

std::chrono::nanoseconds System::SinceBoot() {
  return std::chrono::milliseconds{GetTickCount64()};
}

bool System::ErrorIsTerminal() {
  return _isatty(_fileno(stderr)) != 0;
}

}  // namespace kestrel
