// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "app/clock.h"
#include "app/files.h"
#include "app/locale.h"
#include "platform/hardware_switch.h"

namespace kestrel {

// The operating system behind the seams. Make it on the thread that waits.
class System {
 public:
  System();
  ~System();
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  [[nodiscard]] Clock& SystemClock();
  [[nodiscard]] Files& SystemFiles();
  [[nodiscard]] Locale& SystemLocale();
  [[nodiscard]] Hardware Devices();

  // Whether somebody watches what goes to the error stream.
  [[nodiscard]] static bool ErrorIsTerminal();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kestrel
