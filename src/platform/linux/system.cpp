// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "platform/system.h"

#include <unistd.h>

#include "platform/linux/absent_hardware.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/system_files.h"
#include "platform/linux/system_locale.h"

namespace kestrel {

struct System::Parts {
  kestrel::SystemClock clock;
  kestrel::SystemFiles files;
  kestrel::SystemLocale locale;
  AbsentUsbDriver usb;
  AbsentPortIo port;
  AbsentDriverService service;
};

System::System() : parts_(std::make_unique<Parts>()) {}
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
bool System::ErrorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

}  // namespace kestrel
